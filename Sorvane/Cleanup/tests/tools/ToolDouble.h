// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the stand-ins for the two tools have in common.
//
// A stand-in takes the options of its tool and no others, and fails where its tool fails. Beside the path by which it
// was started it finds what to do and leaves what it saw:
//
//   TOOL.case     what to do instead of its work: a line with one of the words below, then bytes to write
//   TOOL.alive    a named pipe that it and its children hold open; a byte comes when it is ready for signals
//   TOOL.record   JSON: arguments, environment, open files and more
//   TOOL.prompt   a copy of its prompt file
//
//   print               write the bytes and exit with 0; without bytes, as when a tool's output gets lost
//   print-often N       write the bytes N times and exit with 0
//   exit N              write the bytes and exit with N
//   die                 write the bytes and be ended by a signal
//   wait                write the bytes and wait for a signal
//   wait-stubbornly     the same, but SIGTERM is ignored
//   wait-silently       write the bytes, close the output, wait for a signal
//   flood               write the bytes for ever
//   leave-child         start a child that keeps the output open, write the bytes and exit with 0
//   leave-stray-child   the same, but the child leaves the process group
//   leave-quiet-child   the same, but the child closes the output

// Options of a tool: with the number of values, 0 or 1, that each takes.
using KnownOptions = std::map<std::string_view, int>;

struct ToolCall {
    std::map<std::string, std::string> options; // with their values
    std::string model;
    std::string prompt;

    std::string value(const std::string& option, const std::string& otherwise) const;
};

// Reads the command line, leaves the record, does what TOOL.case says. Comes back if the tool is to do its own work;
// exits with 1 for a missing or empty model, a missing prompt file or an unknown option, with 0 for "--version".
ToolCall beginTool(int count, char** values, const KnownOptions& known);

// One write to standard output.
void writeOut(std::string_view bytes);
