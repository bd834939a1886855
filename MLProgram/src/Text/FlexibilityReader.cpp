// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/FlexibilityReader.h"

#include "Program/ElementCodec.h"

#include <MLProgram/MLModelError.h>

#include <functional>
#include <string_view>

namespace MLProgram {
namespace {

void require(bool holds)
{
    if (!holds)
        throw MLModelError(
            MLModelError::Case::invalidProgram, "the shape information of the function has an unknown form");
}

std::string_view textOf(const Literal& literal)
{
    require(literal.constant && literal.constant->isText());
    return literal.constant->text();
}

std::vector<int64_t> integersOf(const Literal& literal)
{
    require(literal.constant && isInteger(literal.constant->scalarType()) && literal.constant->shape().size() <= 1);
    std::vector<int32_t> integers(static_cast<size_t>(literal.constant->count()));
    readIntegers(literal.constant->scalarType(), literal.constant->bytes(), 0, integers);
    return { integers.begin(), integers.end() };
}

// The lower and the upper bound of each dimension.
std::vector<std::pair<int64_t, int64_t>> rangesOf(const Literal& literal)
{
    require(literal.type.kind == ValueType::Kind::list);
    std::vector<std::pair<int64_t, int64_t>> ranges;
    for (const Literal& item : literal.items) {
        const std::vector<int64_t> bounds = integersOf(item);
        require(bounds.size() == 2);
        ranges.emplace_back(bounds[0], bounds[1]);
    }
    return ranges;
}

void forEachEntry(
    const Literal& dictionary, const std::function<void(const std::string& key, const Literal& value)>& visit)
{
    require(dictionary.type.kind == ValueType::Kind::dictionary);
    for (size_t i = 0; i + 1 < dictionary.items.size(); i += 2)
        visit(std::string(textOf(dictionary.items[i])), dictionary.items[i + 1]);
}

} // namespace

std::map<std::string, ShapeFlexibility> shapeFlexibility(const Literal& information)
{
    require(information.type.kind == ValueType::Kind::tuple);
    std::map<std::string, ShapeFlexibility> flexibility;
    for (const Literal& pair : information.items) {
        require(pair.type.kind == ValueType::Kind::tuple && pair.items.size() == 2);
        const std::string_view word = textOf(pair.items[0]);
        const Literal& entries = pair.items[1];
        if (word == "DefaultShapes")
            forEachEntry(entries,
                [&](const auto& name, const auto& shape) { flexibility[name].defaultShape = integersOf(shape); });
        else if (word == "RangeDims")
            forEachEntry(
                entries, [&](const auto& name, const auto& bounds) { flexibility[name].ranges = rangesOf(bounds); });
        else if (word == "EnumeratedShapes")
            forEachEntry(entries, [&](const auto&, const auto& shapes) {
                forEachEntry(shapes, [&](const auto& name, const auto& shape) {
                    flexibility[name].enumeratedShapes.push_back(integersOf(shape));
                });
            });
    }
    return flexibility;
}

} // namespace MLProgram
