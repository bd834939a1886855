// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/TaskContext.h>
#include <Sorvane/DictationRules.h>
#include <Sorvane/TranscriptDelivery.h>

#include <exception>
#include <optional>
#include <utility>

namespace Sorvane {

using PlatformSupport::Awaitable;
using PlatformSupport::CancellationError;
using PlatformSupport::checkCancellation;

namespace {

// What went wrong, or nothing.
Awaitable<std::optional<std::string>> failureOf(const TranscriptDelivery::Insert& insert, bool keepTranscript)
{
    try {
        co_await insert(keepTranscript);
        co_return std::nullopt;
    } catch (const CancellationError&) {
        throw;
    } catch (const std::exception& error) {
        co_return error.what();
    }
}

} // namespace

TranscriptDelivery::TranscriptDelivery(Copy copy)
    : copy_(std::move(copy))
{
}

Awaitable<TranscriptDelivery::Result> TranscriptDelivery::deliver(std::string text, Wishes wishes, Insert insert) const
{
    checkCancellation();
    if (!DictationRules::usableTranscript(text))
        co_return Message { "No text to copy." };
    std::string message = "Your transcript is ready to review and copy.";
    if (!wishes.reviewRequested && insert) {
        const auto failure = co_await failureOf(insert, wishes.automaticallyCopy);
        checkCancellation();
        if (!failure)
            co_return Inserted {};
        message = *failure;
    }
    checkCancellation();
    co_return copied(text, message, wishes);
}

TranscriptDelivery::Result TranscriptDelivery::copied(
    const std::string& text, const std::string& otherwise, Wishes wishes) const
{
    if (!wishes.automaticallyCopy && wishes.reviewRequested)
        return Message { otherwise };
    if (copy_(text))
        return Copied {};
    return Message { "Automatic copying failed. Your transcript is available below." };
}

} // namespace Sorvane
