// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Ostrel.h>
#include <PlatformSupport/BlockingPool.h>
#include <Sorvane/SpeechEngine.h>

#include <memory>

namespace Sorvane {

// Speech recognition on this computer, on a thread of its own.
class OstrelSpeechEngine final : public SpeechEngine {
public:
    explicit OstrelSpeechEngine(std::unique_ptr<Ostrel::Ostrel> engine);

    PlatformSupport::Awaitable<std::string> transcribe(std::vector<float> samples) override;

private:
    std::shared_ptr<Ostrel::Ostrel> engine_;
    PlatformSupport::BlockingPool thread_ { 1 };
};

} // namespace Sorvane
