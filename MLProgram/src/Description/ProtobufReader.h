// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace MLProgram {

// Walks through the fields of one message of the protocol buffer format.
//
//   ProtobufReader message(bytes);
//   while (message.next())
//       if (message.field() == 1) name = message.text();
//
// All bytes are foreign. Errors: MLModelError (invalidProgram).
class ProtobufReader {
public:
    explicit ProtobufReader(std::span<const std::byte> message)
        : rest_(message)
    {
    }

    bool next(); // to the next field; false at the end of the message

    uint64_t field() const noexcept { return field_; }
    bool isNumber() const noexcept { return !isBytes_; }
    uint64_t number() const; // of a field that is one
    std::span<const std::byte> bytes() const; // of a field that holds bytes, a string or a message
    std::string text() const;
    ProtobufReader message() const { return ProtobufReader(bytes()); }

    // Numbers that may stand one in a field, or many packed together: calls `visit` with each.
    template <typename Visitor> void visitNumbers(Visitor visit) const
    {
        if (isNumber())
            return visit(number());
        for (ProtobufReader packed(bytes()); !packed.rest_.empty();)
            visit(packed.takeVariable());
    }

private:
    uint64_t takeVariable();
    uint64_t takeFixed(size_t size);

    std::span<const std::byte> rest_;
    uint64_t field_ = 0;
    bool isBytes_ = false;
    uint64_t number_ = 0;
    std::span<const std::byte> bytes_;
};

} // namespace MLProgram
