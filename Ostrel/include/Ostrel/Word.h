// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace Ostrel {

// One recognized word with its punctuation. Times are seconds from the start of the audio.
struct Word {
    std::string text;
    double start = 0;
    double end = 0;

    double duration() const noexcept { return end - start; }
    bool operator==(const Word&) const = default;
};

// The JSON form: an object with the keys "text", "start" and "end".
// Errors when reading: DecodingError for a key that is absent or of the wrong type; other keys are ignored.
void to_json(nlohmann::json& json, const Word& word);
void from_json(const nlohmann::json& json, Word& word);

} // namespace Ostrel
