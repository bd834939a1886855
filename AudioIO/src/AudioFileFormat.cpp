// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <AudioIO/AudioFileFormat.h>

#include <algorithm>
#include <string>

namespace AudioIO {

namespace {

// Transparent for stereo, where nothing but a name asks for AAC.
constexpr int64_t inferredBitRate = 128'000;

std::string lowerCased(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

} // namespace

std::optional<AudioFileFormat> AudioFileFormat::inferred(std::string_view pathExtension)
{
    const std::string extension = lowerCased(pathExtension);
    if (extension == "wav" || extension == "wave")
        return wav();
    if (extension == "m4a" || extension == "mp4" || extension == "aac")
        return aac(inferredBitRate);
    if (extension == "caf" || extension == "aif" || extension == "aiff")
        return pcm();
    return std::nullopt;
}

} // namespace AudioIO
