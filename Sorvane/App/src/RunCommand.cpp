// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RunCommand.h"

#include "Application.h"
#include "CleanupCheck.h"
#include "CommandLine.h"
#include "Composition.h"
#include "DesktopCheck.h"
#include "PreparationCheck.h"
#include "TranscriptionCheck.h"

#include <cstdio>

namespace Sorvane {

namespace {

struct Performer {
    const Composition& composition;

    int operator()(const TranscribeCommand& command) const { return transcribeFile(command); }
    int operator()(const EvaluateCleanupCommand& command) const { return evaluateCleanup(command); }
    int operator()(const CheckCleanupCommand&) const { return checkCleanup(); }
    int operator()(const CheckFirstRunCommand&) const { return checkFirstRun(composition); }
    int operator()(const CheckPreparationCacheCommand&) const { return checkPreparationCache(composition); }
    int operator()(const CheckFocusCommand&) const { return checkFocus(); }
    int operator()(const CheckRecordingCommand&) const { return checkRecording(); }

    int operator()(const DictateCommand&) const { return runApplication(composition); }

    int operator()(const HelpCommand&) const
    {
        std::fputs(helpText().c_str(), stdout);
        return 0;
    }

    int operator()(const VersionCommand&) const
    {
        std::printf("sorvane %s\n", composition.version.c_str());
        return 0;
    }

    int operator()(const UsageError& error) const
    {
        std::fprintf(stderr, "sorvane: %s\n\n%s", error.complaint.c_str(), helpText().c_str());
        return 1;
    }
};

} // namespace

int runCommand(std::span<const std::string> arguments, const Composition& composition)
{
    return std::visit(Performer { composition }, parseCommandLine(arguments));
}

} // namespace Sorvane
