// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Files.h"
#include "Tone.h"
#include "WAVBytes.h"

#include <AudioIO/AudioFile.h>
#include <AudioIO/AudioIO.h>
#include <AudioIO/AudioIOError.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>
#include <random>

namespace AudioIO {

namespace {

std::optional<std::string> refusal(const std::filesystem::path& path)
{
    try {
        const AudioFile file(path);
        return std::nullopt;
    } catch (const AudioIOError& error) {
        EXPECT_EQ(error.which(), AudioIOError::Case::decodeFailed);
        return error.description();
    }
}

// Root may read everything, so while this lives the process is somebody else.
class WithoutRoot {
public:
    WithoutRoot()
    {
        if (before_ == 0) {
            EXPECT_EQ(::seteuid(nobody), 0);
        }
    }
    WithoutRoot(const WithoutRoot&) = delete;
    WithoutRoot& operator=(const WithoutRoot&) = delete;
    ~WithoutRoot() { EXPECT_EQ(::seteuid(before_), 0); }

private:
    static constexpr uid_t nobody = 65534;
    uid_t before_ = ::geteuid();
};

// Reads a file to its end, however damaged it is, and gives the number of frames.
int64_t framesHeld(AudioFile& file)
{
    std::vector<float> piece;
    while (file.framePosition() < file.length()) {
        if (file.read(4096, piece) == 0)
            ADD_FAILURE() << "the length promises frames that do not come";
    }
    EXPECT_EQ(file.read(4096, piece), 0);
    return file.framePosition();
}

Bytes sineWave(size_t frames)
{
    return encodeWAV(tone(16'000, 1, frames), 16'000, 1);
}

} // namespace

TEST(UnreadableFile, IsRefusedWithItsReason)
{
    const TemporaryFolder folder;
    EXPECT_EQ(refusal(folder.path() / "missing.wav"), "No such file or directory");
    EXPECT_EQ(refusal(folder.path()), "Is a directory");
    EXPECT_EQ(refusal(folder.write("empty.wav", Bytes())), "The file is empty");
    EXPECT_EQ(refusal(folder.write("file", bytes("x")) / "below.wav"), "Not a directory");
    EXPECT_EQ(refusal(""), "No such file or directory");
}

TEST(UnreadableFile, IsRefusedWhenItIsNoRegularFile)
{
    const TemporaryFolder folder;
    const auto pipe = folder.path() / "pipe.wav";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(refusal(pipe), "Not a regular file"); // at once, though nobody writes to it
    EXPECT_EQ(refusal("/dev/zero"), "Not a regular file");
}

TEST(UnreadableFile, IsRefusedWithoutPermission)
{
    const TemporaryFolder folder;
    const auto path = folder.write("secret.wav", sineWave(100));
    std::filesystem::permissions(path, std::filesystem::perms::none);
    const WithoutRoot ordinaryUser;
    EXPECT_EQ(refusal(path), "Permission denied");
}

TEST(UnreadableFile, IsRefusedWhenItIsNoAudio)
{
    const TemporaryFolder folder;
    EXPECT_EQ(refusal(folder.write("text.wav", bytes("Dear diary, today I dictated a letter."))),
        "Not an audio file that can be read");
    EXPECT_EQ(refusal(folder.write("zeros.wav", Bytes(10'000))), "Not an audio file that can be read");
    EXPECT_EQ(refusal(folder.write("start.wav", bytes("RIFF"))), "Not an audio file that can be read");
    EXPECT_EQ(refusal("tests/files/make.sh"), "Not an audio file that can be read");
    EXPECT_EQ(refusal("tests/files/silent-film.mp4"), "The file has no audio track");
}

TEST(Playlist, LeadsNowhere)
{
    const TemporaryFolder folder;
    folder.write("song.wav", sineWave(1000));
    const Bytes m3u8
        = bytes("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nsong.wav\n#EXT-X-ENDLIST\n");
    EXPECT_EQ(refusal(folder.write("list.m3u8", m3u8)), "Not an audio file that can be read");
    EXPECT_EQ(refusal(folder.write("list.wav", m3u8)), "Not an audio file that can be read");
    EXPECT_EQ(refusal(folder.write("list.ffconcat", bytes("ffconcat version 1.0\nfile song.wav\n"))),
        "Not an audio file that can be read");
    EXPECT_EQ(refusal(folder.write("list.sdp", bytes("v=0\no=- 0 0 IN IP4 127.0.0.1\nm=audio 5004 RTP/AVP 0\n"))),
        "Not an audio file that can be read");
}

TEST(HostileHeader, IsRefusedForAnAbsurdRate)
{
    const TemporaryFolder folder;
    for (const unsigned rate : { 0U, 1U, 999U, 800'000U, 0x7FFFFFFFU, 0xFFFFFFFFU })
        EXPECT_TRUE(
            refusal(folder.write("a.wav", wave({ formatChunk({ .sampleRate = rate }), chunk("data", Bytes(64)) }))))
            << rate;
}

TEST(HostileHeader, IsRefusedForAnAbsurdNumberOfChannels)
{
    const TemporaryFolder folder;
    for (const unsigned channels : { 0U, 65U, 1000U, 65535U })
        EXPECT_TRUE(refusal(
            folder.write("a.wav", wave({ formatChunk({ .channels = channels }), chunk("data", Bytes(1 << 18)) }))))
            << channels;
}

TEST(HostileHeader, CannotClaimMoreFramesThanTheFileHasBytesFor)
{
    const TemporaryFolder folder;
    const Bytes claim = wave({ formatChunk({}), bytes("data"), little(0xFFFFFFF0, 4), Bytes(2000) });
    AudioFile file(folder.write("a.wav", claim));
    EXPECT_LT(file.length(), 1100);
    EXPECT_EQ(framesHeld(file), 1000);
}

TEST(UnfinishedRecording, IsReadToItsEnd)
{
    const TemporaryFolder folder;
    for (const uint32_t size : { 0U, 0xFFFFFFFFU }) { // what recorders write before they know the size
        AudioFile file(
            folder.write("a.wav", wave({ formatChunk({}), bytes("data"), little(size, 4), Bytes(2000, 1) })));
        EXPECT_EQ(framesHeld(file), 1000) << size;
    }
}

TEST(TruncatedFile, GivesWhatItHolds)
{
    const TemporaryFolder folder;
    const Bytes whole = sineWave(1000);
    AudioFile file(folder.write("a.wav", std::span(whole).first(44 + 2 * 600 + 1)));
    EXPECT_EQ(framesHeld(file), 600);
}

class DamagedSample : public testing::TestWithParam<const char*> {
protected:
    const Bytes whole_ = contents(std::string("tests/files/") + GetParam());
    const TemporaryFolder folder_;

    // A refusal is as good as some frames, but nothing else is.
    void openAndRead(std::span<const uint8_t> bytes) const
    {
        try {
            AudioFile file(folder_.write("damaged", bytes));
            EXPECT_LT(framesHeld(file), 1'000'000);
        } catch (const AudioIOError& error) {
            EXPECT_FALSE(error.description().empty());
        }
    }
};

TEST_P(DamagedSample, MayBeCutAnywhere)
{
    for (size_t size = 1; size < whole_.size(); size += 1 + whole_.size() / 50)
        openAndRead(std::span(whole_).first(size));
}

TEST_P(DamagedSample, MayHoldWrongBytesAnywhere)
{
    std::mt19937 random(1); // NOLINT(*-msc51-cpp): the same damage each time
    for (int round = 0; round < 60; ++round) {
        Bytes damaged = whole_;
        for (int i = 0; i < 1 + round % 20; ++i)
            damaged[random() % (round % 2 ? damaged.size() : std::min<size_t>(damaged.size(), 400))]
                = static_cast<uint8_t>(random());
        openAndRead(damaged);
    }
}

INSTANTIATE_TEST_SUITE_P(, DamagedSample,
    testing::Values("16-bit.wav", "six-channels-extensible.wav", "rf64.wav", "wave64.w64", "core-audio.caf",
        "big-endian.aiff", "lossless.flac", "layer-3.mp3", "advanced.m4a", "advanced-fragmented.mp4",
        "advanced-raw.aac", "advanced.mkv", "advanced.ts", "vorbis.ogg", "opus.opus", "opus.webm", "windows-media.wma",
        "surround.ac3"));

// Files that can be read from their start without what follows.
class HalfSample : public DamagedSample { };

TEST_P(HalfSample, GivesTheAudioBeforeTheCut)
{
    const AudioFile complete(folder_.write("complete", whole_));
    AudioFile half(folder_.write("half", std::span(whole_).first(whole_.size() * 6 / 10)));
    const int64_t frames = framesHeld(half);
    EXPECT_GT(frames, complete.length() / 4);
    EXPECT_LT(frames, complete.length() * 9 / 10);
}

INSTANTIATE_TEST_SUITE_P(, HalfSample,
    testing::Values("16-bit.wav", "rf64.wav", "wave64.w64", "core-audio.caf", "big-endian.aiff", "lossless.flac",
        "layer-3.mp3", "advanced-fragmented.mp4", "advanced-raw.aac", "advanced.mkv", "advanced.ts", "opus.webm",
        "windows-media.wma", "surround.ac3"));

} // namespace AudioIO
