// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/Numbers.h"
#include "Operations/Operation.h"

#include <MLProgram/MLModelError.h>

#include <string>
#include <utility>

namespace MLProgram {

namespace {

void requireKnown(const TensorView& tensor)
{
    if (!tensor.isKnown())
        throw ValueNotKnown {};
}

// The one element of a tensor, exact: every 32-bit integer and float is a double.
double onlyElement(const TensorView& tensor)
{
    requireKnown(tensor);
    switch (tensor.type.element) {
    case ElementType::real:
        return tensor.reals()[0];
    case ElementType::integer:
        return tensor.integers()[0];
    case ElementType::boolean:
        break;
    }
    return tensor.booleans()[0];
}

template <typename T> std::span<const T> vectorOf(const TensorView& tensor)
{
    requireKnown(tensor);
    return tensor.values<T>();
}

} // namespace

void Operands::add(std::string_view name, TensorView tensor)
{
    operands_.push_back({ name, List { std::move(tensor) }, {}, false });
}

void Operands::add(std::string_view name, List tensors)
{
    operands_.push_back({ name, std::move(tensors), {}, false });
}

void Operands::add(std::string_view name, std::string_view text)
{
    operands_.push_back({ name, {}, text, true });
}

bool Operands::has(std::string_view name) const noexcept
{
    return find(name) != nullptr;
}

const TensorView& Operands::tensor(std::string_view name) const
{
    const auto list = tensors(name);
    if (list.size() != 1)
        refuse("\"" + std::string(name) + "\" must be a single tensor");
    return list.front();
}

const TensorView* Operands::optionalTensor(std::string_view name) const
{
    return has(name) ? &tensor(name) : nullptr;
}

std::span<const TensorView> Operands::tensors(std::string_view name) const
{
    const Operand& operand = get(name);
    if (operand.isText)
        refuse("\"" + std::string(name) + "\" must be a tensor, not a text");
    return operand.tensors;
}

int64_t Operands::integer(std::string_view name) const
{
    return saturated<int32_t>(scalar(name));
}

int64_t Operands::integer(std::string_view name, int64_t otherwise) const
{
    return has(name) ? integer(name) : otherwise;
}

float Operands::real(std::string_view name) const
{
    return static_cast<float>(scalar(name));
}

float Operands::real(std::string_view name, float otherwise) const
{
    return has(name) ? real(name) : otherwise;
}

bool Operands::flag(std::string_view name, bool otherwise) const
{
    return has(name) ? scalar(name) != 0 : otherwise;
}

std::string_view Operands::text(std::string_view name) const
{
    const Operand& operand = get(name);
    if (!operand.isText)
        refuse("\"" + std::string(name) + "\" must be a text");
    return operand.text;
}

std::string_view Operands::text(std::string_view name, std::string_view otherwise) const
{
    return has(name) ? text(name) : otherwise;
}

std::span<const int32_t> Operands::integers(std::string_view name) const
{
    const TensorView& vector = tensor(name);
    if (vector.type.element != ElementType::integer || vector.type.shape.size() > 1)
        refuse("\"" + std::string(name) + "\" must be a vector of integers");
    return vectorOf<int32_t>(vector);
}

std::optional<std::span<const int32_t>> Operands::optionalIntegers(std::string_view name) const
{
    if (!has(name))
        return std::nullopt;
    return integers(name);
}

std::optional<std::span<const uint8_t>> Operands::optionalFlags(std::string_view name) const
{
    if (!has(name))
        return std::nullopt;
    const TensorView& vector = tensor(name);
    if (vector.type.element != ElementType::boolean || vector.type.shape.size() > 1)
        refuse("\"" + std::string(name) + "\" must be a vector of booleans");
    return vectorOf<uint8_t>(vector);
}

void Operands::refuse(std::string_view fault) const
{
    throw MLModelError(MLModelError::Case::invalidProgram,
        "The operation " + std::string(operation_) + " is not sound: " + std::string(fault) + ".");
}

double Operands::scalar(std::string_view name) const
{
    const TensorView& operand = tensor(name);
    if (operand.count() != 1)
        refuse("\"" + std::string(name) + "\" must have exactly one element");
    return onlyElement(operand);
}

const Operands::Operand* Operands::find(std::string_view name) const noexcept
{
    for (const Operand& operand : operands_)
        if (operand.name == name)
            return &operand;
    return nullptr;
}

const Operands::Operand& Operands::get(std::string_view name) const
{
    const Operand* operand = find(name);
    if (operand == nullptr)
        refuse("the operand \"" + std::string(name) + "\" is missing");
    return *operand;
}

} // namespace MLProgram
