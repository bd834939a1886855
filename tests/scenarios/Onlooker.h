// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Stage.h"

#include <map>
#include <optional>
#include <set>
#include <string>

namespace Scenarios {

// Watches a stage on which anything may happen, in any order, and says by failed expectations when something that must
// always hold does not. Every dictation has words of its own, so that they tell which one they come from: they must not
// be lost, not come twice, and not come anywhere but where they were meant for.
class Onlooker {
public:
    // The stage must outlive the onlooker.
    explicit Onlooker(Stage& stage);
    Onlooker(const Onlooker&) = delete;
    Onlooker& operator=(const Onlooker&) = delete;

    // To be called after each event.
    void look();

    // What the user does that cannot be seen otherwise.
    void copied(const std::string& text) { clipboard_ = text; }
    void setSilent(bool isSilent); // nothing is heard of what is said

    const std::string& words() const { return words_; } // of the latest dictation

private:
    using Phase = Sorvane::DictationPhase;

    Sorvane::DictationController& controller() const { return *stage_.controller; }

    void followPhase();
    void beginDictation();
    void beginFinishing();
    std::string destination() const;

    void lookAtPhase() const;
    void lookAtTranscripts();
    void lookAtFields();
    void lookAtEnd(const std::string& status) const;
    void lookAtClipboard(const std::string& status) const;

    Stage& stage_;
    Phase phase_ = Phase::idle;

    // The latest dictation
    size_t dictations_ = 0;
    std::string words_;
    bool isSilent_ = false;
    std::string destination_; // the field's name; empty without one
    bool isPreviewed_ = false;
    bool isToStayOnClipboard_ = false;
    bool isStored_ = false;
    bool isInserted_ = false;
    PlatformSupport::Clock::Instant finishingSince_ {};
    std::optional<std::string> end_; // its status, until it has been looked at

    std::optional<std::string> clipboard_; // as it was before the dictation was finished, or as the user made it since
    std::set<PlatformSupport::UUID> stored_;
    std::map<std::string, std::string> texts_; // of the fields, by their names
};

} // namespace Scenarios
