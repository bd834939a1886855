// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/RandomFunction.h"

#include "Plan/FunctionBuilder.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace MLProgram {

namespace {

constexpr int operationCount = 14;
constexpr int64_t mostElements = 20'000;

class RandomBuilder {
public:
    explicit RandomBuilder(unsigned seed)
        : random_(seed)
    {
    }

    Function build()
    {
        values_.push_back(builder_.input({ 1, 6 + below(30), 1, 5 + below(40) }));
        values_.push_back(builder_.input({ 1 + below(3), 4 + below(30), 8 + below(40) }));
        for (int i = 0; i < operationCount; ++i)
            addOne();
        return builder_.finish({ values_.back(),
            values_[static_cast<size_t>(below(static_cast<int64_t>(values_.size())))], values_[values_.size() - 2] });
    }

private:
    using Step = void (RandomBuilder::*)(ValueIndex);

    int64_t below(int64_t limit) { return std::uniform_int_distribution<int64_t>(0, limit - 1)(random_); }
    bool flip() { return below(2) == 1; }
    const Shape& shape(ValueIndex value) const { return builder_.shape(value); }
    int64_t rank(ValueIndex value) const { return static_cast<int64_t>(shape(value).size()); }

    // Mostly a late value, so that chains come about.
    ValueIndex pick()
    {
        const auto count = static_cast<int64_t>(values_.size());
        return values_[static_cast<size_t>(flip() ? count - 1 : below(count))];
    }

    void keep(ValueIndex value)
    {
        if (elementCount(shape(value)) <= mostElements)
            values_.push_back(value);
    }

    void addOne()
    {
        static constexpr Step steps[] = { &RandomBuilder::addUnary, &RandomBuilder::addUnary, &RandomBuilder::addBinary,
            &RandomBuilder::addBinary, &RandomBuilder::addSelection, &RandomBuilder::addTransposition,
            &RandomBuilder::addReshape, &RandomBuilder::addSplit, &RandomBuilder::addSlice, &RandomBuilder::addPadding,
            &RandomBuilder::addConcatenation, &RandomBuilder::addLinear, &RandomBuilder::addLinear,
            &RandomBuilder::addProduct, &RandomBuilder::addConvolution, &RandomBuilder::addConvolution,
            &RandomBuilder::addDepthwise, &RandomBuilder::addLayerNorm, &RandomBuilder::addSoftmax };
        (this->*steps[below(std::size(steps))])(pick());
    }

    void addUnary(ValueIndex x)
    {
        static const char* const names[] = { "relu", "sigmoid", "silu", "tanh", "abs", "gelu", "relu6" };
        keep(builder_.add(names[below(std::size(names))], { { "x", { x } } }));
    }

    void addBinary(ValueIndex x)
    {
        static const char* const names[] = { "add", "sub", "mul", "maximum", "minimum" };
        ValueIndex y = builder_.number(0.5f);
        if (flip()) {
            // A constant that is stretched along some dimensions.
            Shape part = shape(x);
            for (int64_t& dimension : part)
                dimension = flip() ? 1 : dimension;
            y = builder_.weight(part);
        } else {
            const auto partner = std::ranges::find_if(
                values_, [&](ValueIndex value) { return value != x && shape(value) == shape(x); });
            if (partner != values_.end())
                y = builder_.add("tanh", { { "x", { *partner } } });
        }
        const bool isTurned = flip();
        keep(builder_.add(
            names[below(std::size(names))], { { "x", { isTurned ? y : x } }, { "y", { isTurned ? x : y } } }));
    }

    void addSelection(ValueIndex x)
    {
        const ValueIndex mask = builder_.weight(shape(x));
        const ValueIndex condition = builder_.add("greater", { { "x", { mask } }, { "y", { builder_.number(0) } } });
        keep(builder_.add("select", { { "cond", { condition } }, { "a", { x } }, { "b", { builder_.number(-1) } } }));
    }

    void addTransposition(ValueIndex x)
    {
        std::vector<int32_t> order(shape(x).size());
        std::iota(order.begin(), order.end(), 0);
        std::shuffle(order.begin(), order.end(), random_);
        keep(builder_.add("transpose", { { "x", { x } }, { "perm", { builder_.integers(order) } } }));
    }

    // Two dimensions become one, or one becomes two.
    void addReshape(ValueIndex x)
    {
        std::vector<int32_t> target(shape(x).begin(), shape(x).end());
        if (target.size() > 2 && flip()) {
            const auto at = static_cast<size_t>(below(static_cast<int64_t>(target.size()) - 1));
            target[at] *= target[at + 1];
            target.erase(target.begin() + static_cast<std::ptrdiff_t>(at) + 1);
        } else if (target.size() < 5) {
            const auto at = static_cast<size_t>(below(static_cast<int64_t>(target.size())));
            const int32_t factor = target[at] % 3 == 0 ? 3 : target[at] % 2 == 0 ? 2 : 1;
            target[at] /= factor;
            target.insert(target.begin() + static_cast<std::ptrdiff_t>(at), factor);
        }
        keep(builder_.add("reshape", { { "x", { x } }, { "shape", { builder_.integers(target) } } }));
    }

    void addSplit(ValueIndex x)
    {
        const int64_t axis = below(rank(x));
        const int64_t size = shape(x)[static_cast<size_t>(axis)];
        if (size < 2)
            return;
        const auto first = static_cast<int32_t>(1 + below(size - 1));
        const ValueIndex sizes = builder_.integers({ first, static_cast<int32_t>(size) - first });
        const auto parts = builder_.addWithOutputs("split",
            { { "x", { x } }, { "axis", { builder_.integer(static_cast<int32_t>(axis)) } },
                { "split_sizes", { sizes } } });
        keep(parts[0]);
        keep(parts[1]);
    }

    void addSlice(ValueIndex x)
    {
        std::vector<int32_t> begin;
        std::vector<int32_t> end;
        std::vector<int32_t> stride;
        for (const int64_t size : shape(x)) {
            const auto first = static_cast<int32_t>(below((size + 1) / 2));
            begin.push_back(first);
            end.push_back(static_cast<int32_t>(first + 1 + below(size - first)));
            stride.push_back(static_cast<int32_t>(1 + below(2)));
        }
        keep(builder_.add("slice_by_index",
            { { "x", { x } }, { "begin", { builder_.integers(begin) } }, { "end", { builder_.integers(end) } },
                { "stride", { builder_.integers(stride) } } }));
    }

    void addPadding(ValueIndex x)
    {
        const ValueIndex pad = builder_.integers({ static_cast<int32_t>(below(3)), static_cast<int32_t>(below(3)) });
        keep(builder_.add("pad",
            { { "x", { x } }, { "pad", { pad } }, { "mode", { builder_.text("constant") } },
                { "constant_val", { builder_.number(0.25f) } } }));
    }

    void addConcatenation(ValueIndex x)
    {
        const ValueIndex other = builder_.add("tanh", { { "x", { x } } });
        const auto axis = static_cast<int32_t>(below(rank(x)));
        keep(builder_.add("concat",
            { { "values", { x, other } }, { "axis", { builder_.integer(axis) } },
                { "interleave", { builder_.flag(false) } } }));
    }

    static float weightSize(int64_t depth) { return 1.5f / std::sqrt(static_cast<float>(depth)); }

    void addLinear(ValueIndex x)
    {
        if (rank(x) > 3)
            x = builder_.add("reshape", { { "x", { x } }, { "shape", { builder_.integers({ 1, -1, lastOf(x) }) } } });
        const int64_t inputs = shape(x).back();
        const int64_t outputs = 1 + below(50);
        FunctionBuilder::Arguments arguments { { "x", { x } },
            { "weight", { builder_.weight({ outputs, inputs }, weightSize(inputs)) } } };
        if (flip())
            arguments.push_back({ "bias", { builder_.weight({ outputs }) } });
        keep(builder_.add("linear", arguments));
    }

    int32_t lastOf(ValueIndex x) const { return static_cast<int32_t>(shape(x).back()); }

    // A matrix by itself, turned, as attention does it; or by a constant.
    void addProduct(ValueIndex x)
    {
        if (rank(x) < 2)
            return;
        const ValueIndex scaled
            = builder_.add("mul", { { "x", { x } }, { "y", { builder_.number(weightSize(shape(x).back())) } } });
        const bool transposesX = flip();
        const int64_t depth = shape(x)[shape(x).size() - (transposesX ? 2 : 1)];
        ValueIndex y = builder_.add("tanh", { { "x", { x } } });
        bool transposesY = !transposesX;
        if (flip()) {
            transposesY = flip();
            const int64_t columns = 1 + below(40);
            y = builder_.weight(transposesY ? Shape { columns, depth } : Shape { depth, columns });
        }
        keep(builder_.add("matmul",
            { { "x", { scaled } }, { "y", { y } }, { "transpose_x", { builder_.flag(transposesX) } },
                { "transpose_y", { builder_.flag(transposesY) } } }));
    }

    void convolve(ValueIndex x, int64_t outputs, int64_t groups)
    {
        if (rank(x) < 3 || rank(x) > 4)
            return;
        const auto spatial = static_cast<size_t>(rank(x) - 2);
        const int64_t channels = shape(x)[1] / groups;
        Shape weight { outputs, channels };
        std::vector<int32_t> strides;
        std::vector<int32_t> pad;
        for (size_t i = 0; i < spatial; ++i) {
            const int64_t kernel = 1 + below(std::min<int64_t>(3, shape(x)[i + 2]));
            weight.push_back(kernel);
            strides.push_back(static_cast<int32_t>(1 + below(2)));
            pad.push_back(static_cast<int32_t>(below(kernel)));
            pad.push_back(static_cast<int32_t>(below(kernel)));
        }
        static const char* const padTypes[] = { "valid", "same", "custom" };
        FunctionBuilder::Arguments arguments { { "x", { x } },
            { "weight", { builder_.weight(weight, weightSize(elementCount(weight) / outputs)) } },
            { "strides", { builder_.integers(strides) } }, { "pad", { builder_.integers(pad) } },
            { "pad_type", { builder_.text(padTypes[below(std::size(padTypes))]) } },
            { "groups", { builder_.integer(static_cast<int32_t>(groups)) } } };
        if (flip())
            arguments.push_back({ "bias", { builder_.weight({ outputs }) } });
        keep(builder_.add("conv", arguments));
    }

    void addConvolution(ValueIndex x) { convolve(x, 1 + below(40), 1); }
    void addDepthwise(ValueIndex x)
    {
        if (rank(x) > 1)
            convolve(x, shape(x)[1], shape(x)[1]);
    }

    void addLayerNorm(ValueIndex x)
    {
        const int64_t axis = below(rank(x));
        const int64_t length = shape(x)[static_cast<size_t>(axis)];
        if (length < 4) // nearly equal values would blow rounding errors up
            return;
        keep(builder_.add("layer_norm",
            { { "x", { x } }, { "axes", { builder_.integers({ static_cast<int32_t>(axis) }) } },
                { "gamma", { builder_.weight({ length }) } }, { "beta", { builder_.weight({ length }) } },
                { "epsilon", { builder_.number(0.1f) } } }));
    }

    void addSoftmax(ValueIndex x)
    {
        const auto axis = static_cast<int32_t>(below(rank(x)) - rank(x));
        keep(builder_.add("softmax", { { "x", { x } }, { "axis", { builder_.integer(axis) } } }));
    }

    std::mt19937 random_;
    FunctionBuilder builder_;
    std::vector<ValueIndex> values_; // real ones
};

} // namespace

Function randomFunction(unsigned seed)
{
    return RandomBuilder(seed).build();
}

} // namespace MLProgram
