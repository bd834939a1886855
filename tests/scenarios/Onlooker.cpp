// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Onlooker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Scenarios {

using namespace std::chrono_literals;
using Notice = Sorvane::CompletionFeedback::State;
using Phase = Sorvane::DictationPhase;

namespace {

// The engine and the cleanup take two seconds each at most, and a destination that freezes holds up every look at it.
constexpr auto longestFinishing = 30s;

// The notice's changes are told as changes of the phase, too.
bool isAllowed(Phase from, Phase to)
{
    if (from == to)
        return true;
    switch (from) {
    case Phase::idle:
        return to == Phase::recording;
    case Phase::recording:
        return to == Phase::paused || to == Phase::transcribing || to == Phase::idle;
    case Phase::paused:
        return to == Phase::recording || to == Phase::transcribing || to == Phase::idle;
    case Phase::transcribing:
        return to == Phase::idle;
    case Phase::preparing:
        return false;
    }
    return false;
}

// With what the status begins in a phase.
std::vector<std::string> statusesOf(Phase phase)
{
    switch (phase) {
    case Phase::recording:
        return { "Listening…" };
    case Phase::paused:
        return { "Microphone off", "Could not resume: " };
    case Phase::transcribing:
        return { "Finishing your transcript…", "Cleaning up dictation…" };
    case Phase::idle:
    case Phase::preparing:
        return {};
    }
    return {};
}

bool beginsAsIn(Phase phase, const std::string& status)
{
    return std::ranges::any_of(statusesOf(phase), [&](const auto& words) { return status.starts_with(words); });
}

bool isInsertion(const std::string& status)
{
    return status.starts_with("Inserted in ");
}

bool isCopy(const std::string& status)
{
    return status.starts_with("Copied to clipboard. ");
}

bool isReview(const std::string& status)
{
    return status.starts_with("Your transcript is ready to review and copy.");
}

bool isFailedCopy(const std::string& status)
{
    return status.starts_with("Automatic copying failed. ");
}

} // namespace

Onlooker::Onlooker(Stage& stage)
    : stage_(stage)
{
    stage_.controller->phaseChanged = [this] { followPhase(); };
}

void Onlooker::setSilent(bool isSilent)
{
    isSilent_ = isSilent;
    stage_.engine->words = isSilent_ ? "" : words_;
}

void Onlooker::followPhase()
{
    const Phase before = phase_;
    phase_ = controller().phase();
    EXPECT_TRUE(isAllowed(before, phase_)) << static_cast<int>(before) << " to " << static_cast<int>(phase_);
    if (phase_ == before)
        return;
    if (before == Phase::idle)
        beginDictation();
    if (phase_ == Phase::transcribing)
        beginFinishing();
    if (before == Phase::transcribing)
        end_ = controller().status();
}

void Onlooker::beginDictation()
{
    words_ = "dictation " + std::to_string(++dictations_) + ".";
    stage_.engine->words = isSilent_ ? "" : words_;
    destination_ = destination();
    isStored_ = false;
    isInserted_ = false;
}

void Onlooker::beginFinishing()
{
    isPreviewed_ = controller().settings().previewBeforeInsert;
    isToStayOnClipboard_ = controller().settings().automaticallyCopy;
    clipboard_ = stage_.desktop.pasteboard.string();
    finishingSince_ = stage_.clock.now();
}

// The field that the controller has captured, which must be the one in which the user is.
std::string Onlooker::destination() const
{
    const auto& target = controller().target();
    if (!target || !target->element)
        return {};
    for (const auto& [name, field] : stage_.fields) {
        if (field->handle() != *target->element)
            continue;
        EXPECT_TRUE(field->isFocused()) << name;
        EXPECT_EQ(stage_.desktop.workspace.frontmostApplication().get(), &field->application()) << name;
        return name;
    }
    ADD_FAILURE() << "a field that nobody knows";
    return {};
}

void Onlooker::look()
{
    lookAtPhase();
    lookAtTranscripts();
    lookAtFields();
    if (const auto status = std::exchange(end_, std::nullopt)) {
        lookAtEnd(*status);
        lookAtClipboard(*status);
    }
}

void Onlooker::lookAtPhase() const
{
    const std::string& status = controller().status();
    EXPECT_EQ(controller().phase(), phase_);
    EXPECT_EQ(stage_.microphone.isRunning(), phase_ == Phase::recording);
    EXPECT_LE(controller().elapsed(), 300.0);
    if (phase_ == Phase::idle) {
        for (const auto other : { Phase::recording, Phase::paused, Phase::transcribing })
            EXPECT_FALSE(beginsAsIn(other, status)) << status;
    } else {
        EXPECT_TRUE(beginsAsIn(phase_, status)) << status;
        EXPECT_EQ(controller().completion().state(), Notice::hidden);
    }
    if (phase_ == Phase::idle || phase_ == Phase::paused) {
        EXPECT_EQ(controller().level(), 0);
    }
    if (phase_ == Phase::transcribing) {
        EXPECT_LT(stage_.clock.now() - finishingSince_, longestFinishing);
    }
}

// What was stored stays, and what comes is of the latest dictation, once.
void Onlooker::lookAtTranscripts()
{
    const auto& entries = controller().history().entries();
    for (const auto& entry : entries) {
        if (!stored_.insert(entry.id).second)
            continue;
        EXPECT_EQ(entry.text, words_);
        EXPECT_FALSE(std::exchange(isStored_, true)) << words_;
    }
    EXPECT_EQ(stored_.size(), entries.size());
}

// Words come only from a dictation that is being finished and is not to be reviewed, only into its own field, and once.
void Onlooker::lookAtFields()
{
    for (const auto& [name, field] : stage_.fields) {
        std::string& before = texts_[name];
        const std::string& now = field->text();
        if (now == before)
            continue;
        EXPECT_EQ(now, before + words_) << name;
        EXPECT_EQ(name, destination_);
        EXPECT_FALSE(isPreviewed_);
        EXPECT_FALSE(std::exchange(isInserted_, true)) << words_;
        EXPECT_TRUE(phase_ == Phase::transcribing || isInsertion(controller().status())) << controller().status();
        before = now;
    }
}

// Words that were heard are stored, and they are where the status says.
void Onlooker::lookAtEnd(const std::string& status) const
{
    const bool isDelivered = isInsertion(status) || isCopy(status) || isReview(status) || isFailedCopy(status);
    const Notice notice = controller().completion().state();
    if (status != "Dictation canceled.") {
        EXPECT_EQ(isStored_, isDelivered) << status;
        EXPECT_EQ(controller().savedToHistory(), isStored_) << status;
        EXPECT_EQ(isInserted_, isInsertion(status)) << status;
    }
    if (isDelivered) {
        EXPECT_EQ(controller().transcript(), words_);
        const bool isToBeRead = isPreviewed_ || isFailedCopy(status);
        EXPECT_EQ(notice == Notice::review, isToBeRead) << status;
    } else {
        EXPECT_EQ(notice, Notice::hidden) << status;
    }
    if (isReview(status)) {
        EXPECT_TRUE(isPreviewed_ && !isToStayOnClipboard_);
    }
    if (isCopy(status)) {
        EXPECT_TRUE(!isPreviewed_ || isToStayOnClipboard_);
    }
}

// A clipboard that was only lent is given back.
void Onlooker::lookAtClipboard(const std::string& status) const
{
    const auto text = stage_.desktop.pasteboard.string();
    if (isCopy(status)) {
        EXPECT_EQ(text, words_);
    } else if (isInsertion(status) && isToStayOnClipboard_) {
        EXPECT_TRUE(text == words_ || text == clipboard_) << text.value_or("nothing");
    } else if (!isFailedCopy(status)) {
        EXPECT_EQ(text, clipboard_) << status;
    }
}

} // namespace Scenarios
