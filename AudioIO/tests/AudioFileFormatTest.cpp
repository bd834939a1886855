// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <AudioIO/AudioFileFormat.h>

#include <gtest/gtest.h>

namespace AudioIO {

TEST(AudioFileFormat, IsInferredFromTheExtension)
{
    for (const char* extension : { "wav", "wave", "WAV", "Wave" })
        EXPECT_EQ(AudioFileFormat::inferred(extension), AudioFileFormat::wav()) << extension;
    for (const char* extension : { "m4a", "mp4", "aac", "M4A" })
        EXPECT_EQ(AudioFileFormat::inferred(extension), AudioFileFormat::aac(128'000)) << extension;
    for (const char* extension : { "caf", "aif", "aiff", "AIFF" })
        EXPECT_EQ(AudioFileFormat::inferred(extension), AudioFileFormat::pcm()) << extension;
}

TEST(AudioFileFormat, IsAbsentForOtherExtensions)
{
    for (const char* extension : { "", "xyz", ".wav", "wav ", "mp3", "flac", "w\xC3\x84v" })
        EXPECT_EQ(AudioFileFormat::inferred(extension), std::nullopt) << extension;
}

TEST(AudioFileFormat, DistinguishesBitRates)
{
    EXPECT_NE(AudioFileFormat::aac(64'000), AudioFileFormat::aac(128'000));
    EXPECT_EQ(AudioFileFormat::aac(64'000).which(), AudioFileFormat::Case::aac);
    EXPECT_EQ(AudioFileFormat::aac(64'000).bitRate(), 64'000);
}

} // namespace AudioIO
