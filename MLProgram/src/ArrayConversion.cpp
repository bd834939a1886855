// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ArrayConversion.h"

#include <PlatformSupport/Float16.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>

namespace MLProgram {
namespace {

using PlatformSupport::Float16;

// Arithmetic types convert as in C++, but for integers: toward zero, to the nearest value of their range, and
// 0 for what is no number.
template <typename To, typename From> To converted(From value)
{
    if constexpr (std::is_same_v<From, Float16>) {
        return converted<To>(toFloat(value));
    } else if constexpr (std::is_same_v<To, Float16>) {
        return PlatformSupport::toFloat16(static_cast<float>(value));
    } else if constexpr (std::is_floating_point_v<To>) {
        return static_cast<To>(value);
    } else {
        // Every 32-bit integer is a double.
        const auto exact = static_cast<double>(value);
        if (std::isnan(exact))
            return 0;
        return static_cast<To>(std::clamp(exact, static_cast<double>(std::numeric_limits<To>::min()),
            static_cast<double>(std::numeric_limits<To>::max())));
    }
}

template <typename From, typename To> void copyConverted(std::span<From> from, std::span<To> to)
{
    if constexpr (std::is_same_v<const From, const Float16> && std::is_same_v<To, float>)
        PlatformSupport::toFloat(from, to);
    else if constexpr (std::is_same_v<const From, const float> && std::is_same_v<To, Float16>)
        PlatformSupport::toFloat16(from, to);
    else
        std::transform(from.begin(), from.end(), to.begin(),
            [](auto value) { return converted<To, std::remove_const_t<From>>(value); });
}

// Calls `visit` with the elements of an array, as they are.
template <typename Array, typename Visitor> void visitElements(Array& array, Visitor visit)
{
    switch (array.dataType()) {
    case MLMultiArrayDataType::float16:
        return visit(array.template elements<Float16>());
    case MLMultiArrayDataType::float32:
        return visit(array.template elements<float>());
    case MLMultiArrayDataType::float64:
        return visit(array.template elements<double>());
    case MLMultiArrayDataType::int32:
        return visit(array.template elements<int32_t>());
    case MLMultiArrayDataType::int8:
        return visit(array.template elements<int8_t>());
    }
}

void roundToHalf(std::span<float> values)
{
    for (float& value : values)
        value = toFloat(PlatformSupport::toFloat16(value));
}

template <typename T> bool isTrue(T value)
{
    return converted<float>(value) != 0.0F;
}

} // namespace

bool isHeldAs(const MLMultiArray& array, ElementType element) noexcept
{
    return (element == ElementType::real && array.dataType() == MLMultiArrayDataType::float32)
        || (element == ElementType::integer && array.dataType() == MLMultiArrayDataType::int32);
}

void convert(const MLMultiArray& from, ScalarType declared, const TensorView& to)
{
    visitElements(from, [&](auto elements) {
        switch (to.type.element) {
        case ElementType::real:
            return copyConverted(elements, to.reals());
        case ElementType::integer:
            return copyConverted(elements, to.integers());
        case ElementType::boolean:
            std::transform(elements.begin(), elements.end(), to.booleans().begin(),
                [](auto value) { return static_cast<uint8_t>(isTrue(value)); });
        }
    });
    if (declared == ScalarType::float16 && from.dataType() != MLMultiArrayDataType::float16)
        roundToHalf(to.reals());
}

bool canStore(ElementType element, MLMultiArrayDataType type) noexcept
{
    return element != ElementType::real || (type != MLMultiArrayDataType::int32 && type != MLMultiArrayDataType::int8);
}

void convert(const TensorView& from, MLMultiArray& to)
{
    visitElements(to, [&](auto elements) {
        switch (from.type.element) {
        case ElementType::real:
            return copyConverted(from.reals(), elements);
        case ElementType::integer:
            return copyConverted(from.integers(), elements);
        case ElementType::boolean:
            return copyConverted(from.booleans(), elements);
        }
    });
}

} // namespace MLProgram
