// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Fold.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace Ostrel {

namespace {

icu::UnicodeString unicode(std::string_view text)
{
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

bool isKept(UChar32 character)
{
    constexpr uint32_t alphanumeric = U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK;
    return character == U'\'' || (U_GET_GC_MASK(character) & alphanumeric) != 0;
}

} // namespace

std::string fold(std::string_view text)
{
    const icu::UnicodeString folded = unicode(text).foldCase();
    icu::UnicodeString kept;
    for (int32_t i = 0; i < folded.length(); i = folded.moveIndex32(i, 1))
        if (isKept(folded.char32At(i)))
            kept.append(folded.char32At(i));
    std::string result;
    return kept.toUTF8String(result);
}

bool beginsLowerCase(std::string_view text)
{
    const icu::UnicodeString characters = unicode(text.substr(0, 4)); // the longest UTF-8 sequence
    return !characters.isEmpty() && u_isULowercase(characters.char32At(0)) != 0;
}

} // namespace Ostrel
