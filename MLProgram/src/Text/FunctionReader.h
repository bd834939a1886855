// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Program.h"
#include "Text/Literal.h"
#include "Text/TokenStream.h"
#include "Text/WeightSource.h"

#include <string_view>
#include <unordered_map>
#include <vector>

namespace MLProgram {

// Reads one function, from the word `func` to behind the list of its outputs, and checks that every name is
// defined once and before its use. Used for one function only.
class FunctionReader {
public:
    FunctionReader(TokenStream& stream, WeightSource& weights)
        : stream_(stream)
        , weights_(weights)
    {
    }

    Function read(); // errors as readProgram()

private:
    // A name and a value in brackets behind a statement.
    struct Attribute {
        Token place;
        std::string_view name;
        Literal value;
    };

    int readOpset();
    void readParameter();
    void readOutputs();
    ValueIndex readReference();

    void readStatement();
    void readOperation(std::vector<Value> outputs, const std::vector<Token>& places);
    void readConstant(const Token& place, std::vector<Value> outputs);
    Argument readArgument();
    void appendArgumentValues(std::vector<ValueIndex>& values, int depth);
    void appendInPlace(std::vector<ValueIndex>& values, const Token& place, Literal literal);
    std::vector<Attribute> readAttributes();
    bool skipNestedBlocks();
    void readFlexibility();

    void define(const Token& place, Value value);
    ValueIndex append(Value value);

    TokenStream& stream_;
    WeightSource& weights_;
    Function function_;
    std::unordered_map<std::string_view, ValueIndex> scope_; // the names refer to the text
};

} // namespace MLProgram
