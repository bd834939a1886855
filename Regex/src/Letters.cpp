// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CodePoints.h"
#include "UTF16Text.h"

#include <PlatformSupport/Precondition.h>
#include <Regex/Letters.h>

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/uversion.h>

#include <algorithm>
#include <memory>

namespace Regex {

namespace {

bool isInCategories(char32_t codePoint, uint32_t categories)
{
    return (U_GET_GC_MASK(static_cast<UChar32>(codePoint)) & categories) != 0;
}

std::unique_ptr<icu::BreakIterator> characterBreaker(const icu::UnicodeString& text)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> breaker(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    PlatformSupport::precondition(U_SUCCESS(status), "ICU has its rules for characters");
    breaker->setText(text);
    return breaker;
}

// The text with its first character as `change` leaves it.
template <typename Change> std::string withFirstCharacter(std::string_view text, Change change)
{
    icu::UnicodeString all = utf16(text);
    const int32_t end = std::max(characterBreaker(all)->next(), 0); // behind the first character; none in no text
    icu::UnicodeString first(all, 0, end);
    change(first);
    return utf8(all.replace(0, end, first));
}

icu::UnicodeString folded(char32_t codePoint)
{
    return icu::UnicodeString(static_cast<UChar32>(codePoint)).foldCase();
}

} // namespace

bool isLetter(char32_t codePoint)
{
    return isInCategories(codePoint, U_GC_L_MASK | U_GC_M_MASK);
}

bool isLetterOrNumber(char32_t codePoint)
{
    return isInCategories(codePoint, U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK);
}

bool containsLetterOrNumber(std::string_view text)
{
    return std::ranges::any_of(codePoints(text), isLetterOrNumber, &CodePoint::value);
}

std::string lowercased(std::string_view text)
{
    return utf8(utf16(text).toLower(icu::Locale::getRoot()));
}

std::string firstUppercased(std::string_view text)
{
    return withFirstCharacter(text, [](icu::UnicodeString& first) { first.toUpper(icu::Locale::getRoot()); });
}

std::string firstLowercased(std::string_view text)
{
    return withFirstCharacter(text, [](icu::UnicodeString& first) { first.toLower(icu::Locale::getRoot()); });
}

bool equalIgnoringCase(std::string_view a, std::string_view b)
{
    return utf16(a).caseCompare(utf16(b), U_FOLD_CASE_DEFAULT) == 0;
}

std::optional<size_t> prefixLengthIgnoringCase(std::string_view text, std::string_view prefix)
{
    const icu::UnicodeString sought = utf16(prefix).foldCase();
    int32_t found = 0;
    size_t length = 0;
    for (const auto& [codePoint, range] : codePoints(text)) {
        if (found == sought.length())
            break;
        const icu::UnicodeString next = folded(codePoint);
        if (sought.compare(found, next.length(), next) != 0)
            return std::nullopt;
        found += next.length();
        length = range.end;
    }
    return found == sought.length() ? std::optional(length) : std::nullopt;
}

size_t characterCount(std::string_view text)
{
    const icu::UnicodeString all = utf16(text);
    const auto breaker = characterBreaker(all);
    size_t count = 0;
    while (breaker->next() != icu::BreakIterator::DONE)
        ++count;
    return count;
}

} // namespace Regex
