// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FileAudioStream.h"

#include "Arithmetic.h"

#include <AudioIO/AudioIOError.h>
#include <Ostrel/OstrelError.h>

#include <algorithm>
#include <limits>

namespace Ostrel {

namespace {

using AudioIO::AudioConverter;
using AudioIO::AudioFile;
using AudioIO::AudioIOError;

AudioFile openFile(const std::filesystem::path& path)
{
    try {
        return AudioFile(path);
    } catch (const AudioIOError& error) {
        throw OstrelError::invalidAudio(path.string() + ": " + error.description());
    }
}

AudioConverter makeConverter(const AudioFile& file, int64_t sampleRate, const std::filesystem::path& path)
{
    const auto noAudio = OstrelError::invalidAudio(path.string() + " decoded to no audio");
    if (file.length() < 1 || sampleRate > std::numeric_limits<int>::max())
        throw noAudio;
    try {
        return { { .sampleRate = file.sampleRate(), .channels = file.channels() }, static_cast<int>(sampleRate) };
    } catch (const AudioIOError&) {
        throw noAudio;
    }
}

// Runs a step of reading; its failure names the step.
template <typename Step> auto orInvalidAudio(const char* name, Step step)
{
    try {
        return step();
    } catch (const AudioIOError& error) {
        throw OstrelError::invalidAudio(name + (" failed: " + error.description()));
    }
}

} // namespace

FileAudioStream::FileAudioStream(const std::filesystem::path& path, int64_t sampleRate, double chunkSeconds)
    : file_(openFile(path))
    , converter_(makeConverter(file_, sampleRate, path))
    , chunkFrames_(truncated(static_cast<double>(file_.sampleRate()) * chunkSeconds))
    , totalSamples_(truncated(static_cast<double>(file_.length()) * static_cast<double>(sampleRate)
          / static_cast<double>(file_.sampleRate())))
{
}

int64_t FileAudioStream::read(int64_t maxFrames, std::vector<float>& samples)
{
    const size_t before = samples.size();
    const auto appended = [&] { return static_cast<int64_t>(samples.size() - before); };
    if (!finished_ && maxFrames < 1)
        return 0;
    while (!finished_ && appended() < maxFrames) {
        if (readChunk())
            convertChunk(samples);
        finished_ = chunk_.empty() || file_.framePosition() >= file_.length();
    }
    if (finished_ && !drained_)
        drain(samples);
    return appended();
}

// Reads the next frames into chunk_; false at the file's end.
bool FileAudioStream::readChunk()
{
    const int64_t remaining = file_.length() - file_.framePosition();
    chunk_.clear();
    if (remaining > 0)
        orInvalidAudio("read", [&] { return file_.read(std::min(remaining, chunkFrames_), chunk_); });
    return !chunk_.empty();
}

void FileAudioStream::convertChunk(std::vector<float>& samples)
{
    orInvalidAudio("convert", [&] { converter_.convert(chunk_, samples); });
}

void FileAudioStream::drain(std::vector<float>& samples)
{
    drained_ = true;
    orInvalidAudio("drain", [&] { converter_.drain(samples); });
}

} // namespace Ostrel
