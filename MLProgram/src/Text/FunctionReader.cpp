// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/FunctionReader.h"

#include "Text/FlexibilityReader.h"
#include "Text/TextError.h"
#include "Text/TypeReader.h"
#include "Weights/WeightDecoder.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>

namespace MLProgram {

Function FunctionReader::read()
{
    stream_.expectWord("func");
    function_.name = stream_.takeIdentifier("the name of a function");
    function_.opset = readOpset();
    stream_.expect('(');
    stream_.readList(')', [&] { readParameter(); });
    readFlexibility();
    stream_.expect('{');
    while (!stream_.accept('}'))
        readStatement();
    readOutputs();
    return std::move(function_);
}

// <ios17>
int FunctionReader::readOpset()
{
    stream_.expect('<');
    const Token token = stream_.current();
    const std::string_view opset = stream_.takeIdentifier("an opset");
    stream_.expect('>');
    constexpr std::string_view family = "ios";
    int version = 0;
    const std::string_view digits = opset.substr(std::min(family.size(), opset.size()));
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), version);
    if (!opset.starts_with(family) || error != std::errc() || end != digits.data() + digits.size())
        failAt(token, MLModelError::Case::unsupported, "the opset \"" + std::string(opset) + "\" is not supported");
    return version;
}

void FunctionReader::readParameter()
{
    Value value { .type = readType(stream_) };
    const Token place = stream_.current();
    value.name = stream_.takeIdentifier("the name of a parameter");
    function_.parameters.push_back(static_cast<ValueIndex>(function_.values.size()));
    define(place, std::move(value));
}

// -> (a, b);
void FunctionReader::readOutputs()
{
    stream_.expectArrow();
    stream_.expect('(');
    stream_.readList(')', [&] { function_.outputs.push_back(readReference()); });
    stream_.accept(';');
}

ValueIndex FunctionReader::readReference()
{
    const Token place = stream_.current();
    const auto found = scope_.find(stream_.takeIdentifier("the name of a value"));
    if (found == scope_.end())
        failAt(place, "\"" + std::string(place.text) + "\" is not defined before this place");
    return found->second;
}

// [type name {, type name} =] operation(...)...;
void FunctionReader::readStatement()
{
    std::vector<Value> outputs;
    std::vector<Token> places { stream_.current() };
    if (isAtType(stream_)) {
        places.clear();
        do {
            Value output { .type = readType(stream_) };
            places.push_back(stream_.current());
            output.name = stream_.takeIdentifier("the name of an output");
            outputs.push_back(std::move(output));
        } while (stream_.accept(','));
        stream_.expect('=');
    }
    if (stream_.current().text == "const" && stream_.following().is('('))
        readConstant(places.front(), std::move(outputs));
    else
        readOperation(std::move(outputs), places);
    stream_.expect(';');
}

// const()[name = string("a"), val = int32(1)]
void FunctionReader::readConstant(const Token& place, std::vector<Value> outputs)
{
    stream_.take();
    stream_.expect('(');
    stream_.expect(')');
    if (outputs.size() != 1)
        failAt(place, "a constant is one value");
    Value& value = outputs.front();
    for (Attribute& attribute : readAttributes()) {
        if (attribute.name == "val")
            value.constant = std::move(attribute.value.constant);
    }
    if (!value.constant)
        failAt(place, "the constant \"" + value.name + "\" has no tensor as its value");
    if (value.constant->scalarType() != value.type.scalar || !admits(value.type, value.constant->shape()))
        failAt(place,
            "the constant \"" + value.name + "\" is declared as " + description(value.type)
                + " and has a value of another type");
    value.type.shape = value.constant->shape();
    define(place, std::move(value));
}

void FunctionReader::readOperation(std::vector<Value> outputs, const std::vector<Token>& places)
{
    Operation operation;
    operation.line = stream_.current().line;
    operation.name = stream_.takeIdentifier("the name of an operation");
    operation.opset = stream_.at('<') ? readOpset() : function_.opset;
    stream_.expect('(');
    stream_.readList(')', [&] {
        const Token place = stream_.current();
        Argument argument = readArgument();
        if (operation.argument(argument.name) != nullptr)
            failAt(place, "\"" + argument.name + "\" is given twice");
        operation.arguments.push_back(std::move(argument));
    });
    for (Attribute& attribute : readAttributes()) {
        if (!isWeightDecoder(operation.name) || attribute.name == "name"
            || operation.argument(attribute.name) != nullptr)
            continue;
        Argument argument { .name = std::string(attribute.name) };
        appendInPlace(argument.values, attribute.place, std::move(attribute.value));
        operation.arguments.push_back(std::move(argument));
    }
    operation.hasNestedBlocks = skipNestedBlocks();
    for (size_t i = 0; i < outputs.size(); ++i) {
        operation.outputs.push_back(static_cast<ValueIndex>(function_.values.size()));
        define(places[i], std::move(outputs[i]));
    }
    function_.operations.push_back(std::move(operation));
}

// name = reference, a value in place, or either in parentheses: name = (a, b, c)
Argument FunctionReader::readArgument()
{
    Argument argument;
    argument.name = stream_.takeIdentifier("the name of an argument");
    stream_.expect('=');
    appendArgumentValues(argument.values, 0);
    return argument;
}

void FunctionReader::appendArgumentValues(std::vector<ValueIndex>& values, int depth)
{
    const Token place = stream_.current();
    if (depth == maximumNesting)
        failAt(place, "values are nested too deeply");
    if (stream_.accept('('))
        return stream_.readList(')', [&] { appendArgumentValues(values, depth + 1); });
    if (isAtType(stream_))
        return appendInPlace(values, place, readLiteral(stream_, weights_));
    values.push_back(readReference());
}

// A list or tuple written in place is as many values.
void FunctionReader::appendInPlace(std::vector<ValueIndex>& values, const Token& place, Literal literal)
{
    if (literal.constant) {
        values.push_back(append({ .type = literal.type, .constant = std::move(literal.constant) }));
        return;
    }
    if (literal.type.kind == ValueType::Kind::dictionary)
        failAt(place, MLModelError::Case::unsupported, "a dictionary is not supported as an argument");
    for (Literal& item : literal.items)
        appendInPlace(values, place, std::move(item));
}

std::vector<FunctionReader::Attribute> FunctionReader::readAttributes()
{
    std::vector<Attribute> attributes;
    if (!stream_.accept('['))
        return attributes;
    stream_.readList(']', [&] {
        const Token place = stream_.current();
        const std::string_view name = stream_.takeIdentifier("the name of an attribute");
        stream_.expect('=');
        attributes.push_back({ place, name, readLiteral(stream_, weights_) });
    });
    return attributes;
}

// The bodies of cond and while_loop, with all that belongs to them up to the end of the statement.
bool FunctionReader::skipNestedBlocks()
{
    int open = 0;
    bool hasSkipped = false;
    while (open > 0 || !stream_.at(';')) {
        if (!hasSkipped && !stream_.at('{') && !stream_.at('('))
            stream_.failExpecting(";");
        const Token token = stream_.take();
        if (token.kind == Token::Kind::end)
            failAt(token, "a block does not end");
        open += token.is('{') || token.is('(') || token.is('[') ? 1 : 0;
        open -= token.is('}') || token.is(')') || token.is(']') ? 1 : 0;
        if (open < 0)
            failAt(token, "this bracket closes nothing");
        hasSkipped = true;
    }
    return hasSkipped;
}

void FunctionReader::readFlexibility()
{
    for (const Attribute& attribute : readAttributes()) {
        if (attribute.name != "FlexibleShapeInformation")
            continue;
        try {
            function_.flexibility = shapeFlexibility(attribute.value);
        } catch (const MLModelError& error) {
            failAt(attribute.place, error.which(), error.description());
        }
    }
}

void FunctionReader::define(const Token& place, Value value)
{
    const auto [existing, isNew] = scope_.emplace(place.text, static_cast<ValueIndex>(function_.values.size()));
    if (!isNew)
        failAt(place, "\"" + value.name + "\" is defined twice");
    append(std::move(value));
}

ValueIndex FunctionReader::append(Value value)
{
    function_.values.push_back(std::move(value));
    return static_cast<ValueIndex>(function_.values.size() - 1);
}

} // namespace MLProgram
