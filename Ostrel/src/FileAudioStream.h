// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <AudioIO/AudioConverter.h>
#include <AudioIO/AudioFile.h>
#include <Ostrel/AudioStream.h>

#include <filesystem>

namespace Ostrel {

// A stream over an audio file of any usual container, mixed to one channel at the model's rate while it is read.
class FileAudioStream final : public AudioStream {
public:
    // `chunkSeconds` of the file are read at a time.
    // Errors: OstrelError invalidAudio
    FileAudioStream(const std::filesystem::path& path, int64_t sampleRate, double chunkSeconds);

    std::optional<int64_t> totalSamples() const override { return totalSamples_; }

    // A read may overrun `maxFrames` by up to a chunk. After the file's end the converter's rest comes once, then 0
    // for ever. Errors: OstrelError invalidAudio
    int64_t read(int64_t maxFrames, std::vector<float>& samples) override;

private:
    bool readChunk();
    void convertChunk(std::vector<float>& samples);
    void drain(std::vector<float>& samples);

    AudioIO::AudioFile file_;
    AudioIO::AudioConverter converter_;
    int64_t chunkFrames_; // of the file
    int64_t totalSamples_;
    std::vector<float> chunk_; // as read, interleaved
    bool finished_ = false; // the file has been read to its end
    bool drained_ = false; // the converter's rest has been fetched
};

} // namespace Ostrel
