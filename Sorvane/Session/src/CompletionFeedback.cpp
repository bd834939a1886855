// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/CompletionFeedback.h>

#include <utility>

namespace Sorvane {

CompletionFeedback::CompletionFeedback(PlatformSupport::Executor mainThread, PlatformSupport::Clock& clock)
    : mainThread_(std::move(mainThread))
    , clock_(clock)
{
}

CompletionFeedback::~CompletionFeedback()
{
    if (dismissal_)
        dismissal_->cancel();
}

void CompletionFeedback::show(const Outcome& outcome)
{
    dismiss();
    confirmationText_ = outcome.copied ? "Copied to clipboard" : "Saved to history";
    const bool isDone = outcome.copied || (outcome.saved && outcome.inserted);
    const bool isConfirmed = !outcome.reviewRequested && isDone;
    become(isConfirmed ? State::confirmation : State::review);
    if (isConfirmed)
        dismissLater();
}

void CompletionFeedback::showReview()
{
    dismiss();
    confirmationText_ = "Saved to history";
    become(State::review);
}

void CompletionFeedback::dismiss()
{
    if (const auto dismissal = std::exchange(dismissal_, std::nullopt))
        dismissal->cancel();
    become(State::hidden);
}

void CompletionFeedback::become(State state)
{
    state_ = state;
    if (onChange)
        onChange();
}

void CompletionFeedback::dismissLater()
{
    dismissal_ = PlatformSupport::startTask(
        mainThread_, [&clock = clock_, weak = self_.reference()]() -> PlatformSupport::Awaitable<void> {
            co_await clock.sleep(confirmationDuration);
            if (auto* const self = weak.get())
                self->dismiss();
        });
}

} // namespace Sorvane
