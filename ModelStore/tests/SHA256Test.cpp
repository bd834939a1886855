// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TestFiles.h"

#include <ModelStore/SHA256.h>

#include <gtest/gtest.h>

using namespace ModelStore;

TEST(SHA256, GivesThePublishedDigests)
{
    EXPECT_EQ(SHA256::hex(SHA256::digest({})), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(SHA256::hex(SHA256::digest(bytesOf("abc"))),
        "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(SHA256, TakesBytesPieceByPiece)
{
    SHA256 sha256;
    sha256.update(bytesOf("a"));
    sha256.update({});
    SHA256 moved = std::move(sha256);
    moved.update(bytesOf("bc"));
    EXPECT_EQ(moved.finalize(), SHA256::digest(bytesOf("abc")));
}

TEST(SHA256, WritesLowercaseHexadecimal)
{
    EXPECT_EQ(SHA256::hex(Bytes { 0x00, 0x0F, 0xA0, 0xFF }), "000fa0ff");
}
