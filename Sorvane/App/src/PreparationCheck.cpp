// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PreparationCheck.h"

#include "FirstRunPreparationCheck.h"
#include "ModelServices.h"

#include <PlatformSupport/BlockingValue.h>
#include <Sorvane/CleanupFailure.h>

#include <cstdio>
#include <exception>

namespace Sorvane {

namespace {

void ignoreProgress(double) { }

// First the speech model, then the cleanup, where this user has them.
PlatformSupport::Awaitable<void> prepare(ModelServices& services)
{
    co_await services.loadSpeech(defaultModelPlace(), ignoreProgress);
    co_await services.prepareCleanup(CleanupFiles::ofThisUser().directory, ignoreProgress);
}

void prepareWithoutNetwork(const Composition& composition)
{
    if (!Ostrel::Ostrel::isDownloaded(defaultModelPlace()))
        throw CleanupFailure(CleanupFailure::Case::unavailable);
    ModelServices services(composition, Network::cutOff());
    PlatformSupport::blockingValue([&] { return prepare(services); });
}

} // namespace

int checkFirstRun(const Composition& composition)
{
    try {
        FirstRunPreparationCheck(composition).run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    return 1;
}

int checkPreparationCache(const Composition& composition)
{
    try {
        prepareWithoutNetwork(composition);
        std::puts("PASS: speech prepared before cleanup; cached weights/runtime ready without a download.");
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "Cached preparation failed: %s\n", error.what());
    }
    return 1;
}

} // namespace Sorvane
