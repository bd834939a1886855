// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/TypeReader.h"

#include "Text/TextError.h"

#include <string>

namespace MLProgram {
namespace {

ValueType readNested(TokenStream& stream, int depth);

bool isTypeConstructor(std::string_view word) noexcept
{
    return word == "tensor" || word == "list" || word == "tuple" || word == "dict" || word == "state";
}

int64_t readDimension(TokenStream& stream)
{
    if (stream.accept('?'))
        return unknownDimension;
    const Token token = stream.current();
    const int64_t dimension = stream.takeInteger("a dimension");
    if (dimension < 0 || dimension > maximumElementCount)
        failAt(token, "a dimension of " + std::to_string(dimension) + " is out of range");
    return dimension;
}

void checkElementCount(const Shape& shape, const Token& token)
{
    int64_t count = 1;
    for (const int64_t dimension : shape) {
        if (dimension > 0 && (__builtin_mul_overflow(count, dimension, &count) || count > maximumElementCount))
            failAt(token, "this tensor has too many elements");
    }
}

ValueType readTensorType(TokenStream& stream)
{
    ValueType type;
    const Token token = stream.current();
    const auto scalar = scalarTypeNamed(stream.takeIdentifier("an element type"));
    if (!scalar)
        failAt(token, "\"" + std::string(token.text) + "\" is no element type");
    type.scalar = *scalar;
    stream.expect(',');
    stream.expect('[');
    stream.readList(']', [&] {
        if (type.shape.size() == maximumRank)
            failAt(stream.current(), MLModelError::Case::unsupported,
                "tensors of more than " + std::to_string(maximumRank) + " dimensions are not supported");
        type.shape.push_back(readDimension(stream));
    });
    checkElementCount(type.shape, token);
    return type;
}

ValueType readListType(TokenStream& stream, int depth)
{
    ValueType type { .kind = ValueType::Kind::list };
    type.parts.push_back(readNested(stream, depth));
    stream.expect(',');
    type.length = readDimension(stream);
    return type;
}

ValueType readDictionaryType(TokenStream& stream, int depth)
{
    ValueType type { .kind = ValueType::Kind::dictionary };
    type.parts.push_back(readNested(stream, depth));
    stream.expect(',');
    type.parts.push_back(readNested(stream, depth));
    return type;
}

ValueType readStateType(TokenStream& stream, int depth)
{
    ValueType type { .kind = ValueType::Kind::state };
    const Token token = stream.current();
    type.parts.push_back(readNested(stream, depth));
    if (!type.parts.front().hasKnownShape() || type.parts.front().isText())
        failAt(token, "a state holds a tensor of known shape");
    return type;
}

// What stands between < and >; a tuple may hold nothing.
ValueType readConstructed(std::string_view constructor, TokenStream& stream, int depth)
{
    if (constructor == "tensor")
        return readTensorType(stream);
    if (constructor == "list")
        return readListType(stream, depth);
    if (constructor == "dict")
        return readDictionaryType(stream, depth);
    if (constructor == "state")
        return readStateType(stream, depth);
    ValueType type { .kind = ValueType::Kind::tuple };
    while (!stream.at('>')) {
        type.parts.push_back(readNested(stream, depth));
        if (!stream.accept(','))
            break;
    }
    return type;
}

ValueType readNested(TokenStream& stream, int depth)
{
    const Token token = stream.current();
    if (depth == maximumNesting)
        failAt(token, "types are nested too deeply");
    const std::string_view word = stream.takeIdentifier("a type");
    if (const auto scalar = scalarTypeNamed(word))
        return { .scalar = *scalar };
    if (!isTypeConstructor(word))
        failAt(token, "\"" + std::string(word) + "\" is no type");
    stream.expect('<');
    ValueType type = readConstructed(word, stream, depth + 1);
    stream.expect('>');
    return type;
}

} // namespace

bool isAtType(const TokenStream& stream) noexcept
{
    const Token& word = stream.current();
    if (word.kind != Token::Kind::identifier)
        return false;
    if (isTypeConstructor(word.text))
        return stream.following().is('<');
    // A scalar type stands before its value, `int32(1)`, or before a name, `int32 y = ...`.
    return scalarTypeNamed(word.text)
        && (stream.following().is('(') || stream.following().kind == Token::Kind::identifier);
}

ValueType readType(TokenStream& stream)
{
    return readNested(stream, 0);
}

} // namespace MLProgram
