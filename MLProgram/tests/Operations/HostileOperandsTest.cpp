// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operands come from files that anybody may have made.  Whatever they are, an operation either refuses them in words of
// its own, or computes within the bounds of its tensors; the sanitizers watch that.
#include "Operations/OperationTester.h"

#include <algorithm>
#include <iterator>
#include <random>

using namespace MLProgram;

namespace {

constexpr int attemptsPerOperation = 500;
constexpr int64_t largestOutput = 4096; // elements; larger ones are not computed

// Every operand's name that some operation reads.
constexpr std::string_view names[] = { "a", "activation", "alpha", "ascending", "attn_mask", "axes", "axis", "b",
    "batch_axis", "batch_dims", "begin", "begin_mask", "begins", "beta", "bias", "bias_back", "block_shape",
    "block_size", "ceil_mode", "cell_activation", "clip", "cond", "constant_val", "crops", "data", "dilations",
    "direction", "downscale_factor", "dtype", "end", "end_mask", "end_masks", "ends", "epsilon", "equation",
    "exclude_padding_from_average", "exclusive", "gamma", "groups", "indices", "initial_c", "initial_h", "input",
    "input_bias", "interleave", "k", "keep_dims", "kernel_sizes", "key", "lengths", "lower", "mean", "mode",
    "num_splits", "off_value", "on_value", "one_hot_vector_size", "output_dtype", "output_indices_dtype",
    "output_sequence", "output_shape", "pad", "pad_type", "paddings", "peephole", "perm", "query",
    "recurrent_activation", "ref_tensor", "ref_tensors", "reps", "reset_after", "return_indices", "reverse", "scale",
    "scale_factor_height", "scale_factor_width", "seq_axis", "shape", "size", "sort", "split_sizes", "squeeze_mask",
    "start", "step", "stride", "strides", "transpose_x", "transpose_y", "update", "updates", "upper", "upscale_factor",
    "value", "values", "variance", "weight", "weight_hh", "weight_ih", "x", "y", "zero_point" };

constexpr std::string_view texts[] = { "", "same", "same_lower", "custom", "reflect", "replicate", "update", "max",
    "forward", "reverse", "bidirectional", "tanh", "int32", "uint8", "bool", "ab,bc->ac", "a,a->", "->", "EXACT" };

constexpr int32_t hostileIntegers[] = { INT32_MIN, INT32_MIN + 1, -3, -2, -1, 0, 1, 2, 3, 70000, INT32_MAX };
constexpr float hostileReals[] = { -infinity, -1e30f, -1, 0, 0.5f, 1, 3, 1e30f, infinity, notANumber };

class Generator {
public:
    explicit Generator(unsigned seed)
        : random_(seed)
    {
        for (int i = 0; i < 400; ++i)
            tensors_.push_back(tensor());
    }

    Operands operands(std::string_view operation)
    {
        Operands result(operation, 15 + pick(4));
        for (const std::string_view name : names)
            if (pick(3) != 0)
                add(result, name);
        return result;
    }

private:
    int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    template <typename T, size_t count> T pick(const T (&choices)[count]) { return choices[pick(int { count })]; }

    // Mostly small and harmless, so that a good part is accepted.
    int32_t integer() { return pick(8) == 0 ? pick(hostileIntegers) : pick(5) - 1; }
    float real() { return pick(4) == 0 ? pick(hostileReals) : static_cast<float>(pick(9) - 4) / 2; }

    Tensor tensor()
    {
        Shape shape;
        for (int rank = pick(3) == 0 ? pick(6) : pick(2) * 3; rank > 0; --rank)
            shape.push_back(pick(4) == 0 ? pick(4) : 1 + pick(2));
        if (pick(3) == 0)
            shape = { 1 + pick(4) };
        Tensor result({ static_cast<ElementType>(pick(3)), shape });
        for (float& value :
            result.view().type.element == ElementType::real ? result.view().reals() : std::span<float> {})
            value = real();
        for (int32_t& value :
            result.view().type.element == ElementType::integer ? result.view().integers() : std::span<int32_t> {})
            value = integer();
        for (uint8_t& value :
            result.view().type.element == ElementType::boolean ? result.view().booleans() : std::span<uint8_t> {})
            value = static_cast<uint8_t>(pick(2));
        return result;
    }

    TensorView known() { return tensors_[static_cast<size_t>(pick(static_cast<int>(tensors_.size())))].view(); }

    void add(Operands& operands, std::string_view name)
    {
        switch (pick(12)) {
        case 0:
            return operands.add(name, pick(texts));
        case 1:
            return operands.add(name, Operands::List { known(), known() });
        default:
            operands.add(name, known());
        }
    }

    std::mt19937 random_;
    std::vector<Tensor> tensors_;
};

bool isSmall(const TensorTypes& types)
{
    return std::ranges::all_of(types, [](const TensorType& type) { return elementCount(type.shape) <= largestOutput; });
}

// Whether the operation took the operands.
bool attempt(const OperationDefinition& definition, const Operands& operands)
{
    try {
        const TensorTypes types = definition.infer(operands);
        if (!isSmall(types))
            return true;
        const std::vector<Tensor> outputs(types.begin(), types.end());
        std::vector<TensorView> views;
        std::ranges::transform(outputs, std::back_inserter(views), &Tensor::view);
        definition.evaluate(operands, views);
        return true;
    } catch (const MLModelError& error) {
        EXPECT_EQ(error.which(), MLModelError::Case::invalidProgram) << error.description();
        return false;
    }
}

} // namespace

TEST(HostileOperands, AreRefusedOrComputedWithinBounds)
{
    Generator generator(1);
    for (const OperationDefinition& definition : allOperations())
        for (int i = 0; i < attemptsPerOperation; ++i)
            attempt(definition, generator.operands(definition.name));
}

TEST(HostileOperands, AreNotAllRefused)
{
    Generator generator(2);
    int accepted = 0;
    for (const std::string_view name : { "add", "reduce_sum", "reverse", "shape", "softmax", "squeeze" })
        for (int i = 0; i < attemptsPerOperation; ++i)
            accepted += attempt(*findOperation(name), generator.operands(name)) ? 1 : 0;
    EXPECT_GT(accepted, 50);
}
