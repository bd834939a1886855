// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TranscriptionCheck.h"

#include "ModelServices.h"
#include "ProgressLine.h"

#include <AudioIO/AudioFile.h>
#include <Ostrel/Ostrel.h>

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <string>

namespace Sorvane {

namespace {

constexpr double shortRecording = 30.0; // seconds; done before anybody would look at a progress line

// Whether watching this file's progress is worth a line. What is wrong with a file is the engine's to say.
ProgressLine::Visible progressFor(const std::string& path)
{
    if (isatty(STDERR_FILENO) == 0)
        return ProgressLine::Visible::no;
    try {
        const AudioIO::AudioFile file(path);
        const bool isLong = static_cast<double>(file.length()) > shortRecording * file.sampleRate();
        return isLong ? ProgressLine::Visible::yes : ProgressLine::Visible::no;
    } catch (const std::exception&) {
        return ProgressLine::Visible::no;
    }
}

Ostrel::Result transcribe(const std::string& path)
{
    Ostrel::Ostrel engine(defaultModelPlace());
    ProgressLine line(stderr, progressFor(path));
    return engine.transcribe(
        std::filesystem::path(path), [&](Ostrel::Progress progress) { line.update(progress.fractionCompleted); });
}

} // namespace

int transcribeFile(const TranscribeCommand& command)
{
    try {
        const std::string transcript = formatted(transcribe(command.path), command.format);
        if (std::fwrite(transcript.data(), 1, transcript.size(), stdout) == transcript.size()
            && std::fflush(stdout) == 0)
            return 0;
        std::fputs("Transcription failed: standard output cannot be written\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "Transcription failed: %s\n", error.what());
    }
    return 1;
}

} // namespace Sorvane
