// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TestComposition.h"

#include <PlatformSupport/HandTurnedLoop.h>
#include <Sorvane/ModelPreparation.h>

#include <ModelServices.h>

#include <cstdio>

using Sorvane::ModelPreparation;

// Gets the models ready where they belong, as the application does before the first dictation. Each change is a line of
// output, so that whoever watches knows how far it is; the last line is what the user would read.
int main()
{
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    const auto composition = Acceptance::testComposition();
    Sorvane::ModelServices services(composition, Sorvane::Network::reachable());
    PlatformSupport::HandTurnedLoop mainThread;
    PlatformSupport::RandomUUIDs uuids;
    ModelPreparation preparation(mainThread.executor(), uuids);
    preparation.onChange = [&] { std::printf("%s\n", Sorvane::statusLine(preparation.stage()).c_str()); };
    const auto speech = [&](const ModelPreparation::Progress& progress) -> PlatformSupport::Awaitable<void> {
        co_await services.loadSpeech(Sorvane::defaultModelPlace(), progress);
    };
    const auto cleanup = [&](const ModelPreparation::Progress& progress) {
        return services.prepareCleanup(Sorvane::CleanupFiles::ofThisUser().directory, progress);
    };
    preparation.start(speech, cleanup);
    mainThread.turnUntil([&] { return !preparation.task(); });
    return preparation.stage().which == ModelPreparation::Stage::Case::ready ? 0 : 1;
}
