// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Constant.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace MLProgram {

// A file of weights, all little-endian:
//
//   header, 64 bytes   u32 number of values, u32 version (2), the rest reserved
//   record, 64 bytes   u32 0xDEADBEEF, u32 code of the element type, u64 bytes of data, u64 offset of the data in
//                      the file, u64 unused bits in the last byte, the rest reserved
//   data               row-major, elements below 8 bits packed
//
// Records begin at multiples of 64 and are found through the program only, which knows their offsets; one may be
// used many times.
class WeightFile {
public:
    // `owner` keeps the bytes in place; the constants share it. `name` stands in errors.
    // Errors: MLModelError (invalidProgram) when the header is not that of such a file.
    WeightFile(std::string name, std::span<const std::byte> bytes, std::shared_ptr<const void> owner);

    // The value whose record is at `offset`. Its bytes are the file's, not copied.
    // Errors: MLModelError (invalidProgram) when there is no record, or it is of another type or size, or its
    //         data do not lie within the file.
    Constant read(uint64_t offset, ScalarType type, const Shape& shape) const;

private:
    struct Record;
    Record record(uint64_t offset) const;
    Constant constant(ScalarType type, const Shape& shape, std::span<const std::byte> data) const;
    void require(bool holds, uint64_t offset, const char* fault) const;

    std::string name_;
    std::span<const std::byte> bytes_;
    std::shared_ptr<const void> owner_;
};

} // namespace MLProgram
