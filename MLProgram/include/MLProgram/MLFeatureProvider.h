// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <MLProgram/MLMultiArray.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace MLProgram {

// One value that a stage takes or gives; every feature of a speech stage is a multi-array.
class MLFeatureValue {
public:
    explicit MLFeatureValue(std::shared_ptr<MLMultiArray> multiArray)
        : multiArray_(std::move(multiArray))
    {
    }

    const std::shared_ptr<MLMultiArray>& multiArrayValue() const noexcept { return multiArray_; }

private:
    std::shared_ptr<MLMultiArray> multiArray_;
};

// Features by name. Made once and used for any number of predictions: it refers to its arrays, so that only
// their contents change between calls. Copies share the dictionary, and cost nothing.
class MLDictionaryFeatureProvider {
public:
    MLDictionaryFeatureProvider() = default;
    explicit MLDictionaryFeatureProvider(std::map<std::string, MLFeatureValue> dictionary)
        : dictionary_(std::make_shared<const Dictionary>(std::move(dictionary)))
    {
    }

    const std::map<std::string, MLFeatureValue>& dictionary() const noexcept { return *dictionary_; }

    // Null when there is no such feature.
    const MLFeatureValue* featureValue(const std::string& name) const
    {
        const auto found = dictionary_->find(name);
        return found == dictionary_->end() ? nullptr : &found->second;
    }

private:
    using Dictionary = std::map<std::string, MLFeatureValue>;
    std::shared_ptr<const Dictionary> dictionary_ = std::make_shared<const Dictionary>(); // never null
};

// How one prediction is to be made.
struct MLPredictionOptions {
    // Arrays that outputs are written into, by output name. An output that stands here costs no allocation;
    // its array must have exactly the output's shape and a floating or integer type that it can be stored in.
    std::map<std::string, std::shared_ptr<MLMultiArray>> outputBackings;
};

} // namespace MLProgram
