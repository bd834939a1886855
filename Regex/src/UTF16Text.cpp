// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "UTF16Text.h"

#include "CodePoints.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <limits>

namespace Regex {

UTF16Text::UTF16Text(std::string_view text)
    : text_(text)
{
    byteOffsets_.reserve(text.size() + 1);
    for (const auto& [codePoint, range] : codePoints(text)) {
        units_.append(static_cast<UChar32>(codePoint));
        byteOffsets_.resize(static_cast<size_t>(units_.length()), static_cast<uint32_t>(range.start));
    }
    byteOffsets_.push_back(static_cast<uint32_t>(text.size()));
}

ByteRange UTF16Text::byteRange(UTF16Range range) const
{
    return { byteOffsets_[range.start], byteOffsets_[range.end] };
}

UTF16Range UTF16Text::utf16Range(ByteRange range) const
{
    return { unitAt(range.start), unitAt(range.end) };
}

std::string_view UTF16Text::substring(ByteRange range) const
{
    return text_.substr(range.start, range.end - range.start);
}

size_t UTF16Text::unitAt(size_t byte) const
{
    const auto found = std::ranges::lower_bound(byteOffsets_, byte);
    PlatformSupport::precondition(found != byteOffsets_.end(), "the range lies in the text");
    return static_cast<size_t>(found - byteOffsets_.begin());
}

int32_t icuLength(std::string_view text)
{
    PlatformSupport::precondition(
        text.size() < std::numeric_limits<int32_t>::max(), "texts are shorter than 2 gigabytes");
    return static_cast<int32_t>(text.size());
}

icu::UnicodeString utf16(std::string_view text)
{
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), icuLength(text)));
}

std::string utf8(const icu::UnicodeString& text)
{
    std::string result;
    return text.toUTF8String(result);
}

} // namespace Regex
