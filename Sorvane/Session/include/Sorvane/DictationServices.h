// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Desktop.h>
#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/Clock.h>
#include <PlatformSupport/UserDefaults.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/ModelPreparation.h>
#include <Sorvane/SpeechEngine.h>
#include <Sorvane/TranscriptCleanup.h>

#include <filesystem>
#include <functional>
#include <memory>

namespace DesktopServices {
class Microphone;
}

namespace Sorvane {

// What a dictation needs of the world around it. Everything must outlive the controller.
struct DictationServices {
    PlatformSupport::Executor mainThread;
    PlatformSupport::Clock& clock;
    PlatformSupport::UUIDSource& uuids;
    PlatformSupport::UserDefaults& defaults;

    DesktopServices::Desktop desktop;
    DesktopServices::Microphone& microphone;

    std::filesystem::path historyDirectory;
    TranscriptCleanup cleanup;

    // Loads the speech model, downloading it if need be; throws what went wrong, with words for the user.
    std::function<PlatformSupport::Awaitable<std::shared_ptr<SpeechEngine>>(ModelPreparation::Progress)> loadSpeech;

    // Gets the text cleanup ready.
    ModelPreparation::Step prepareCleanup;
};

} // namespace Sorvane
