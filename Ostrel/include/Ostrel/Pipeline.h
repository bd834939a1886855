// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Assets.h>
#include <Ostrel/AudioStream.h>
#include <Ostrel/Transcript.h>
#include <Ostrel/Tunables.h>

#include <functional>
#include <memory>

namespace Ostrel {

// A speech model, ready to run: the stages and every tensor they need, allocated and bound once.
//
// It may be used for any number of streams, one after the other; a run that throws leaves it usable. One thread at a
// time, and a call is never interrupted.
class Pipeline {
public:
    // Errors: OstrelError invalidModel for a geometry that cannot be computed with; MLModelError invalidFeature for
    //         stages whose shapes differ from the configuration's, outOfMemory
    explicit Pipeline(Assets assets, const Tunables& tunables = Tunables::process());
    ~Pipeline();
    Pipeline(Pipeline&&) noexcept;
    Pipeline& operator=(Pipeline&&) noexcept;

    // Recognizes a stream to its end. `progress` is called with the fraction encoded so far, from this thread; it
    // must be quick and must not come back here.
    //
    // Errors: whatever the stream, a stage or `progress` throws; the words found so far are then lost
    Transcript run(AudioStream& stream, const std::function<void(double)>& progress);

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace Ostrel
