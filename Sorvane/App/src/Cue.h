// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Word.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Sorvane {

// Words that stand on the screen together, as subtitles have them.
struct Cue {
    double start = 0; // seconds
    double end = 0;
    std::string text;
};

// Cuts a transcript into cues: after a sentence, at a pause of a second, and before a cue would stand longer
// than seven seconds or outgrow two lines of 42 characters, the usual bounds for reading along.
std::vector<Cue> cues(std::span<const Ostrel::Word> words);

// The text on two lines of about the same length if it does not fit on one.
std::string wrapped(std::string_view text);

// "01:02:03,004" for 3723.004 s, with the given decimal mark.
std::string timestamp(double seconds, char decimalMark);

} // namespace Sorvane
