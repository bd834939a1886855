// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/DownloadProgress.h>
#include <ModelStore/FileSystem.h>
#include <ModelStore/ModelSpec.h>
#include <ModelStore/StoredModel.h>

#include <memory>
#include <string>

namespace ModelStore {

// Where the files of published models lie on this disk, and whether they are complete.
//
// A model lies in "<root>/tarnwick-models/<owner>/<name>/<revision>/", or in the directory that its spec names;
// "<model>/.trw-meta/manifest" tells that it is complete. A value; used from any thread, but nothing guards two who
// change the same model.
class ModelStore {
public:
    explicit ModelStore(std::shared_ptr<const FileSystem> fileSystem);

    std::string location(const ModelSpec& spec) const;
    StoredModel storedModel(const ModelSpec& spec) const;

    // The one judge of completeness: the manifest names what was asked for, and every file it lists has its size and
    // digest. Reads every file. It never fails; any doubt is false.
    bool isDownloaded(const ModelSpec& spec) const;

    // The model, if it is complete; `progress` is then called once with all of its bytes.
    //
    // Errors: ModelStoreError invalidSpec for a path that leaves the model's directory; localFileMissing for the first
    //         file, or the manifest, that is not there; integrityCheckFailed where all are there but not as they came
    StoredModel completeModel(const ModelSpec& spec, const DownloadProgressCallback& progress) const;

private:
    std::shared_ptr<const FileSystem> fileSystem_;
};

} // namespace ModelStore
