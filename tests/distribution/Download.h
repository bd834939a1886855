// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/ModelStore.h>

#include <TemporaryFolder.h>
#include <TestHub.h>

#include <memory>
#include <string>

// A model on a hub, and one attempt after the other to download it to the same place.
class Download {
public:
    enum class Transport { application, library };

    Download(const TestSupport::TestHub& hub, Transport transport);

    // What an attempt ends with: "complete", or the words for the user.
    std::string attempt();

    // The bytes of files that the last attempt fetched.
    int64_t fetched() const { return fetched_; }

    // The files of the model's directory, as "meta.json, weights/a.bin"; "nothing" if there are none.
    std::string onDisk() const;

    const ModelStore::ModelStore& store() const { return store_; }
    const ModelStore::ModelSpec& spec() const { return spec_; }
    const TestSupport::TemporaryFolder& folder() const { return folder_; }

    // Puts the model onto a hub.
    static void publish(const TestSupport::TestHub& hub);
    static constexpr int64_t size = 401'000; // bytes

private:
    std::string withoutPlaces(std::string text) const;

    const TestSupport::TestHub& hub_;
    TestSupport::TemporaryFolder folder_;
    ModelStore::ModelStore store_;
    ModelStore::ModelSpec spec_;
    int64_t fetched_ = 0;
};
