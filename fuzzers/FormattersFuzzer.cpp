// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <PlatformSupport/UTF8.h>
#include <Regex/Letters.h>
#include <Regex/TextNormalization.h>
#include <Regex/Trimming.h>
#include <Regex/Words.h>
#include <Sorvane/DictationFormatting.h>
#include <Sorvane/HarnessDetection.h>
#include <Sorvane/LinkGrammarTagger.h>
#include <Sorvane/SequentialListFormatting.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using PlatformSupport::precondition;

const Sorvane::LexicalTagger& tagger()
{
    static const Sorvane::LinkGrammarTagger shared;
    return shared;
}

void searchUnicode(std::string_view text, std::string_view other)
{
    size_t end = 0;
    for (const auto& word : Regex::words(text)) {
        precondition(word.range.start >= end && word.range.end > word.range.start, "words stand in order");
        precondition(word.text == text.substr(word.range.start, word.text.size()), "a word is cut from the text");
        end = word.range.end;
    }
    precondition(PlatformSupport::isUTF8(Regex::lowercased(text)), "new texts are UTF-8");
    precondition(PlatformSupport::isUTF8(Regex::nfkc(text)), "new texts are UTF-8");
    precondition(Regex::trimmed(Regex::trimmed(text)) == Regex::trimmed(text), "trimming is done once");
    const auto length = Regex::prefixLengthIgnoringCase(text, other);
    precondition(
        !length || Regex::equalIgnoringCase(text.substr(0, *length), other), "a prefix equals what was sought");
}

void formatNumberedList(std::string_view original, std::string_view cleaned)
{
    const auto list = Sorvane::DictationFormatting::enumeration(original, tagger());
    if (!list)
        return;
    precondition(list->items.size() >= 2 && list->items.size() <= 10, "a list has two to ten items");
    const std::string restored = list->restoringLayout(cleaned, tagger());
    precondition(restored.find("1. ") != std::string::npos, "a list comes out");
    precondition(restored.starts_with(list->intro), "under its own intro");
}

void formatSequence(std::string_view original, std::string_view cleaned)
{
    const auto restored = Sorvane::SequentialListFormatting::restoringLayout(cleaned, original);
    precondition(restored == cleaned || restored.starts_with("1. "), "prose stays as it was");
}

} // namespace

// The input is what was spoken and, behind a NUL, what a model made of it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto original = input.substr(0, input.find('\0'));
    const auto cleaned = original.size() == size ? original : input.substr(original.size() + 1);
    searchUnicode(original, cleaned);
    formatNumberedList(original, cleaned);
    formatSequence(original, cleaned);
    tagger().classesOfWords(cleaned);
    Sorvane::HarnessDetection::detect(original, {}, std::string(cleaned));
    return 0;
}
