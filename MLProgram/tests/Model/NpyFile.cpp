// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Model/NpyFile.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

namespace MLProgram {
namespace {

constexpr size_t preambleSize = 10; // "\x93NUMPY", the version, the length of the header as u16

std::string entry(const std::string& header, const std::string& pattern)
{
    std::smatch match;
    if (!std::regex_search(header, match, std::regex(pattern)))
        throw std::runtime_error("not an array that is understood: " + header);
    return match[1];
}

MLMultiArrayDataType dataType(const std::string& code)
{
    if (code == "<f2")
        return MLMultiArrayDataType::float16;
    if (code == "<f4")
        return MLMultiArrayDataType::float32;
    if (code == "<f8")
        return MLMultiArrayDataType::float64;
    if (code == "<i4")
        return MLMultiArrayDataType::int32;
    if (code == "|i1")
        return MLMultiArrayDataType::int8;
    throw std::runtime_error("not an element type that is understood: " + code);
}

std::vector<int64_t> shape(const std::string& list)
{
    std::vector<int64_t> dimensions;
    const std::regex number("[0-9]+");
    for (std::sregex_iterator match(list.begin(), list.end(), number); match != std::sregex_iterator(); ++match)
        dimensions.push_back(std::stoll(match->str()));
    return dimensions;
}

} // namespace

std::shared_ptr<MLMultiArray> readNpy(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string content { std::istreambuf_iterator<char>(file), {} };
    if (content.size() < preambleSize || !content.starts_with("\x93NUMPY\x01"))
        throw std::runtime_error("not an array file: " + path.string());
    const size_t headerSize = static_cast<unsigned char>(content[8]) + 256U * static_cast<unsigned char>(content[9]);
    const std::string header = content.substr(preambleSize, headerSize);
    entry(header, "'fortran_order': (False)");
    auto array = std::make_shared<MLMultiArray>(
        shape(entry(header, R"('shape': \(([^)]*)\))")), dataType(entry(header, "'descr': '([^']*)'")));
    const size_t size = static_cast<size_t>(array->count()) * sizeOf(array->dataType());
    if (content.size() - preambleSize - headerSize != size)
        throw std::runtime_error("not the size that the header says: " + path.string());
    std::memcpy(array->dataPointer(), content.data() + preambleSize + headerSize, size);
    return array;
}

} // namespace MLProgram
