// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CleanupCheck.h"
#include "CommandLine.h"
#include "TranscriptionCheck.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

struct Performer {
    int operator()(const Sorvane::TranscribeCommand& command) const { return Sorvane::transcribeFile(command); }

    int operator()(const Sorvane::EvaluateCleanupCommand& command) const { return Sorvane::evaluateCleanup(command); }
    int operator()(const Sorvane::CheckCleanupCommand&) const { return Sorvane::checkCleanup(); }

    int operator()(const Sorvane::HelpCommand&) const
    {
        std::fputs(Sorvane::helpText().c_str(), stdout);
        return 0;
    }

    int operator()(const Sorvane::VersionCommand&) const
    {
        std::puts("sorvane " SORVANE_VERSION);
        return 0;
    }

    int operator()(const Sorvane::UsageError& error) const
    {
        std::fprintf(stderr, "sorvane: %s\n\n%s", error.complaint.c_str(), Sorvane::helpText().c_str());
        return 1;
    }
};

} // namespace

int main(int count, char** values)
{
    const std::vector<std::string> arguments(values, values + count);
    return std::visit(Performer {}, Sorvane::parseCommandLine(arguments));
}
