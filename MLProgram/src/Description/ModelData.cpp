// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Description/ModelData.h"

#include "Description/ProtobufReader.h"

#include <MLProgram/MLModelError.h>

#include <cstring>
#include <string>
#include <utility>

namespace MLProgram {
namespace {

constexpr uint32_t programKind = 502;

// The fields of the messages that are of use here.
namespace ModelField {
constexpr uint64_t input = 1;
constexpr uint64_t output = 10;
constexpr uint64_t functions = 20;
constexpr uint64_t defaultFunctionName = 21;
constexpr uint64_t metadata = 100;
} // namespace ModelField
namespace FunctionField {
constexpr uint64_t name = 1;
constexpr uint64_t input = 2;
constexpr uint64_t output = 3;
} // namespace FunctionField
namespace FeatureField {
constexpr uint64_t name = 1;
constexpr uint64_t type = 3;
} // namespace FeatureField
namespace TypeField {
constexpr uint64_t multiArray = 5;
constexpr uint64_t isOptional = 1000;
} // namespace TypeField
namespace ArrayField {
constexpr uint64_t shape = 1;
constexpr uint64_t dataType = 2;
constexpr uint64_t enumeratedShapes = 21;
constexpr uint64_t shapeRange = 31;
} // namespace ArrayField
constexpr uint64_t userDefinedField = 100; // of the metadata

[[noreturn]] void fail()
{
    throw MLModelError(MLModelError::Case::invalidProgram, "coremldata.bin is damaged");
}

// Takes the parts of the container from its beginning on.
class Container {
public:
    explicit Container(std::span<const std::byte> bytes)
        : rest_(bytes)
    {
    }

    std::span<const std::byte> take(uint64_t size)
    {
        if (size > rest_.size())
            fail();
        const auto taken = rest_.first(size);
        rest_ = rest_.subspan(size);
        return taken;
    }

    template <typename Number> Number takeNumber()
    {
        Number number {};
        std::memcpy(&number, take(sizeof(Number)).data(), sizeof(Number));
        return number;
    }

private:
    std::span<const std::byte> rest_;
};

MLMultiArrayDataType dataType(uint64_t code)
{
    switch (code) {
    case 65568:
        return MLMultiArrayDataType::float32;
    case 65552:
        return MLMultiArrayDataType::float16;
    case 65600:
        return MLMultiArrayDataType::float64;
    case 131104:
        return MLMultiArrayDataType::int32;
    case 131080:
        return MLMultiArrayDataType::int8;
    default:
        throw MLModelError(
            MLModelError::Case::unsupported, "a feature has elements of the unknown type " + std::to_string(code));
    }
}

void appendNumbers(const ProtobufReader& field, std::vector<int64_t>& numbers)
{
    field.visitNumbers([&](uint64_t number) { numbers.push_back(static_cast<int64_t>(number)); });
}

// A message whose field 1, repeated, is a message again: calls `visit` with each.
template <typename Visitor> void visitMembers(ProtobufReader message, Visitor visit)
{
    while (message.next()) {
        if (message.field() == 1)
            visit(message.message());
    }
}

std::vector<int64_t> enumeratedShape(ProtobufReader message)
{
    std::vector<int64_t> shape;
    while (message.next()) {
        if (message.field() == 1)
            appendNumbers(message, shape);
    }
    return shape;
}

std::pair<int64_t, int64_t> range(ProtobufReader message)
{
    std::pair<int64_t, int64_t> bounds { 0, 0 };
    while (message.next()) {
        if (message.field() == 1)
            bounds.first = static_cast<int64_t>(message.number());
        else if (message.field() == 2)
            bounds.second = static_cast<int64_t>(message.number());
    }
    return bounds;
}

MLMultiArrayConstraint constraint(ProtobufReader message)
{
    MLMultiArrayConstraint found;
    while (message.next()) {
        switch (message.field()) {
        case ArrayField::shape:
            appendNumbers(message, found.shape);
            break;
        case ArrayField::dataType:
            found.dataType = dataType(message.number());
            break;
        case ArrayField::enumeratedShapes:
            visitMembers(message.message(),
                [&](const ProtobufReader& shape) { found.enumeratedShapes.push_back(enumeratedShape(shape)); });
            break;
        case ArrayField::shapeRange:
            visitMembers(
                message.message(), [&](const ProtobufReader& bounds) { found.shapeRange.push_back(range(bounds)); });
            break;
        default:
            break;
        }
    }
    return found;
}

MLFeatureDescription feature(ProtobufReader message)
{
    MLFeatureDescription found;
    while (message.next()) {
        if (message.field() == FeatureField::name)
            found.name = message.text();
        if (message.field() != FeatureField::type)
            continue;
        for (ProtobufReader type = message.message(); type.next();) {
            if (type.field() == TypeField::multiArray)
                found.multiArrayConstraint = constraint(type.message());
            else if (type.field() == TypeField::isOptional)
                found.isOptional = type.number() != 0;
        }
    }
    return found;
}

void addFeature(std::map<std::string, MLFeatureDescription>& features, const ProtobufReader& message)
{
    MLFeatureDescription found = feature(message);
    features.emplace(found.name, std::move(found));
}

std::pair<std::string, MLModelDescription> function(ProtobufReader message)
{
    std::pair<std::string, MLModelDescription> found;
    while (message.next()) {
        if (message.field() == FunctionField::name)
            found.first = message.text();
        else if (message.field() == FunctionField::input)
            addFeature(found.second.inputDescriptionsByName, message.message());
        else if (message.field() == FunctionField::output)
            addFeature(found.second.outputDescriptionsByName, message.message());
    }
    return found;
}

void addUserDefined(std::map<std::string, std::string>& metadata, ProtobufReader message)
{
    while (message.next()) {
        if (message.field() != userDefinedField)
            continue;
        std::pair<std::string, std::string> entry;
        for (ProtobufReader pair = message.message(); pair.next();) {
            if (pair.field() == 1)
                entry.first = pair.text();
            else if (pair.field() == 2)
                entry.second = pair.text();
        }
        metadata.insert(std::move(entry));
    }
}

BundleDescription description(ProtobufReader message)
{
    BundleDescription found;
    MLModelDescription only;
    while (message.next()) {
        switch (message.field()) {
        case ModelField::input:
            addFeature(only.inputDescriptionsByName, message.message());
            break;
        case ModelField::output:
            addFeature(only.outputDescriptionsByName, message.message());
            break;
        case ModelField::functions:
            found.functions.insert(function(message.message()));
            break;
        case ModelField::defaultFunctionName:
            found.defaultFunctionName = message.text();
            break;
        case ModelField::metadata:
            addUserDefined(only.userDefinedMetadata, message.message());
            break;
        default:
            break;
        }
    }
    for (auto& [name, described] : found.functions)
        described.userDefinedMetadata = only.userDefinedMetadata;
    if (found.functions.empty())
        found.functions.emplace(std::string(), std::move(only));
    return found;
}

} // namespace

BundleDescription readModelData(std::span<const std::byte> bytes)
{
    Container container(bytes);
    BundleDescription otherKind;
    otherKind.isProgram = container.takeNumber<uint32_t>() == programKind;
    if (!otherKind.isProgram)
        return otherKind;
    container.take(24); // version and flags
    container.take(container.takeNumber<uint64_t>());
    container.take(32); // version and zeros
    return description(ProtobufReader(container.take(container.takeNumber<uint64_t>())));
}

} // namespace MLProgram
