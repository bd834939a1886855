// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/Literal.h"

#include "Text/ElementWriter.h"
#include "Text/TextError.h"
#include "Text/TypeReader.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace MLProgram {
namespace {

std::string unescaped(const Token& token)
{
    std::string text;
    text.reserve(token.text.size());
    for (size_t i = 0; i < token.text.size(); ++i) {
        if (token.text[i] != '\\') {
            text += token.text[i];
            continue;
        }
        const char escaped = token.text[++i]; // the lexer ends no string behind a backslash
        text += escaped == 'n' ? '\n' : escaped == 't' ? '\t' : escaped == 'r' ? '\r' : escaped;
    }
    return text;
}

// The elements of a tensor with one dimension or more, in nested brackets. Open dimensions take the length of
// the first list at their depth; all lists of a depth are equally long.
class TensorReader {
public:
    TensorReader(TokenStream& stream, const ValueType& type)
        : stream_(stream)
        , shape_(type.shape)
        , writer_(type.scalar, likelyElements(type))
        , lengths_(type.shape.size(), 0)
    {
    }

    Constant read(ScalarType type)
    {
        do
            readElement();
        while (depth_ > 0);
        std::replace(shape_.begin(), shape_.end(), unknownDimension, int64_t { 0 });
        return { type, shape_, writer_.finish() };
    }

private:
    // The text may promise more than it holds; what it holds grows by itself.
    static size_t likelyElements(const ValueType& type)
    {
        constexpr int64_t promised = 4096;
        return type.hasKnownShape() ? static_cast<size_t>(std::min(elementCount(type.shape), promised)) : 0;
    }

    // One element or opening bracket, and all that closes behind it.
    void readElement()
    {
        if (depth_ < shape_.size()) {
            stream_.expect('[');
            lengths_[depth_++] = 0;
            if (!stream_.at(']'))
                return;
        } else {
            writer_.append(stream_.take());
            ++lengths_.back();
        }
        while (depth_ > 0 && !stream_.accept(','))
            close();
    }

    void close()
    {
        const Token bracket = stream_.current();
        stream_.expect(']');
        int64_t& dimension = shape_[--depth_];
        if (dimension == unknownDimension)
            dimension = lengths_[depth_];
        if (dimension != lengths_[depth_])
            failAt(bracket,
                "this list has " + std::to_string(lengths_[depth_]) + " elements instead of "
                    + std::to_string(dimension));
        if (depth_ > 0)
            ++lengths_[depth_ - 1];
    }

    TokenStream& stream_;
    Shape shape_;
    ElementWriter writer_;
    Shape lengths_; // elements read so far of the open list at each depth
    size_t depth_ = 0; // open brackets
};

class LiteralReader {
public:
    LiteralReader(TokenStream& stream, WeightSource& weights)
        : stream_(stream)
        , weights_(weights)
    {
    }

    Literal readTyped(int depth)
    {
        const ValueType type = readType(stream_);
        stream_.expect('(');
        Literal literal { .type = type };
        if (!stream_.at(')'))
            literal = read(type, depth + 1);
        else if (type.kind == ValueType::Kind::tensor || type.kind == ValueType::Kind::state)
            stream_.failExpecting("a value");
        stream_.expect(')');
        return literal;
    }

private:
    // What stands within the parentheses behind `type`.
    Literal read(const ValueType& type, int depth)
    {
        if (depth == maximumNesting)
            failAt(stream_.current(), "values are nested too deeply");
        if (isAtType(stream_))
            return readRepeated(type, depth);
        Literal literal { .type = type };
        switch (type.kind) {
        case ValueType::Kind::tensor:
            literal.constant = readTensor(type, depth);
            literal.type.shape = literal.constant->shape();
            return literal;
        case ValueType::Kind::list:
            return readList(type, depth);
        case ValueType::Kind::tuple:
            return readTuple(type, depth);
        case ValueType::Kind::dictionary:
            return readDictionary(type, depth);
        case ValueType::Kind::state:
            break;
        }
        failAt(stream_.current(), "a state has no value in the text");
    }

    // A part that stands in its own type once more.
    Literal readRepeated(const ValueType& type, int depth)
    {
        const Token token = stream_.current();
        Literal literal = readTyped(depth);
        const bool isTensor = type.kind == ValueType::Kind::tensor;
        const bool fits = literal.type.kind == type.kind
            && (!isTensor || (literal.type.scalar == type.scalar && admits(type, literal.type.shape)));
        if (!fits)
            failAt(token, "a value of type " + description(type) + " is expected here");
        return literal;
    }

    Literal readList(const ValueType& type, int depth)
    {
        Literal literal { .type = type };
        const Token token = stream_.current();
        stream_.expect('[');
        stream_.readList(']', [&] { literal.items.push_back(read(type.parts.front(), depth + 1)); });
        if (type.length != unknownDimension && type.length != static_cast<int64_t>(literal.items.size()))
            failAt(token, "this list has not the length that its type gives");
        return literal;
    }

    Literal readTuple(const ValueType& type, int depth)
    {
        Literal literal { .type = type };
        const Token token = stream_.current();
        stream_.expect('(');
        stream_.readList(')', [&] {
            if (literal.items.size() == type.parts.size())
                stream_.failExpecting(")");
            literal.items.push_back(read(type.parts[literal.items.size()], depth + 1));
        });
        if (literal.items.size() != type.parts.size())
            failAt(token, "this tuple has too few members");
        return literal;
    }

    Literal readDictionary(const ValueType& type, int depth)
    {
        Literal literal { .type = type };
        stream_.expect('{');
        stream_.readList('}', [&] {
            stream_.expect('{');
            literal.items.push_back(read(type.parts[0], depth + 1));
            stream_.expect(',');
            literal.items.push_back(read(type.parts[1], depth + 1));
            stream_.expect('}');
        });
        return literal;
    }

    Constant readTensor(const ValueType& type, int depth)
    {
        const Token& token = stream_.current();
        if (token.kind == Token::Kind::identifier && token.text == "BLOBFILE")
            return readStored(type, depth);
        if (!type.shape.empty() && type.isText())
            failAt(token, MLModelError::Case::unsupported, "tensors of strings are not supported");
        if (!type.shape.empty())
            return TensorReader(stream_, type).read(type.scalar);
        if (type.isText()) {
            if (token.kind != Token::Kind::string)
                stream_.failExpecting("a string");
            return Constant(unescaped(stream_.take()));
        }
        ElementWriter writer(type.scalar, 1);
        writer.append(stream_.take());
        return { type.scalar, {}, writer.finish() };
    }

    // BLOBFILE(path = string("@model_path/weights/weight.bin"), offset = uint64(64))
    Constant readStored(const ValueType& type, int depth)
    {
        const Token place = stream_.take();
        stream_.expect('(');
        stream_.expectWord("path");
        stream_.expect('=');
        const Literal path = readTyped(depth);
        stream_.expect(',');
        stream_.expectWord("offset");
        stream_.expect('=');
        const Literal offset = readTyped(depth);
        stream_.expect(')');
        if (!path.type.isText() || offset.type != ValueType { .scalar = ScalarType::uint64 })
            failAt(place, "a stored value has a string as its path and a uint64 as its offset");
        if (!type.hasKnownShape() || type.isText())
            failAt(place, "a stored value has a numeric type of known shape");
        return readFromFile(place, path.constant->text(), *offset.constant, type);
    }

    Constant readFromFile(const Token& place, std::string_view path, const Constant& offset, const ValueType& type)
    {
        uint64_t number = 0;
        std::copy(offset.bytes().begin(), offset.bytes().end(), std::as_writable_bytes(std::span(&number, 1)).begin());
        try {
            return weights_.read(path, number, type.scalar, type.shape);
        } catch (const MLModelError& error) {
            failAt(place, error.which(), error.description());
        }
    }

    TokenStream& stream_;
    WeightSource& weights_;
};

} // namespace

Literal readLiteral(TokenStream& stream, WeightSource& weights)
{
    return LiteralReader(stream, weights).readTyped(0);
}

} // namespace MLProgram
