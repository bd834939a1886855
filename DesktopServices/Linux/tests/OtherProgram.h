// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/FileDescriptor.h>

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace DesktopLinux {

// Another program on the display: a process of its own that does what a test tells it, one line at a time. What it can
// do stands in OtherProgram/OtherProgram.cpp.
class OtherProgram {
public:
    // The program, or a copy of it under another path.
    OtherProgram();
    explicit OtherProgram(const std::filesystem::path& executable);
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    ~OtherProgram();

    // Waits for its answer, a line.
    std::string ask(const std::string& command);

    // Does not wait: the answer is read later.
    void tell(const std::string& command);
    std::string answer();

    void freeze() const; // until it is thawed it does nothing
    bool isFrozen() const; // perhaps by itself
    void thaw() const;
    void kill(); // it has no time to say anything

    pid_t process() const { return process_; }

private:
    pid_t process_ = 0;
    PlatformSupport::FileDescriptor input_;
    PlatformSupport::FileDescriptor output_;
    std::string unread_;
};

} // namespace DesktopLinux
