// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ArrayConversion.h"
#include "LoadedFunction.h"
#include "MakeExecutable.h"

#include <MLProgram/MLModel.h>
#include <MLProgram/MLModelError.h>

#include <algorithm>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace MLProgram {
namespace {

using Case = MLModelError::Case;

std::string nameOf(const std::filesystem::path& bundle)
{
    const std::filesystem::path normal = bundle.lexically_normal();
    return (normal.has_filename() ? normal : normal.parent_path()).filename().string();
}

// Does `action` with the bundle's name in front of whatever goes wrong.
template <typename Action> auto naming(const std::string& bundle, Action action)
{
    try {
        return action();
    } catch (const MLModelError& error) {
        const std::string text = error.description();
        throw MLModelError(error.which(), bundle + ": " + text + (text.ends_with('.') ? "" : "."));
    } catch (const std::bad_alloc&) {
        throw MLModelError(Case::outOfMemory, bundle + ": there is not enough memory.");
    }
}

[[noreturn]] void failAt(const char* kind, const std::string& name, const std::string& fault)
{
    throw MLModelError(Case::invalidFeature, std::string("the ") + kind + " \"" + name + "\" " + fault);
}

std::string textOf(const std::vector<int64_t>& shape)
{
    std::string text;
    for (const int64_t dimension : shape)
        text += (text.empty() ? "" : ", ") + std::to_string(dimension);
    return "[" + text + "]";
}

bool isAllowed(const MLMultiArrayConstraint& constraint, const std::vector<int64_t>& shape)
{
    if (!constraint.enumeratedShapes.empty())
        return std::find(constraint.enumeratedShapes.begin(), constraint.enumeratedShapes.end(), shape)
            != constraint.enumeratedShapes.end();
    if (constraint.shapeRange.empty())
        return constraint.shape.empty() || shape == constraint.shape;
    return std::equal(shape.begin(), shape.end(), constraint.shapeRange.begin(), constraint.shapeRange.end(),
        [](int64_t dimension, const std::pair<int64_t, int64_t>& bounds) {
            return dimension >= bounds.first && (bounds.second == -1 || dimension <= bounds.second);
        });
}

} // namespace

class MLModel::Implementation {
public:
    Implementation(std::string name, LoadedFunction loaded, MLComputeUnits units)
        : name_(std::move(name))
        , description_(std::move(loaded.description))
        , function_(std::move(loaded.function))
        , executable_(makeExecutable(function_, units))
    {
        for (const ValueIndex index : function_->parameters) {
            if (function_->values[index].type.kind == ValueType::Kind::tensor)
                inputs_.push_back({ &function_->values[index], {} });
        }
        views_.resize(inputs_.size());
        arrays_.resize(function_->outputs.size());
    }

    const std::string& name() const noexcept { return name_; }
    const MLModelDescription& description() const noexcept { return description_; }

    MLDictionaryFeatureProvider predict(const MLDictionaryFeatureProvider& features, const MLPredictionOptions& options)
    {
        for (const auto& [output, array] : options.outputBackings) {
            if (!description_.outputDescriptionsByName.contains(output) || array == nullptr)
                failAt("output", output, "does not exist, or its backing does not");
        }
        for (size_t i = 0; i < inputs_.size(); ++i)
            views_[i] = tensorOf(inputs_[i], features);
        const std::span<const TensorView> outputs = executable_->run(views_);
        for (size_t i = 0; i < outputs.size(); ++i) {
            std::shared_ptr<MLMultiArray> array = arrayOf(outputName(i), outputs[i], options);
            convert(outputs[i], *array);
            namesArrays_ = namesArrays_ && array == arrays_[i];
            arrays_[i] = std::move(array);
        }
        if (!namesArrays_)
            result_ = makeResult();
        namesArrays_ = true;
        return result_;
    }

private:
    struct Input {
        const Value* parameter;
        Tensor converted; // room for arrays that are of another type than the tensor
    };

    const std::string& outputName(size_t index) const { return function_->values[function_->outputs[index]].name; }

    TensorView tensorOf(Input& input, const MLDictionaryFeatureProvider& features) const
    {
        const std::string& name = input.parameter->name;
        const ValueType& declared = input.parameter->type;
        const MLFeatureValue* const feature = features.featureValue(name);
        if (feature == nullptr || feature->multiArrayValue() == nullptr)
            failAt("input", name, "is missing");
        MLMultiArray& array = *feature->multiArrayValue();
        checkShape(*input.parameter, array.shape());
        const TensorType type { elementTypeOf(declared.scalar), Shape(array.shape().begin(), array.shape().end()) };
        if (isHeldAs(array, type.element) && declared.scalar != ScalarType::float16)
            return { type, array.dataPointer() };
        if (input.converted.view().data == nullptr || input.converted.type() != type)
            input.converted = Tensor(type);
        convert(array, declared.scalar, input.converted.view());
        return input.converted.view();
    }

    void checkShape(const Value& parameter, const std::vector<int64_t>& shape) const
    {
        const auto& constraint = description_.inputDescriptionsByName.at(parameter.name).multiArrayConstraint;
        const bool fits = shape.size() <= maximumRank && admits(parameter.type, Shape(shape.begin(), shape.end()));
        if (!fits || (constraint && !isAllowed(*constraint, shape)))
            failAt("input", parameter.name,
                "has the shape " + textOf(shape) + ", which is not one that it may have ("
                    + MLProgram::description(parameter.type) + ")");
    }

    // The array that an output goes into: its backing, or a new one of the described type.
    std::shared_ptr<MLMultiArray> arrayOf(
        const std::string& name, const TensorView& output, const MLPredictionOptions& options) const
    {
        const auto backing = options.outputBackings.find(name);
        if (backing == options.outputBackings.end())
            return std::make_shared<MLMultiArray>(
                std::vector<int64_t>(output.type.shape.begin(), output.type.shape.end()), typeOfNewArray(name, output));
        const MLMultiArray& array = *backing->second;
        if (!std::equal(array.shape().begin(), array.shape().end(), output.type.shape.begin(), output.type.shape.end()))
            failAt("output", name,
                "has the shape " + MLProgram::description(output.type) + ", and its backing " + textOf(array.shape()));
        if (!canStore(output.type.element, array.dataType()))
            failAt("output", name, "cannot be stored in a backing of integers");
        return backing->second;
    }

    MLMultiArrayDataType typeOfNewArray(const std::string& name, const TensorView& output) const
    {
        const auto& constraint = description_.outputDescriptionsByName.at(name).multiArrayConstraint;
        if (constraint && canStore(output.type.element, constraint->dataType))
            return constraint->dataType;
        return output.type.element == ElementType::real ? MLMultiArrayDataType::float32 : MLMultiArrayDataType::int32;
    }

    MLDictionaryFeatureProvider makeResult() const
    {
        std::map<std::string, MLFeatureValue> dictionary;
        for (size_t i = 0; i < arrays_.size(); ++i)
            dictionary.emplace(outputName(i), MLFeatureValue(arrays_[i]));
        return MLDictionaryFeatureProvider(std::move(dictionary));
    }

    std::string name_;
    MLModelDescription description_;
    std::shared_ptr<const Function> function_;
    std::unique_ptr<Executable> executable_;
    std::vector<Input> inputs_; // of the function's parameters, states left out
    std::vector<TensorView> views_; // of this call's inputs
    std::vector<std::shared_ptr<MLMultiArray>> arrays_; // of the last call's outputs
    MLDictionaryFeatureProvider result_; // of an earlier call; the next one's, too, if it has the same arrays
    bool namesArrays_ = false; // whether that is what stands in arrays_
};

MLModel::MLModel(const std::filesystem::path& bundle, const MLModelConfiguration& configuration)
{
    const std::string name = nameOf(bundle);
    implementation_ = naming(name, [&] {
        return std::make_unique<Implementation>(
            name, loadFunction(bundle, configuration.functionName), configuration.computeUnits);
    });
}

MLModel::~MLModel() = default;
MLModel::MLModel(MLModel&&) noexcept = default;
MLModel& MLModel::operator=(MLModel&&) noexcept = default;

const MLModelDescription& MLModel::modelDescription() const noexcept
{
    return implementation_->description();
}

MLDictionaryFeatureProvider MLModel::prediction(
    const MLDictionaryFeatureProvider& inputs, const MLPredictionOptions& options)
{
    return naming(implementation_->name(), [&] { return implementation_->predict(inputs, options); });
}

} // namespace MLProgram
