// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "TranscriptFormat.h"

#include <span>
#include <string>
#include <variant>

namespace Sorvane {

struct TranscribeCommand {
    std::string path;
    TranscriptFormat format = TranscriptFormat::text;

    bool operator==(const TranscribeCommand&) const = default;
};

// Tidies the texts of a JSON file.
struct EvaluateCleanupCommand {
    std::string path;

    bool operator==(const EvaluateCleanupCommand&) const = default;
};

// Tidies a fixed text.
struct CheckCleanupCommand {
    bool operator==(const CheckCleanupCommand&) const = default;
};

// Gets the models ready from nothing, in a directory of its own, and then again without a network.
struct CheckFirstRunCommand {
    bool operator==(const CheckFirstRunCommand&) const = default;
};

// Gets the models ready from what this user has, without a network.
struct CheckPreparationCacheCommand {
    bool operator==(const CheckPreparationCacheCommand&) const = default;
};

// Finds the field that the user is in.
struct CheckFocusCommand {
    bool operator==(const CheckFocusCommand&) const = default;
};

// Tries the microphone.
struct CheckRecordingCommand {
    bool operator==(const CheckRecordingCommand&) const = default;
};

// The application itself.
struct DictateCommand {
    bool operator==(const DictateCommand&) const = default;
};

struct HelpCommand {
    bool operator==(const HelpCommand&) const = default;
};

struct VersionCommand {
    bool operator==(const VersionCommand&) const = default;
};

// The arguments ask for nothing that this program does; `complaint` says why, in one line.
struct UsageError {
    std::string complaint;

    bool operator==(const UsageError&) const = default;
};

using Command = std::variant<TranscribeCommand, EvaluateCleanupCommand, CheckCleanupCommand, CheckFirstRunCommand,
    CheckPreparationCacheCommand, CheckFocusCommand, CheckRecordingCommand, DictateCommand, HelpCommand, VersionCommand,
    UsageError>;

// What kind of process the arguments ask for; `arguments` begins with the program's name. A check's flag counts only
// when it stands second and the whole list has the check's form: with anything more it is no check, and the application
// starts.
Command parseCommandLine(std::span<const std::string> arguments);

// The text of --help.
std::string helpText();

} // namespace Sorvane
