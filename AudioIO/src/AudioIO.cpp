// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WAVWriting.h"

#include <AudioIO/AudioIO.h>
#include <AudioIO/AudioIOError.h>
#include <AudioIO/WAV.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace AudioIO {

namespace {

constexpr size_t samplesPerBlock = 65536;
constexpr mode_t permissionsOfNewFiles = 0666; // less what the user's mask takes away

// A file being written from its start.
class OutputFile {
public:
    explicit OutputFile(const std::filesystem::path& path)
        : descriptor_(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, permissionsOfNewFiles))
    {
        if (descriptor_ < 0)
            throw AudioIOError::decodeFailed("cannot create " + path.string());
    }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // A failure to close is not an error: the data was handed over by write().
    ~OutputFile() { ::close(descriptor_); }

    void write(std::span<const uint8_t> bytes)
    {
        while (!bytes.empty()) {
            const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
            if (written >= 0)
                bytes = bytes.subspan(static_cast<size_t>(written));
            else if (errno != EINTR)
                throw std::system_error(errno, std::generic_category(), "write");
        }
    }

private:
    int descriptor_;
};

} // namespace

std::vector<uint8_t> encodeWAV(std::span<const float> samples, int64_t sampleRate, int64_t channels)
{
    return WAV::encode(samples, sampleRate, channels);
}

void writeWAV(std::span<const float> samples, int64_t sampleRate, int64_t channels, const std::filesystem::path& path)
{
    OutputFile file(path);
    file.write(WAV::header(samples.size(), sampleRate, channels));

    std::vector<uint8_t> buffer(samplesPerBlock * WAV::bytesPerSample);
    while (!samples.empty()) {
        const auto block = samples.first(std::min(samples.size(), samplesPerBlock));
        const auto bytes = std::span(buffer).first(block.size() * WAV::bytesPerSample);
        WAV::encodeSamples(block, bytes);
        file.write(bytes);
        samples = samples.subspan(block.size());
    }
}

} // namespace AudioIO
