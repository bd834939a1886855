// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations on two tensors, element by element, with broadcasting.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"
#include "Operations/Numbers.h"

#include <cmath>

namespace MLProgram {

namespace {

struct Add {
    static float of(float x, float y) { return x + y; }
    static int32_t of(int32_t x, int32_t y) { return wrapped(int64_t { x } + y); }
};

struct Subtract {
    static float of(float x, float y) { return x - y; }
    static int32_t of(int32_t x, int32_t y) { return wrapped(int64_t { x } - y); }
};

struct Multiply {
    static float of(float x, float y) { return x * y; }
    static int32_t of(int32_t x, int32_t y) { return wrapped(int64_t { x } * y); }
};

// NaN on either side wins.
struct Maximum {
    static float of(float x, float y) { return x > y || std::isnan(x) ? x : y; }
    static int32_t of(int32_t x, int32_t y) { return x > y ? x : y; }
};

struct Minimum {
    static float of(float x, float y) { return x < y || std::isnan(x) ? x : y; }
    static int32_t of(int32_t x, int32_t y) { return x < y ? x : y; }
};

// Integers are cut toward zero; an integer divided by zero gives zero, here and below.
struct Divide {
    static float of(float x, float y) { return x / y; }
    static int32_t of(int32_t x, int32_t y) { return y == 0 ? 0 : wrapped(int64_t { x } / y); }
};

struct FloorDivide {
    static float of(float x, float y) { return std::floor(x / y); }
    static int32_t of(int32_t x, int32_t y)
    {
        if (y == 0)
            return 0;
        const int64_t quotient = int64_t { x } / y;
        return wrapped(int64_t { x } % y != 0 && (x < 0) != (y < 0) ? quotient - 1 : quotient);
    }
};

// The remainder of a floored division: it has the sign of y.
struct Modulo {
    static float of(float x, float y)
    {
        const float remainder = std::fmod(x, y);
        return remainder != 0 && (remainder < 0) != (y < 0) ? remainder + y : remainder;
    }
    static int32_t of(int32_t x, int32_t y) { return y == 0 ? 0 : wrapped(x - int64_t { FloorDivide::of(x, y) } * y); }
};

struct Power {
    static float of(float x, float y) { return std::pow(x, y); }

    // Wraps. A negative exponent gives the reciprocal cut toward zero, which is 0 unless x is 1 or -1.
    static int32_t of(int32_t x, int32_t y)
    {
        if (y < 0)
            return x == 1 || x == -1 ? of(x, y & 1) : 0;
        int32_t power = 1;
        for (; y > 0; y >>= 1) {
            power = (y & 1) != 0 ? Multiply::of(power, x) : power;
            x = Multiply::of(x, x);
        }
        return power;
    }
};

struct Equal {
    static bool of(auto x, auto y) { return x == y; }
};
struct NotEqual {
    static bool of(auto x, auto y) { return x != y; }
};
struct Less {
    static bool of(auto x, auto y) { return x < y; }
};
struct LessEqual {
    static bool of(auto x, auto y) { return x <= y; }
};
struct Greater {
    static bool of(auto x, auto y) { return x > y; }
};
struct GreaterEqual {
    static bool of(auto x, auto y) { return x >= y; }
};

struct And {
    static bool of(bool x, bool y) { return x && y; }
};
struct Or {
    static bool of(bool x, bool y) { return x || y; }
};
struct Xor {
    static bool of(bool x, bool y) { return x != y; }
};

TensorTypes inferBoth(const Operands& operands, ElementType result)
{
    const TensorType& x = operands.tensor("x").type;
    const TensorType& y = operands.tensor("y").type;
    operands.require(x.element == y.element, "\"x\" and \"y\" must hold elements of one type");
    return { outputType(operands, result, broadcastShape(operands, x.shape, y.shape)) };
}

TensorTypes inferArithmetic(const Operands& operands)
{
    return inferBoth(operands, numericTensor(operands, "x").type.element);
}

TensorTypes inferComparison(const Operands& operands)
{
    return inferBoth(operands, ElementType::boolean);
}

TensorTypes inferLogical(const Operands& operands)
{
    operands.require(operands.tensor("x").type.element == ElementType::boolean, "\"x\" and \"y\" must hold booleans");
    return inferBoth(operands, ElementType::boolean);
}

template <typename Function, typename From, typename To>
void evaluateAs(const Operands& operands, const TensorView& output)
{
    const TensorView& x = operands.tensor("x");
    const TensorView& y = operands.tensor("y");
    const Shape& shape = output.type.shape;
    const auto from = x.values<const From>();
    const auto with = y.values<const From>();
    auto to = output.values<To>().begin();
    forEachOffset<2>(shape, { broadcastStrides(x.type.shape, shape), broadcastStrides(y.type.shape, shape) },
        [&](const auto& at) { *to++ = static_cast<To>(Function::of(from[at[0]], with[at[1]])); });
}

template <typename Function> void evaluateArithmetic(const Operands& operands, std::span<const TensorView> outputs)
{
    if (outputs[0].type.element == ElementType::real)
        evaluateAs<Function, float, float>(operands, outputs[0]);
    else
        evaluateAs<Function, int32_t, int32_t>(operands, outputs[0]);
}

template <typename Function> void evaluateComparison(const Operands& operands, std::span<const TensorView> outputs)
{
    withElementType(operands.tensor("x").type.element,
        [&](auto zero) { evaluateAs<Function, decltype(zero), uint8_t>(operands, outputs[0]); });
}

constexpr OperationDefinition definitions[] = {
    { "add", inferArithmetic, evaluateArithmetic<Add> },
    { "equal", inferComparison, evaluateComparison<Equal> },
    { "floor_div", inferArithmetic, evaluateArithmetic<FloorDivide> },
    { "greater", inferComparison, evaluateComparison<Greater> },
    { "greater_equal", inferComparison, evaluateComparison<GreaterEqual> },
    { "less", inferComparison, evaluateComparison<Less> },
    { "less_equal", inferComparison, evaluateComparison<LessEqual> },
    { "logical_and", inferLogical, evaluateComparison<And> },
    { "logical_or", inferLogical, evaluateComparison<Or> },
    { "logical_xor", inferLogical, evaluateComparison<Xor> },
    { "maximum", inferArithmetic, evaluateArithmetic<Maximum> },
    { "minimum", inferArithmetic, evaluateArithmetic<Minimum> },
    { "mod", inferArithmetic, evaluateArithmetic<Modulo> },
    { "mul", inferArithmetic, evaluateArithmetic<Multiply> },
    { "not_equal", inferComparison, evaluateComparison<NotEqual> },
    { "pow", inferArithmetic, evaluateArithmetic<Power> },
    { "real_div", inferArithmetic, evaluateArithmetic<Divide> },
    { "sub", inferArithmetic, evaluateArithmetic<Subtract> },
};

} // namespace

Definitions elementwiseBinaries() noexcept
{
    return definitions;
}

} // namespace MLProgram
