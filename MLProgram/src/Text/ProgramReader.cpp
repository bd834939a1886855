// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/ProgramReader.h"

#include "Text/FunctionReader.h"
#include "Text/Literal.h"
#include "Text/TextError.h"

#include <string>

namespace MLProgram {
namespace {

// program(1.3): compilers write 1.0 and 1.3, which differ only in how scalar types are spelled.
void readVersion(TokenStream& stream)
{
    stream.expectWord("program");
    stream.expect('(');
    const Token version = stream.take();
    if (version.kind != Token::Kind::number || !version.text.starts_with("1."))
        failAt(version, MLModelError::Case::unsupported,
            "version " + std::string(version.text) + " of the program text is not supported");
    stream.expect(')');
}

// What built the program, and when: of no use here.
void skipAttributes(TokenStream& stream, WeightSource& weights)
{
    if (!stream.accept('['))
        return;
    stream.readList(']', [&] {
        stream.takeIdentifier("the name of an attribute");
        stream.expect('=');
        readLiteral(stream, weights);
    });
}

} // namespace

Program readProgram(std::string_view text, WeightSource& weights)
{
    TokenStream stream(text);
    readVersion(stream);
    skipAttributes(stream, weights);
    stream.expect('{');
    Program program;
    while (!stream.accept('}')) {
        const Token place = stream.current();
        Function function = FunctionReader(stream, weights).read();
        if (program.function(function.name) != nullptr)
            failAt(place, "there are two functions named \"" + function.name + "\"");
        program.functions.push_back(std::move(function));
    }
    if (stream.current().kind != Token::Kind::end)
        stream.failExpecting("the end of the text");
    return program;
}

} // namespace MLProgram
