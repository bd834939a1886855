// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Sums of products of two tensors, written as an equation of letters for their dimensions.
//
// Example: "ij,jk->ik" is the matrix product.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"
#include "Operations/Numbers.h"

#include <algorithm>
#include <cctype>

namespace MLProgram {

namespace {

using Letters = boost::container::static_vector<char, 2 * maximumRank>;

bool contains(const Letters& letters, char letter)
{
    return std::ranges::find(letters, letter) != letters.end();
}

struct Equation {
    Letters x, y, result;
};

// "x,y->result", blanks ignored.
Equation equationOperand(const Operands& operands)
{
    constexpr std::string_view separators[] = { ",", "->", "" };
    std::string_view text = operands.text("equation");
    Equation equation;
    Letters* const parts[] = { &equation.x, &equation.y, &equation.result };
    for (size_t i = 0; i < std::size(parts); ++i) {
        const size_t end = separators[i].empty() ? text.size() : text.find(separators[i]);
        operands.require(end != std::string_view::npos, "its equation does not have the form \"x,y->z\"");
        for (const char letter : text.substr(0, end)) {
            if (letter == ' ')
                continue;
            operands.require(std::isalpha(static_cast<unsigned char>(letter)) != 0, "its equation has a foreign sign");
            operands.require(!contains(*parts[i], letter), "its equation names a dimension twice");
            operands.require(parts[i]->size() < maximumRank, "its equation has too many dimensions");
            parts[i]->push_back(letter);
        }
        text.remove_prefix(std::min(text.size(), end + separators[i].size()));
    }
    return equation;
}

// The steps through a tensor whose dimensions are `own`, for each of `letters`: 0 where it lacks the letter or has
// one element to stretch.
Strides stridesFor(const Letters& letters, const Letters& own, const Shape& shape)
{
    const Strides strides = rowMajorStrides(shape);
    Strides result;
    for (const char letter : letters) {
        const auto at = static_cast<size_t>(std::ranges::find(own, letter) - own.begin());
        result.push_back(at == own.size() || shape[at] == 1 ? 0 : strides[at]);
    }
    return result;
}

struct Contraction {
    Shape output;
    Shape summed;
    std::array<Strides, 2> outputStrides; // of x and y, for each dimension of the output
    std::array<Strides, 2> summedStrides;
};

Contraction contractionOf(const Operands& operands)
{
    const auto values = operands.tensors("values");
    operands.require(values.size() == 2, "it needs two tensors");
    operands.require(values[0].type.element == values[1].type.element && values[0].type.element != ElementType::boolean,
        "its tensors must hold numbers of one type");
    const Equation equation = equationOperand(operands);
    const Shape& x = values[0].type.shape;
    const Shape& y = values[1].type.shape;
    operands.require(equation.x.size() == x.size() && equation.y.size() == y.size(),
        "its equation does not have a letter for each dimension");

    const auto lengthOf = [&](char letter) {
        const auto inX = static_cast<size_t>(std::ranges::find(equation.x, letter) - equation.x.begin());
        const auto inY = static_cast<size_t>(std::ranges::find(equation.y, letter) - equation.y.begin());
        const int64_t lengthX = inX < x.size() ? x[inX] : 1;
        const int64_t lengthY = inY < y.size() ? y[inY] : 1;
        operands.require(lengthX == lengthY || lengthX == 1 || lengthY == 1, "dimensions of one letter differ");
        return lengthX == 1 ? lengthY : lengthX;
    };

    Contraction contraction;
    Letters summed;
    for (const Letters* letters : { &equation.x, &equation.y })
        for (const char letter : *letters)
            if (!contains(equation.result, letter) && !contains(summed, letter))
                summed.push_back(letter);
    operands.require(summed.size() <= maximumRank, "its equation sums over too many dimensions");
    for (const char letter : equation.result) {
        operands.require(contains(equation.x, letter) || contains(equation.y, letter),
            "its equation has a result that no tensor has");
        contraction.output.push_back(lengthOf(letter));
    }
    for (const char letter : summed)
        contraction.summed.push_back(lengthOf(letter));
    contraction.outputStrides
        = { stridesFor(equation.result, equation.x, x), stridesFor(equation.result, equation.y, y) };
    contraction.summedStrides = { stridesFor(summed, equation.x, x), stridesFor(summed, equation.y, y) };
    return contraction;
}

TensorTypes inferEinsum(const Operands& operands)
{
    const Contraction contraction = contractionOf(operands);
    return { outputType(operands, operands.tensors("values")[0].type.element, contraction.output) };
}

void evaluateEinsum(const Operands& operands, std::span<const TensorView> outputs)
{
    const Contraction contraction = contractionOf(operands);
    const auto values = operands.tensors("values");
    withNumberType(outputs[0].type.element, [&](auto zero) {
        using T = decltype(zero);
        const T* const x = values[0].values<const T>().data();
        const T* const y = values[1].values<const T>().data();
        auto to = outputs[0].values<T>().begin();
        forEachOffset<2>(contraction.output, contraction.outputStrides, [&](const auto& outer) {
            T sum = zero;
            forEachOffset<2>(contraction.summed, contraction.summedStrides,
                [&](const auto& inner) { sum = multiplyAdd(sum, x[outer[0] + inner[0]], y[outer[1] + inner[1]]); });
            *to++ = sum;
        });
    });
}

constexpr OperationDefinition definitions[] = {
    { "einsum", inferEinsum, evaluateEinsum },
};

} // namespace

Definitions einsums() noexcept
{
    return definitions;
}

} // namespace MLProgram
