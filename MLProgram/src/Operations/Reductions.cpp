// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that make one number of all the numbers along some axes.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"
#include "Operations/Numbers.h"

#include <cmath>
#include <limits>

namespace MLProgram {

namespace {

// Each takes numbers of type T one by one and tells the result after `count` of them.
template <typename T> struct Sum {
    T sum = 0;
    void take(T x) { sum = multiplyAdd(sum, x, T { 1 }); }
    T result(int64_t) const { return sum; }
};

// Of integers: cut toward zero; 0 of none.
template <typename T> struct Mean : Sum<T> {
    T result(int64_t count) const { return this->sum / static_cast<T>(count); }
};
template <> struct Mean<int32_t> {
    int64_t sum = 0;
    void take(int32_t x) { sum += x; }
    int32_t result(int64_t count) const { return count == 0 ? 0 : static_cast<int32_t>(sum / count); }
};

// NaN wins.
template <typename T> struct Largest {
    T value
        = std::numeric_limits<T>::has_infinity ? -std::numeric_limits<T>::infinity() : std::numeric_limits<T>::lowest();
    void take(T x) { value = value >= x || value != value ? value : x; }
    T result(int64_t) const { return value; }
};

template <typename T> struct Smallest {
    T value = std::numeric_limits<T>::has_infinity ? std::numeric_limits<T>::infinity() : std::numeric_limits<T>::max();
    void take(T x) { value = value <= x || value != value ? value : x; }
    T result(int64_t) const { return value; }
};

template <typename T> struct Product {
    T product = 1;
    void take(T x) { product = multiplyAdd(T { 0 }, product, x); }
    T result(int64_t) const { return product; }
};

template <typename T> struct SumOfSquares {
    T sum = 0;
    void take(T x) { sum = multiplyAdd(sum, x, x); }
    T result(int64_t) const { return sum; }
};

template <typename T> struct SumOfSizes : Sum<T> {
    void take(T x) { Sum<T>::take(x < 0 ? multiplyAdd(T { 0 }, x, T { -1 }) : x); }
};

// The others work on reals only.
template <typename T> struct Length : SumOfSquares<T> {
    T result(int64_t) const { return std::sqrt(this->sum); }
};

template <typename T> struct LogOfSum : Sum<T> {
    T result(int64_t) const { return std::log(this->sum); }
};

struct Reduction {
    Grouping groups;
    Shape output;
};

Reduction reductionOf(const Operands& operands)
{
    const Shape& shape = operands.tensor("x").type.shape;
    const AxisSet axes = axesOperand(operands, "axes", shape.size());
    Reduction reduction { grouped(shape, axes), {} };
    if (!operands.flag("keep_dims", false)) {
        reduction.output = reduction.groups.others;
        return reduction;
    }
    for (size_t i = 0; i < shape.size(); ++i)
        reduction.output.push_back(axes.contains(i) ? 1 : shape[i]);
    return reduction;
}

TensorTypes inferNumber(const Operands& operands)
{
    const TensorView& x = numericTensor(operands, "x");
    return { outputType(operands, x.type.element, reductionOf(operands).output) };
}

TensorTypes inferReal(const Operands& operands)
{
    realTensor(operands, "x");
    return inferNumber(operands);
}

template <typename Reducer, typename T> void reduce(const Operands& operands, const TensorView& output)
{
    const auto x = operands.tensor("x").values<const T>();
    const Grouping groups = reductionOf(operands).groups;
    const int64_t count = elementCount(groups.along);
    auto to = output.values<T>().begin();
    groups.forEachOther([&](int64_t base) {
        Reducer reducer;
        groups.forEachAlong(base, [&](int64_t at) { reducer.take(x[at]); });
        *to++ = reducer.result(count);
    });
}

template <template <typename> typename Reducer>
void evaluateNumber(const Operands& operands, std::span<const TensorView> outputs)
{
    if (outputs[0].type.element == ElementType::real)
        reduce<Reducer<float>, float>(operands, outputs[0]);
    else
        reduce<Reducer<int32_t>, int32_t>(operands, outputs[0]);
}

template <template <typename> typename Reducer>
void evaluateReal(const Operands& operands, std::span<const TensorView> outputs)
{
    reduce<Reducer<float>, float>(operands, outputs[0]);
}

// The largest value is taken out first, so that nothing overflows.
void evaluateLogOfExponentials(const Operands& operands, std::span<const TensorView> outputs)
{
    const auto x = operands.tensor("x").reals();
    const Grouping groups = reductionOf(operands).groups;
    auto to = outputs[0].reals().begin();
    groups.forEachOther([&](int64_t base) {
        Largest<float> largest;
        groups.forEachAlong(base, [&](int64_t at) { largest.take(x[at]); });
        const float shift = std::isinf(largest.value) ? 0.0f : largest.value;
        float sum = 0;
        groups.forEachAlong(base, [&](int64_t at) { sum += std::exp(x[at] - shift); });
        *to++ = shift + std::log(sum);
    });
}

constexpr OperationDefinition definitions[] = {
    { "reduce_l1_norm", inferNumber, evaluateNumber<SumOfSizes> },
    { "reduce_l2_norm", inferReal, evaluateReal<Length> },
    { "reduce_log_sum", inferReal, evaluateReal<LogOfSum> },
    { "reduce_log_sum_exp", inferReal, evaluateLogOfExponentials },
    { "reduce_max", inferNumber, evaluateNumber<Largest> },
    { "reduce_mean", inferNumber, evaluateNumber<Mean> },
    { "reduce_min", inferNumber, evaluateNumber<Smallest> },
    { "reduce_prod", inferNumber, evaluateNumber<Product> },
    { "reduce_sum", inferNumber, evaluateNumber<Sum> },
    { "reduce_sum_square", inferNumber, evaluateNumber<SumOfSquares> },
};

} // namespace

Definitions reductions() noexcept
{
    return definitions;
}

} // namespace MLProgram
