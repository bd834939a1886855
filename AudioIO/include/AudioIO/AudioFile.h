// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace AudioIO {

// Reads the audio of a local file from start to end, whatever its container and codec: WAV, FLAC, MP3, AAC,
// Ogg, Opus, WebM, CAF, AIFF, and the sound of a video. A silence that an encoder put around the audio is left
// out where the file says so.
//
// Only the named file is ever opened: a playlist, or a reference inside a file, leads nowhere. A damaged or
// truncated file gives what it holds. Memory does not grow with the audio's length.
//
// One thread at a time; not tied to any.
class AudioFile {
public:
    // Errors: AudioIOError decodeFailed, for what is missing, unreadable, no regular file, or no audio
    explicit AudioFile(const std::filesystem::path& path);
    AudioFile(AudioFile&&) noexcept;
    AudioFile& operator=(AudioFile&&) noexcept;
    ~AudioFile();

    int sampleRate() const; // Hz
    int channels() const; // at least 1

    // Frames in the whole file, 0 when it has no audio. Where the container does not count them this is an
    // estimate, put right while reading, so that at any time
    //     framePosition() < length()    exactly if there is more to read
    int64_t length() const;

    int64_t framePosition() const; // frames read so far

    // Reads the next frames and replaces what was in `interleaved` by them: frames x channels samples, nominally
    // -1..1. Gives the number of frames: `maxFrames`, or less at the end of the file and 0 after it.
    //
    // Errors: AudioIOError decodeFailed, when the disk fails
    int64_t read(int64_t maxFrames, std::vector<float>& interleaved);

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace AudioIO
