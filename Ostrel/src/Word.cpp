// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "JSONFields.h"

#include <Ostrel/Word.h>

#include <nlohmann/json.hpp>

namespace Ostrel {

void to_json(nlohmann::json& json, const Word& word)
{
    json = { { "text", word.text }, { "start", word.start }, { "end", word.end } };
}

void from_json(const nlohmann::json& json, Word& word)
{
    word = { .text = JSONFields::string(json, "text"),
        .start = JSONFields::number(json, "start"),
        .end = JSONFields::number(json, "end") };
}

} // namespace Ostrel
