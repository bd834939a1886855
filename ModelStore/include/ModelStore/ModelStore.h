// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/DownloadProgress.h>
#include <ModelStore/FileSystem.h>
#include <ModelStore/Manifest.h>
#include <ModelStore/ModelSpec.h>
#include <ModelStore/ModelTransport.h>
#include <ModelStore/RemoteEntry.h>
#include <ModelStore/RevisionRequirement.h>
#include <ModelStore/StoredModel.h>
#include <PlatformSupport/Awaitable.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ModelStore {

// Brings published models to this disk and tells whether they are complete.
//
// A model lies in "<root>/tarnwick-models/<owner>/<name>/<revision>/", or in the directory that its spec names;
// "<model>/.trw-meta/manifest" is written last and tells that it is complete. Files on their way lie in ".trw-meta"
// too. The hub is trusted for the paths, the sizes and, of large files, the digests that it lists. docs/Downloads.md
// says what is left of a download that failed.
//
// A value; used from any thread, but nothing guards two who change the same model. The asynchronous operations hash
// whole files on the awaiting task's executor: it should not be the main thread's.
class ModelStore {
public:
    // The endpoint is the hub's origin, without a slash at its end.
    ModelStore(
        std::shared_ptr<ModelTransport> transport, std::shared_ptr<const FileSystem> fileSystem, std::string endpoint);

    // Over FoundationTransport and FoundationFileSystem.
    ModelStore(std::optional<std::string> cacheRoot, std::string endpoint);

    // The same with hubEndpoint().
    static ModelStore platformDefault(std::optional<std::string> cacheRoot = std::nullopt);

    std::string location(const ModelSpec& spec) const;
    StoredModel storedModel(const ModelSpec& spec) const;

    // The one judge of completeness: the manifest names what was asked for, and every file it lists has its size and
    // digest. Reads every file. It never fails; any doubt is false.
    bool isDownloaded(const ModelSpec& spec) const;

    // Makes the model complete. A complete one is not touched and needs no network; `progress` is then called once with
    // all of its bytes. Otherwise it is called as bytes come, on any thread but one call at a time; files that are
    // there already with the listed digest are not fetched again and only count in the next call. Nothing is retried.
    //
    // Errors: ModelStoreError invalidSpec before anything is done; notInRepo and invalidResponse for what the hub
    // lists;
    //         integrityCheckFailed for a file that is not as listed; io, also where the disk has no room for the model
    //         or the endpoint is no trusted origin; and what the transport and the file system throw
    PlatformSupport::Awaitable<StoredModel> download(ModelSpec spec, DownloadProgressCallback progress) const;

    // The revision to ask for: the best tag of the hub; else, as without a network, the best that has been downloaded;
    // else the requirement's own text. It never fails.
    PlatformSupport::Awaitable<std::string> resolveRevision(std::string repo, RevisionRequirement requirement) const;

    // The revisions in the managed cache that have a manifest, in the order of their names.
    std::vector<std::string> downloadedRevisions(const std::string& repo) const;
    std::vector<StoredModel> downloadedModels(const std::string& repo) const;

    std::string treeURL(const ModelSpec& spec) const;
    std::string fileURL(const ModelSpec& spec, const std::string& path) const;

    // The entries that the requested files stand for, each once: in the order of the request and, below a directory, of
    // the tree. Errors: ModelStoreError notInRepo, invalidResponse
    static std::vector<RemoteEntry> resolve(
        const std::vector<std::string>& files, const std::vector<RemoteEntry>& tree, const std::string& repo);

private:
    using Entries = std::vector<Manifest::Entry>;

    static PlatformSupport::Awaitable<StoredModel> downloadWith(
        ModelStore store, ModelSpec spec, DownloadProgressCallback progress);
    static PlatformSupport::Awaitable<std::string> resolveWith(
        ModelStore store, std::string repo, RevisionRequirement requirement);
    std::optional<StoredModel> completeModel(const ModelSpec& spec, const DownloadProgressCallback& progress) const;
    void requireTrustedEndpoint() const;
    void requireSpace(const ModelSpec& spec, const std::vector<RemoteEntry>& entries) const;
    PlatformSupport::Awaitable<Entries> fetchAll(
        ModelSpec spec, std::vector<RemoteEntry> entries, DownloadProgressCallback progress) const;
    PlatformSupport::Awaitable<std::string> fetch(
        ModelSpec spec, RemoteEntry entry, ModelTransport::BytesCallback onBytes) const;
    PlatformSupport::Awaitable<void> transfer(
        ModelSpec spec, RemoteEntry entry, std::string staging, ModelTransport::BytesCallback onBytes) const;
    std::string verified(const RemoteEntry& entry, const std::string& staging) const;
    bool isKept(const RemoteEntry& entry, const std::string& target) const;
    std::string directoryOf(const std::string& repo) const;

    std::shared_ptr<ModelTransport> transport_;
    std::shared_ptr<const FileSystem> fileSystem_;
    std::string endpoint_;
};

} // namespace ModelStore
