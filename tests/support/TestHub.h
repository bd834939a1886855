// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/FileDescriptor.h>

#include <sys/types.h>
#include <TemporaryFolder.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TestSupport {

// The model hub of tests/hub, running beside the test. It ends with the object, and with the test's process.
//
//     const TestHub hub;
//     hub.publish("owner/name", "v1", "weights/a.bin", "some weights");
//     hub.play(R"({"on": "content/weights/a.bin", "fault": "truncate", "after": 4, "times": 1})");
class TestHub {
public:
    enum class Scheme { http, https };

    struct Request {
        std::string method;
        std::string path;
        std::string place; // "refs", "tree", "resolve/<path>", "content/<path>", "release/<file>"
        int status = 0;
        int64_t bytes = 0; // of the body, that were sent
        std::map<std::string, std::string> headers;
        std::string client; // its address and port
    };

    explicit TestHub(Scheme scheme = Scheme::http);
    TestHub(const TestHub&) = delete;
    TestHub& operator=(const TestHub&) = delete;
    ~TestHub();

    const std::string& origin() const { return origin_; } // as "http://127.0.0.1:8080"
    const std::optional<std::string>& certificate() const { return certificate_; } // a file, with https

    // What it serves; see tests/hub/README.md.
    const TemporaryFolder& folder() const { return folder_; }

    // Puts a file into a repository, or into a release.
    std::filesystem::path publish(
        const std::string& repo, const std::string& revision, const std::string& file, std::string_view bytes) const;
    std::filesystem::path release(
        const std::string& repo, const std::string& tag, const std::string& file, std::string_view bytes) const;

    void play(std::string_view fault) const; // JSON; see tests/hub/README.md
    void clear() const; // no faults, and an empty log

    std::vector<Request> log() const;
    int64_t bytesSent() const; // of all bodies in the log

private:
    std::string tell(std::string_view line) const; // gives the answer's line
    std::string readLine() const;

    TemporaryFolder folder_;
    PlatformSupport::FileDescriptor input_;
    PlatformSupport::FileDescriptor output_;
    pid_t process_ = 0;
    std::string origin_;
    std::optional<std::string> certificate_;
};

} // namespace TestSupport
