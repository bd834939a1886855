// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/LexicalTagger.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Spoken numbered lists. Pure functions, safe on any thread; texts are UTF-8. Nothing here fails: what is not clearly a
// list is none.
namespace Sorvane::DictationFormatting {

// A spoken list: "Here is my list one buy milk two call mom three write the report".
struct Enumeration {
    std::string intro; // the words before the first item; may be empty
    std::vector<std::string> items; // two to ten, each with its first character in upper case

    // The list as text, in the wording of what a model made of it where that is still the same list, else in its own.
    // The intro is always this one. `tagger` is the one that enumeration() had.
    std::string restoringLayout(std::string_view cleaned, const LexicalTagger& tagger) const;

    // The intro with a colon, if there is one, and below it the numbered lines of any items.
    std::string render(const std::vector<std::string>& lines) const;

    bool operator==(const Enumeration&) const = default;
};

// Whether the speaker talks about words, or quotes them, so that no word may be changed.
bool needsVerbatim(std::string_view text);

// The list that the text holds. Numbers must run from one without a gap. Plain words such as "one" and "two" are taken
// for numbers of a list only with a cue before them and at least three items; where "one" was not spoken, every item
// must begin with an action, which the tagger tells.
std::optional<Enumeration> enumeration(std::string_view text, const LexicalTagger& tagger);

} // namespace Sorvane::DictationFormatting
