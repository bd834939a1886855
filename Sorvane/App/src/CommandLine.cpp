// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CommandLine.h"

#include <map>

namespace Sorvane {

namespace {

// A check whose flag stands alone, or null.
const Command* checkNamed(const std::string& flag)
{
    static const std::map<std::string, Command> checks {
        { "--check-first-run", CheckFirstRunCommand {} },
        { "--check-preparation-cache", CheckPreparationCacheCommand {} },
        { "--check-cleanup", CheckCleanupCommand {} },
        { "--check-focus", CheckFocusCommand {} },
        { "--check-recording", CheckRecordingCommand {} },
    };
    const auto found = checks.find(flag);
    return found == checks.end() ? nullptr : &found->second;
}

Command parseTranscribe(std::span<const std::string> operands)
{
    if (operands.size() == 1)
        return TranscribeCommand { operands[0] };
    if (operands.size() != 3 || operands[1] != "--format")
        return UsageError { "--transcribe takes one audio file, and after it perhaps --format and its name" };
    const auto format = transcriptFormatNamed(operands[2]);
    if (!format)
        return UsageError { "there is no format \"" + operands[2] + "\"; there are text, json, srt and vtt" };
    return TranscribeCommand { operands[0], *format };
}

} // namespace

Command parseCommandLine(std::span<const std::string> arguments)
{
    if (arguments.size() < 2)
        return DictateCommand {};
    const std::string& flag = arguments[1];
    const auto operands = arguments.subspan(2);
    if (flag == "--transcribe")
        return parseTranscribe(operands);
    if (flag == "--evaluate-cleanup")
        return operands.size() == 1 ? Command(EvaluateCleanupCommand { operands[0] }) : DictateCommand {};
    if (const auto* const check = checkNamed(flag))
        return operands.empty() ? *check : DictateCommand {};
    if (operands.empty() && flag == "--help")
        return HelpCommand {};
    if (operands.empty() && flag == "--version")
        return VersionCommand {};
    return UsageError { "\"" + flag + "\" is not understood here" };
}

std::string helpText()
{
    return "Usage: sorvane\n"
           "       sorvane --transcribe FILE [--format text|json|srt|vtt]\n"
           "       sorvane --evaluate-cleanup FILE | --check-cleanup\n"
           "       sorvane --check-first-run | --check-preparation-cache | --check-focus | --check-recording\n"
           "       sorvane --help | --version\n"
           "\n"
           "Types what you say: press Alt and the space bar, speak, press them again, and the words stand in\n"
           "the field you are in. No audio and no text is sent anywhere. With an argument it does something\n"
           "else and ends:\n"
           "\n"
           "  --transcribe FILE   print the words of an audio file, in any format that FFmpeg reads\n"
           "  --format FORMAT     text  the words, then a line with the lengths (the default)\n"
           "                      json  text, words with their times in seconds, lengths\n"
           "                      srt   SubRip subtitles\n"
           "                      vtt   WebVTT subtitles\n"
           "  --evaluate-cleanup FILE\n"
           "                      tidy the texts of a JSON file, [{\"input\": ..., \"mode\": \"clean\"}, ...],\n"
           "                      with the local language model, and print a line of JSON for each\n"
           "  --check-cleanup     try the local language model on a fixed text\n"
           "  --check-first-run   download both models to a place of their own, try them, and try them again\n"
           "                      without a network; nothing is kept\n"
           "  --check-preparation-cache\n"
           "                      get the models of this computer ready without a network\n"
           "  --check-focus       find the text field that you are in; nothing is typed\n"
           "  --check-recording   listen to the microphone twice for a moment; nothing is kept\n"
           "\n"
           "Environment:\n"
           "  OSTREL_MODEL_DIRECTORY   directory of a speech model that you placed yourself\n"
           "  OSTREL_BATCH_WINDOWS     windows decoded together; fewer take less memory (64)\n"
           "  OSTREL_SEARCH            seconds before a window's end in which a cut is looked for (3.0)\n"
           "  TRW_HUB_ENDPOINT         where models come from (https://huggingface.co)\n"
           "  TRW_RELEASE_ENDPOINT     where the cleanup's tools come from (https://github.com)\n";
}

} // namespace Sorvane
