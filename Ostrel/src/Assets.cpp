// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Arithmetic.h"
#include "JSONFields.h"

#include <Ostrel/Assets.h>
#include <Ostrel/OstrelError.h>

#include <nlohmann/json.hpp>

namespace Ostrel {

namespace {

using PlatformSupport::MappedFile;

nlohmann::json readJSON(const std::filesystem::path& path)
{
    const MappedFile file(path);
    const auto* const text = reinterpret_cast<const char*>(file.bytes().data());
    return nlohmann::json::parse(text, text + file.bytes().size());
}

Configuration readConfiguration(const std::filesystem::path& directory)
{
    auto configuration = readJSON(directory / "meta.json").get<Configuration>();
    configuration.validate();
    return configuration;
}

std::vector<std::string> readVocabulary(const std::filesystem::path& directory, const Configuration& configuration)
{
    std::vector<std::string> vocabulary = JSONFields::strings(readJSON(directory / "vocab.json"));
    if (static_cast<int64_t>(vocabulary.size()) < configuration.vocabSize)
        throw OstrelError::invalidModel("vocabulary is smaller than the model's vocab size");
    return vocabulary;
}

MappedFile mapEmbedding(const std::filesystem::path& directory, const Configuration& configuration)
{
    constexpr int64_t bytesPerValue = 2;
    MappedFile file(directory / "embedding.f16");
    const auto actual = static_cast<int64_t>(file.bytes().size());
    const int64_t rows = saturatingSum(configuration.vocabSize, 1);
    const int64_t expected = saturatingProduct(saturatingProduct(rows, configuration.predHidden), bytesPerValue);
    if (actual != expected)
        throw OstrelError::invalidModel(
            "embedding.f16 has " + std::to_string(actual) + " bytes, expected " + std::to_string(expected));
    return file;
}

int64_t lanesOf(const Stage& decodeStep)
{
    const auto& inputs = decodeStep.modelDescription().inputDescriptionsByName;
    const auto embed = inputs.find("embed");
    if (embed == inputs.end() || !embed->second.multiArrayConstraint)
        throw OstrelError::invalidModel("decode step is missing its embed input");
    const auto& shape = embed->second.multiArrayConstraint->shape;
    if (shape.empty() || shape.front() < 1)
        throw OstrelError::invalidModel("decode step declares no lanes");
    return shape.front();
}

} // namespace

Assets Assets::load(const std::filesystem::path& directory, const StageLoader& loadStage)
{
    const auto stage = [&](const std::string& entry) {
        if (!std::filesystem::exists(directory / entry))
            throw OstrelError::invalidModel("missing " + entry + " in " + directory.string());
        return loadStage(directory / entry);
    };

    Configuration configuration = readConfiguration(directory);
    std::vector<std::string> vocabulary = readVocabulary(directory, configuration);
    MappedFile embedding = mapEmbedding(directory, configuration);
    std::unique_ptr<Stage> mel = stage("mel.mlmodelc");
    std::unique_ptr<Stage> encoder = stage("encoder.mlmodelc");
    std::unique_ptr<Stage> decodeStep = stage("decoder.mlmodelc");
    const int64_t lanes = lanesOf(*decodeStep);
    return { .configuration = std::move(configuration),
        .vocabulary = std::move(vocabulary),
        .embeddingData = std::move(embedding),
        .mel = std::move(mel),
        .encoder = std::move(encoder),
        .decodeStep = std::move(decodeStep),
        .decodeLanes = lanes };
}

} // namespace Ostrel
