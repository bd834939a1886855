// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

#include "AllocationCount.h"
#include "Operations/Numbers.h"

#include <cmath>
#include <cstring>
#include <numeric>
#include <sstream>
#include <stdexcept>

namespace MLProgram {

namespace {

template <typename T, typename From>
Tensor tensorOf(ElementType element, const Shape& shape, const std::vector<From>& values)
{
    Tensor tensor({ element, shape });
    if (static_cast<size_t>(elementCount(shape)) != values.size())
        throw std::logic_error("the example has more or fewer values than its shape says");
    std::ranges::transform(values, tensor.view().values<T>().begin(), [](From value) { return static_cast<T>(value); });
    return tensor;
}

Shape vectorShape(size_t count)
{
    return { static_cast<int64_t>(count) };
}

void addTo(Operands& operands, std::string_view name, const Argument& argument)
{
    if (const auto* tensor = std::get_if<Tensor>(&argument.value))
        return operands.add(name, tensor->view());
    if (const auto* text = std::get_if<std::string>(&argument.value))
        return operands.add(name, std::string_view(*text));
    Operands::List list;
    for (const Tensor& tensor : std::get<List>(argument.value))
        list.push_back(tensor.view());
    operands.add(name, std::move(list));
}

Operands operandsOf(const std::string& operation, const Arguments& arguments, int opset)
{
    Operands operands(operation, opset);
    for (const auto& [name, argument] : arguments)
        addTo(operands, name, argument);
    return operands;
}

const OperationDefinition& definitionOf(const std::string& operation)
{
    const OperationDefinition* const definition = findOperation(operation);
    if (definition == nullptr)
        throw std::logic_error("there is no operation " + operation);
    return *definition;
}

void fillWithGarbage(const TensorView& tensor)
{
    std::memset(tensor.data, 0x5A, static_cast<size_t>(tensor.count()) * sizeOf(tensor.type.element));
}

bool isCloseValue(float actual, float expected, float tolerance)
{
    if (std::isnan(expected) || std::isinf(expected))
        return std::isnan(expected) ? std::isnan(actual) : actual == expected;
    return std::fabs(actual - expected) <= tolerance * std::max(1.0f, std::fabs(expected));
}

} // namespace

Tensor reals(const Shape& shape, const std::vector<float>& values)
{
    return tensorOf<float>(ElementType::real, shape, values);
}

Tensor integers(const Shape& shape, const std::vector<int32_t>& values)
{
    return tensorOf<int32_t>(ElementType::integer, shape, values);
}

Tensor booleans(const Shape& shape, const std::vector<int>& values)
{
    return tensorOf<uint8_t>(ElementType::boolean, shape, values);
}

Tensor reals(const std::vector<float>& values)
{
    return reals(vectorShape(values.size()), values);
}

Tensor integers(const std::vector<int32_t>& values)
{
    return integers(vectorShape(values.size()), values);
}

Tensor booleans(const std::vector<int>& values)
{
    return booleans(vectorShape(values.size()), values);
}

Tensor counting(const Shape& shape)
{
    Tensor tensor({ ElementType::real, shape });
    const auto values = tensor.view().reals();
    std::iota(values.begin(), values.end(), 0.0f);
    return tensor;
}

std::vector<Tensor> evaluateAll(const std::string& operation, const Arguments& arguments, int opset)
{
    const OperationDefinition& definition = definitionOf(operation);
    const Operands operands = operandsOf(operation, arguments, opset);
    std::vector<Tensor> outputs;
    std::vector<TensorView> views;
    for (const TensorType& type : definition.infer(operands)) {
        outputs.emplace_back(type);
        views.push_back(outputs.back().view());
        fillWithGarbage(views.back());
    }
    definition.evaluate(operands, views);
    const size_t before = allocationCount();
    definition.evaluate(operands, views);
    EXPECT_EQ(allocationCount(), before) << operation << " allocates memory each time it runs";
    return outputs;
}

Tensor evaluate(const std::string& operation, const Arguments& arguments, int opset)
{
    return evaluateAll(operation, arguments, opset).front();
}

std::string refusal(const std::string& operation, const Arguments& arguments, int opset)
{
    try {
        definitionOf(operation).infer(operandsOf(operation, arguments, opset));
    } catch (const MLModelError& error) {
        EXPECT_EQ(error.which(), MLModelError::Case::invalidProgram);
        EXPECT_THAT(error.description(), testing::HasSubstr("The operation " + operation + " "));
        return error.description();
    }
    return {};
}

bool needsValue(const std::string& operation, const Arguments& arguments, const std::string& unknown)
{
    Operands operands(operation, 17);
    for (const auto& [name, argument] : arguments) {
        if (name == unknown)
            operands.add(name, TensorView { std::get<Tensor>(argument.value).type(), nullptr });
        else
            addTo(operands, name, argument);
    }
    try {
        definitionOf(operation).infer(operands);
    } catch (const ValueNotKnown&) {
        return true;
    }
    return false;
}

bool isClose(const Tensor& actual, const Tensor& expected, float tolerance)
{
    if (!(actual.type() == expected.type()))
        return false;
    return withElementType(actual.type().element, [&](auto zero) {
        return std::ranges::equal(actual.view().values<decltype(zero)>(), expected.view().values<decltype(zero)>(),
            [&](auto a, auto e) { return isCloseValue(static_cast<float>(a), static_cast<float>(e), tolerance); });
    });
}

std::string describe(const Tensor& tensor)
{
    constexpr const char* names[] = { "real", "integer", "boolean" };
    std::ostringstream text;
    text.precision(9);
    text << names[static_cast<size_t>(tensor.type().element)] << " [";
    for (const int64_t dimension : tensor.type().shape)
        text << ' ' << dimension;
    text << " ] {";
    withElementType(tensor.type().element, [&](auto zero) {
        for (const auto value : tensor.view().values<decltype(zero)>())
            text << ' ' << +value;
    });
    text << " }";
    return text.str();
}

void PrintTo(const Tensor& tensor, std::ostream* out)
{
    *out << describe(tensor);
}

} // namespace MLProgram
