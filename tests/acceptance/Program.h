// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/FileDescriptor.h>

#include <sys/types.h>
#include <TemporaryFolder.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

using TestSupport::TemporaryFolder;

using Words = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

// What a finished program left behind.
struct Outcome {
    int status = -1; // exit status; -1 when a signal ended it
    std::string output;
    std::string errors;
};

// A program that runs beside the test, with standard input and the environment of the test, and
// OSTREL_MODEL_DIRECTORY set to the small model unless `environment` says otherwise. It ends with the object.
class RunningProgram {
public:
    // The program, looked for as a shell does, and its arguments.
    explicit RunningProgram(Words words, Environment environment = {});
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram();

    // Whether a byte of its output came, within the time if one is given; it adds to the outcome's output.
    bool hasWritten(std::chrono::milliseconds limit = std::chrono::milliseconds(-1));

    const std::string& output() const { return written_; } // that has been read

    // Whether a request to end it would reach it later, as when it has not got so far as to take it in its own way.
    bool holdsBackInterrupts() const;

    pid_t process() const { return process_; }

    void kill() const; // as the system does it: at once
    void interrupt() const; // as the user does it, with Ctrl-C

    // Waits for its end.
    Outcome finish();

private:
    TemporaryFolder folder_;
    PlatformSupport::FileDescriptor output_;
    pid_t process_ = 0; // 0 once it is collected
    std::string written_;
};

Outcome runProgram(Words words, Environment environment = {});

// The built sorvane with these arguments.
Outcome runSorvane(const Words& arguments, Environment environment = {});
