// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Matrix products.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"
#include "Operations/Numbers.h"
#include "Operations/Scratch.h"

#include <cmath>
#include <limits>

namespace MLProgram {

namespace {

TensorTypes inferLinear(const Operands& operands)
{
    const TensorView& x = numericTensor(operands, "x");
    const TensorView& weight = operands.tensor("weight");
    requireRank(operands, x, 1);
    requireRank(operands, weight, 2, 2);
    operands.require(weight.type.element == x.type.element, "\"x\" and \"weight\" hold elements of different types");
    operands.require(weight.type.shape[1] == x.type.shape.back(), "\"weight\" does not have a column for each input");
    optionalTensor(operands, "bias", { x.type.element, { weight.type.shape[0] } });
    Shape shape = x.type.shape;
    shape.back() = weight.type.shape[0];
    return { outputType(operands, x.type.element, shape) };
}

void evaluateLinear(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& weight = operands.tensor("weight");
    const TensorView* const bias = operands.optionalTensor("bias");
    const int64_t outputSize = weight.type.shape[0];
    const int64_t inputSize = weight.type.shape[1];
    withNumberType(outputs[0].type.element, [&](auto zero) {
        using T = decltype(zero);
        const T* const x = operands.tensor("x").values<const T>().data();
        const T* const w = weight.values<const T>().data();
        const auto to = outputs[0].values<T>();
        for (int64_t i = 0; i < outputs[0].count(); ++i) {
            const T* const row = x + i / outputSize * inputSize;
            const int64_t column = i % outputSize;
            T sum = zero;
            for (int64_t k = 0; k < inputSize; ++k)
                sum = multiplyAdd(sum, row[k], w[column * inputSize + k]);
            to[i] = bias == nullptr ? sum : multiplyAdd(sum, bias->values<const T>()[column], T { 1 });
        }
    });
}

// One operand of a product as a stack of matrices, read with any strides.
struct Matrices {
    Shape batch;
    int64_t rows, columns;
    int64_t rowStride, columnStride;

    // Steps from matrix to matrix when the batch is stretched to `target`.
    Strides batchStrides(const Shape& target) const
    {
        Strides strides = broadcastStrides(batch, target);
        for (int64_t& stride : strides)
            stride *= rows * columns;
        return strides;
    }
};

enum class VectorAs { row, column };

Matrices matricesOf(const TensorView& tensor, bool transposed, VectorAs vectorAs)
{
    const Shape& shape = tensor.type.shape;
    if (shape.size() == 1)
        return vectorAs == VectorAs::row ? Matrices { {}, 1, shape[0], shape[0], 1 }
                                         : Matrices { {}, shape[0], 1, 1, 1 };
    const size_t front = shape.size() - 2;
    const int64_t rows = shape[front];
    const int64_t columns = shape[front + 1];
    return transposed ? Matrices { slice(shape, 0, front), columns, rows, 1, columns }
                      : Matrices { slice(shape, 0, front), rows, columns, columns, 1 };
}

struct MatrixProduct {
    Matrices x, y;
    Shape batch;
};

MatrixProduct matrixProduct(const Operands& operands)
{
    const TensorView& x = numericTensor(operands, "x");
    const TensorView& y = operands.tensor("y");
    operands.require(x.type.element == y.type.element, "\"x\" and \"y\" hold elements of different types");
    requireRank(operands, x, 1);
    requireRank(operands, y, 1);
    MatrixProduct product { matricesOf(x, operands.flag("transpose_x", false), VectorAs::row),
        matricesOf(y, operands.flag("transpose_y", false), VectorAs::column), {} };
    operands.require(product.x.columns == product.y.rows, "the columns of \"x\" are not as many as the rows of \"y\"");
    product.batch = broadcastShape(operands, product.x.batch, product.y.batch);
    return product;
}

TensorTypes inferMatmul(const Operands& operands)
{
    const MatrixProduct product = matrixProduct(operands);
    Shape shape = product.batch;
    if (operands.tensor("x").type.shape.size() > 1)
        shape.push_back(product.x.rows);
    if (operands.tensor("y").type.shape.size() > 1)
        shape.push_back(product.y.columns);
    return { outputType(operands, operands.tensor("x").type.element, shape) };
}

void evaluateMatmul(const Operands& operands, std::span<const TensorView> outputs)
{
    const MatrixProduct product = matrixProduct(operands);
    const Matrices& x = product.x;
    const Matrices& y = product.y;
    withNumberType(outputs[0].type.element, [&](auto zero) {
        using T = decltype(zero);
        const T* const left = operands.tensor("x").values<const T>().data();
        const T* const right = operands.tensor("y").values<const T>().data();
        T* to = outputs[0].values<T>().data();
        forEachOffset<2>(
            product.batch, { x.batchStrides(product.batch), y.batchStrides(product.batch) }, [&](const auto& at) {
                for (int64_t row = 0; row < x.rows; ++row) {
                    for (int64_t column = 0; column < y.columns; ++column) {
                        T sum = zero;
                        for (int64_t k = 0; k < x.columns; ++k)
                            sum = multiplyAdd(sum, left[at[0] + row * x.rowStride + k * x.columnStride],
                                right[at[1] + k * y.rowStride + column * y.columnStride]);
                        *to++ = sum;
                    }
                }
            });
    });
}

// softmax(query * keys' / sqrt(E) + mask) * values, where query is [.., L, E], keys [.., S, E], values [.., S, V] and
// the mask can be stretched to [.., L, S].
struct Attention {
    Matrices query, keys, values;
    Shape batch;

    Shape scoreShape() const
    {
        Shape shape = batch;
        shape.push_back(query.rows);
        shape.push_back(keys.rows);
        return shape;
    }
};

Attention attentionOf(const Operands& operands)
{
    const auto matrices = [&](std::string_view name) {
        const TensorView& tensor = realTensor(operands, name);
        requireRank(operands, tensor, 2);
        return matricesOf(tensor, false, VectorAs::row);
    };
    Attention attention { matrices("query"), matrices("key"), matrices("value"), {} };
    operands.require(attention.query.columns == attention.keys.columns, "queries and keys differ in length");
    operands.require(attention.keys.rows == attention.values.rows, "there are not as many keys as values");
    attention.batch = broadcastShape(
        operands, attention.query.batch, broadcastShape(operands, attention.keys.batch, attention.values.batch));
    return attention;
}

TensorTypes inferAttention(const Operands& operands)
{
    const Attention attention = attentionOf(operands);
    if (const TensorView* const mask = operands.optionalTensor("attn_mask")) {
        operands.require(mask->type.element != ElementType::integer, "its mask must hold booleans or real numbers");
        operands.require(broadcastShape(operands, mask->type.shape, attention.scoreShape()) == attention.scoreShape(),
            "its mask is larger than the scores");
    }
    Shape shape = attention.batch;
    shape.push_back(attention.query.rows);
    shape.push_back(attention.values.columns);
    return { outputType(operands, ElementType::real, shape) };
}

float maskValue(const TensorView& mask, int64_t at)
{
    if (mask.type.element == ElementType::real)
        return mask.reals()[at];
    return mask.booleans()[at] != 0 ? 0.0f : -std::numeric_limits<float>::infinity();
}

// In place; a row without any finite value becomes NaN.
void softmaxRow(std::span<float> row)
{
    float highest = -std::numeric_limits<float>::infinity();
    for (const float value : row)
        highest = std::max(highest, value);
    float sum = 0;
    for (float& value : row)
        sum += value = std::exp(value - highest);
    for (float& value : row)
        value /= sum;
}

void evaluateAttention(const Operands& operands, std::span<const TensorView> outputs)
{
    const Attention attention = attentionOf(operands);
    const Matrices& queries = attention.query;
    const Matrices& keys = attention.keys;
    const Matrices& values = attention.values;
    const Shape& batch = attention.batch;
    const int64_t size = queries.columns;
    const float scale = 1.0f / std::sqrt(static_cast<float>(size));
    const float* const query = operands.tensor("query").reals().data();
    const float* const key = operands.tensor("key").reals().data();
    const float* const value = operands.tensor("value").reals().data();
    const TensorView* const mask = operands.optionalTensor("attn_mask");
    const Shape scoreShape = attention.scoreShape();
    Strides maskStrides
        = mask != nullptr ? broadcastStrides(mask->type.shape, scoreShape) : Strides(scoreShape.size(), 0);
    const int64_t maskColumn = maskStrides[batch.size() + 1];
    const int64_t maskRow = maskStrides[batch.size()];
    maskStrides.resize(batch.size());
    const auto scores = scratchRow<float>(static_cast<size_t>(keys.rows));
    float* to = outputs[0].reals().data();

    const auto attend = [&](const float* q, const float* k, const float* v, int64_t maskAt) {
        for (int64_t s = 0; s < keys.rows; ++s) {
            float sum = 0;
            for (int64_t i = 0; i < size; ++i)
                sum += q[i] * k[s * size + i];
            scores[s] = sum * scale + (mask != nullptr ? maskValue(*mask, maskAt + s * maskColumn) : 0.0f);
        }
        softmaxRow(scores);
        for (int64_t column = 0; column < values.columns; ++column) {
            float sum = 0;
            for (int64_t s = 0; s < keys.rows; ++s)
                sum += scores[s] * v[s * values.columns + column];
            *to++ = sum;
        }
    };
    forEachOffset<4>(batch,
        { queries.batchStrides(batch), keys.batchStrides(batch), values.batchStrides(batch), maskStrides },
        [&](const auto& at) {
            for (int64_t row = 0; row < queries.rows; ++row)
                attend(query + at[0] + row * size, key + at[1], value + at[2], at[3] + row * maskRow);
        });
}

constexpr OperationDefinition definitions[] = {
    { "linear", inferLinear, evaluateLinear },
    { "matmul", inferMatmul, evaluateMatmul },
    { "scaled_dot_product_attention", inferAttention, evaluateAttention },
};

} // namespace

Definitions products() noexcept
{
    return definitions;
}

} // namespace MLProgram
