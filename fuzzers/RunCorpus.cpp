// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

// The fuzz target that this file is linked with.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// Feeds every file of a folder to the target once: what fuzzing found stays found. The folder is not empty.
int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> content { std::istreambuf_iterator<char>(file), {} };
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(content.data()), content.size());
        ++count;
    }
    std::printf("%zu files\n", count);
    return count > 0 ? 0 : 1;
}
