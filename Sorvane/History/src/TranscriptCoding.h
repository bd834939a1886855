// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/TranscriptEntry.h>

#include <string>
#include <string_view>

// The JSON object in which a transcript is stored.
namespace Sorvane::TranscriptCoding {

// What is no UTF-8 in the texts becomes U+FFFD. The duration is a number.
std::string encoded(const TranscriptEntry& entry);

// Throws StoredFormatError.
TranscriptEntry decoded(std::string_view text);

} // namespace Sorvane::TranscriptCoding
