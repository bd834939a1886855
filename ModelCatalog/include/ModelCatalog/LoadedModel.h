// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelCatalog/ModelDeclaration.h>
#include <ModelCatalog/ModelLoadProgress.h>
#include <ModelStore/DownloadProgress.h>
#include <ModelStore/ModelDistribution.h>
#include <ModelStore/StoredModel.h>
#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/LazyLoader.h>

#include <functional>
#include <utility>

namespace ModelCatalog {

// A model that is found or downloaded, and then loaded, when it is first asked for; once, whoever asks, and kept for
// the object's life. What `build` gives is copied to those who ask: a large one is a shared pointer.
//
// Any thread. The work runs on the given threads, where whole files are hashed: not the main thread's.
template <typename Loaded> class LoadedModel {
public:
    using Place = ModelStore::ModelPlace;
    using Resolve = std::function<PlatformSupport::Awaitable<ModelStore::StoredModel>(
        Place place, ModelStore::DownloadProgressCallback progress)>;
    using IsAvailable = std::function<bool(const Place& place)>; // safe from any thread
    using Build = std::function<PlatformSupport::Awaitable<Loaded>(ModelStore::StoredModel model)>;
    using Executor = PlatformSupport::Executor;

    LoadedModel(Executor threads, Resolve resolve, IsAvailable isAvailable, const Place& place, Build build)
        : loader_(std::move(threads),
            [resolve = std::move(resolve), place, build = std::move(build)](
                PlatformSupport::LazyLoader<Loaded>::Progress report) {
                return work(resolve, place, build, std::move(report));
            })
        , availability_([isAvailable = std::move(isAvailable), place] { return isAvailable(place); })
    {
    }

    LoadedModel(Executor threads, const ModelStore::ModelDistribution& distribution, const Place& place, Build build)
        : LoadedModel(
            std::move(threads),
            [distribution](Place where, ModelStore::DownloadProgressCallback progress) {
                return distribution.resolve(std::move(where), std::move(progress));
            },
            [distribution](const Place& where) { return distribution.isAvailable(where); }, place, std::move(build))
    {
    }

    LoadedModel(Executor threads, const ModelDeclaration& declaration, const Place& place, Build build)
        : LoadedModel(std::move(threads), declaration.distribution(), place, std::move(build))
    {
    }

    // Whether it would do without the network; may read every file.
    bool isDownloaded() const { return availability_(); }

    // Loads the model, too, but its progress is that of the files alone, from 0 to 1.
    PlatformSupport::Awaitable<void> download(std::function<void(double fraction)> progress) const
    {
        return watched(loader_,
            [progress = std::move(progress)](double fraction) { progress(ModelLoadProgress::ofFiles(fraction)); });
    }

    PlatformSupport::Awaitable<Loaded> load(std::function<void(const ModelLoadProgress&)> progress) const
    {
        return loader_.run(
            [progress = std::move(progress)](double fraction) { progress(ModelLoadProgress::of(fraction)); });
    }

    PlatformSupport::Awaitable<Loaded> value() const { return loader_.value(); }

private:
    using Loader = PlatformSupport::LazyLoader<Loaded>;

    static PlatformSupport::Awaitable<Loaded> work(
        Resolve resolve, Place place, Build build, typename Loader::Progress report)
    {
        ModelStore::DownloadProgressCallback progress = [report](const ModelStore::DownloadProgress& state) {
            report(state.fraction() * ModelLoadProgress::filesShare);
        };
        ModelStore::StoredModel model = co_await resolve(std::move(place), std::move(progress));
        report(ModelLoadProgress::filesShare);
        co_return co_await build(std::move(model));
    }

    static PlatformSupport::Awaitable<void> watched(Loader loader, typename Loader::Progress progress)
    {
        (void)co_await loader.run(std::move(progress));
    }

    Loader loader_;
    std::function<bool()> availability_;
};

} // namespace ModelCatalog
