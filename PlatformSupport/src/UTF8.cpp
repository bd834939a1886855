// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/UTF8.h>

#include <cstdint>

namespace PlatformSupport {

namespace {

uint8_t byteAt(std::string_view text, size_t index) noexcept
{
    return index < text.size() ? static_cast<uint8_t>(text[index]) : 0;
}

bool isContinuation(uint8_t byte) noexcept
{
    return (byte & 0xC0) == 0x80;
}

// The lowest and highest second byte that may follow a leading one.
bool mayFollow(uint8_t leading, uint8_t second) noexcept
{
    const uint8_t lowest = leading == 0xE0 ? 0xA0 : leading == 0xF0 ? 0x90 : 0x80;
    const uint8_t highest = leading == 0xED ? 0x9F : leading == 0xF4 ? 0x8F : 0xBF;
    return lowest <= second && second <= highest;
}

// Bytes of the well-formed character that the text begins with; 0 if it begins with none.
size_t characterLength(std::string_view text) noexcept
{
    const uint8_t leading = byteAt(text, 0);
    if (leading < 0x80)
        return 1;
    const size_t length = leading < 0xC2 ? 0 : leading < 0xE0 ? 2 : leading < 0xF0 ? 3 : leading < 0xF5 ? 4 : 0;
    if (length == 0 || !mayFollow(leading, byteAt(text, 1)))
        return 0;
    for (size_t i = 2; i < length; ++i)
        if (!isContinuation(byteAt(text, i)))
            return 0;
    return length;
}

} // namespace

bool isUTF8(std::string_view text) noexcept
{
    while (!text.empty()) {
        const size_t length = characterLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string repairedUTF8(std::string_view text)
{
    std::string repaired;
    while (!text.empty()) {
        const size_t length = characterLength(text);
        repaired += length == 0 ? "\uFFFD" : text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return repaired;
}

} // namespace PlatformSupport
