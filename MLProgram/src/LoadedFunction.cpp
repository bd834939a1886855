// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LoadedFunction.h"

#include "Description/CompleteDescription.h"
#include "Description/Metadata.h"
#include "Description/ModelData.h"
#include "Program/SupportCheck.h"
#include "Text/ProgramReader.h"
#include "Weights/BundleFile.h"
#include "Weights/BundleWeights.h"

#include <MLProgram/MLModelError.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace MLProgram {
namespace {

constexpr const char* programFile = "model.mil";
constexpr const char* metadataFile = "metadata.json";
constexpr const char* modelDataFile = "coremldata.bin";

bool has(const std::filesystem::path& bundle, const char* name)
{
    std::error_code error;
    return std::filesystem::exists(bundle / name, error);
}

[[noreturn]] void failAsOtherKind()
{
    throw MLModelError(MLModelError::Case::unsupported, "it is not an ML program");
}

// A bundle without program text holds a model of another kind: a pipeline of bundles, a network of layers.
void requireProgram(const std::filesystem::path& bundle)
{
    std::error_code error;
    if (!std::filesystem::is_directory(bundle, error))
        throw MLModelError(MLModelError::Case::io, "there is no such directory");
    constexpr std::array signsOfOtherKinds { metadataFile, modelDataFile, "model0", "model.espresso.net" };
    const bool isOtherKind = std::any_of(
        signsOfOtherKinds.begin(), signsOfOtherKinds.end(), [&](const char* name) { return has(bundle, name); });
    if (!has(bundle, programFile) && isOtherKind)
        failAsOtherKind();
}

std::optional<BundleDescription> readDescription(const std::filesystem::path& bundle)
{
    std::optional<BundleDescription> description;
    if (has(bundle, metadataFile))
        description = readMetadata(textOf(*mapBundleFile(bundle, metadataFile)));
    else if (has(bundle, modelDataFile))
        description = readModelData(mapBundleFile(bundle, modelDataFile)->bytes());
    if (description && !description->isProgram)
        failAsOtherKind();
    return description;
}

Program readText(const std::filesystem::path& bundle)
{
    const auto text = mapBundleFile(bundle, programFile);
    BundleWeights weights(bundle);
    return readProgram(textOf(*text), weights);
}

// The wanted function, or the one that the description calls the default, or the only one, or "main".
Function takeFunction(Program program, const std::string& wanted, const std::string& described)
{
    std::string name = !wanted.empty() ? wanted : described;
    if (name.empty())
        name = program.functions.size() == 1 ? program.functions.front().name : "main";
    const auto found = std::find_if(program.functions.begin(), program.functions.end(),
        [&](const Function& function) { return function.name == name; });
    if (found == program.functions.end())
        throw MLModelError(MLModelError::Case::invalidProgram, "there is no function \"" + name + "\"");
    return std::move(*found);
}

} // namespace

LoadedFunction loadFunction(const std::filesystem::path& bundle, const std::string& name)
{
    requireProgram(bundle);
    const std::optional<BundleDescription> description = readDescription(bundle);
    Function function
        = takeFunction(readText(bundle), name, description ? description->defaultFunctionName : std::string());
    checkSupport(function);
    const MLModelDescription* const described = description ? description->function(function.name) : nullptr;
    MLModelDescription complete = completeDescription(function, described);
    return { std::make_shared<const Function>(std::move(function)), std::move(complete) };
}

} // namespace MLProgram
