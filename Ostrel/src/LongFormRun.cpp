// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LongFormRun.h"

#include "Arithmetic.h"
#include "Chunking.h"
#include "ClampMonotonic.h"
#include "RefineEnds.h"
#include "Splice.h"
#include "TimedWords.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>

namespace Ostrel {

using PlatformSupport::Float16;
using PlatformSupport::precondition;

namespace {

constexpr int64_t leastReadSeconds = 4;
constexpr int failedRetriesToGiveUp = 8; // where retrying does not help, it is not tried any more
constexpr double refinementFrameSeconds = 0.01;

std::string joined(const std::vector<Word>& words)
{
    std::string text;
    for (const Word& word : words) {
        if (&word != &words.front())
            text += ' ';
        text += word.text;
    }
    return text;
}

} // namespace

// Room for the projections of several windows, zero-filled.
struct LongFormRun::Projections {
    Projections(size_t windows, const Geometry& geometry)
        : size(geometry.projectionSize)
        , values(static_cast<size_t>(
              saturatingProduct(static_cast<int64_t>(windows), static_cast<int64_t>(geometry.projectionSize))))
    {
    }

    std::span<Float16> slot(size_t window) { return std::span(values).subspan(window * size, size); }

    size_t size;
    std::vector<Float16> values;
};

LongFormRun::LongFormRun(Recognizer& recognizer, const Geometry& geometry, std::span<const std::string> vocabulary,
    const Tunables& tunables, AudioStream& stream, const std::function<void(double)>& progress)
    : recognizer_(recognizer)
    , geometry_(geometry)
    , vocabulary_(vocabulary)
    , tunables_(tunables)
    , stream_(stream)
    , progress_(progress)
{
    precondition(tunables.batchWindows >= 1, "a batch without windows");
}

Transcript LongFormRun::run()
{
    for (findWindows(); isWaiting(); findWindows()) {
        std::vector<Window> batch = takeBatch();
        encodeAndDecode(batch);
        retrySuspects(batch);
        for (const Window& window : batch) {
            append(window.result, window.start, window.stop);
            if (window.rescue)
                append(window.rescue->result, window.rescue->start, windowStop(window.rescue->start));
        }
    }
    clampMonotonic(words_);
    return { .text = joined(words_), .words = std::move(words_) };
}

void LongFormRun::readUpTo(int64_t end)
{
    audio_.fill(stream_, end, leastReadSeconds * geometry_.sampleRate);
}

// Finds windows until a batch of them waits or the audio ends: only what goes on past a window has another.
void LongFormRun::findWindows()
{
    while (static_cast<int64_t>(starts_.size() - nextWindow_) < tunables_.batchWindows) {
        const int64_t last = starts_.back();
        const int64_t end = last + geometry_.windowLength;
        readUpTo(end + 1);
        if (audio_.end() <= end)
            return;
        const int64_t next = nextBoundary(last, audio_, geometry_, tunables_.boundarySearch);
        precondition(next > last, "the boundary search reaches back to the window's start");
        starts_.push_back(next);
    }
}

std::vector<Window> LongFormRun::takeBatch()
{
    const auto waiting = static_cast<int64_t>(starts_.size() - nextWindow_);
    const size_t end = nextWindow_ + static_cast<size_t>(std::min(waiting, tunables_.batchWindows));
    audio_.release(starts_[nextWindow_]);
    readUpTo(starts_[end - 1] + geometry_.windowLength);

    std::vector<Window> batch;
    for (; nextWindow_ < end; ++nextWindow_) {
        const int64_t start = starts_[nextWindow_];
        const int64_t stop = windowStop(start);
        batch.push_back({ .start = start,
            .stop = stop,
            .validFrames = geometry_.validFrames(stop - start),
            .result = {},
            .rescue = {} });
    }
    return batch;
}

void LongFormRun::encodeAndDecode(std::vector<Window>& batch)
{
    Projections projections(batch.size(), geometry_);
    std::vector<int64_t> valids;
    for (const Window& window : batch) {
        recognizer_.encode(
            audio_.range(window.start, window.stop), window.validFrames, projections.slot(valids.size()));
        valids.push_back(window.validFrames);
        reportProgress(window);
    }
    std::vector<WindowTokens> results = recognizer_.decode(projections.values, valids);
    for (size_t i = 0; i < batch.size(); ++i)
        batch[i].result = std::move(results[i]);
}

void LongFormRun::reportProgress(const Window& window) const
{
    const int64_t total = stream_.totalSamples().value_or(0);
    if (total < 1)
        return progress_(0);
    const auto reached = static_cast<double>(window.start + geometry_.windowLength);
    progress_(std::min(std::max(reached / static_cast<double>(total), 0.0), 1.0));
}

void LongFormRun::retrySuspects(std::vector<Window>& batch)
{
    if (failedRetries_ >= failedRetriesToGiveUp)
        return;
    std::vector<Window*> suspects;
    for (Window& window : batch)
        if (isSuspect(window, audio_, geometry_))
            suspects.push_back(&window);
    if (!suspects.empty())
        retry(suspects);
}

void LongFormRun::retry(const std::vector<Window*>& suspects)
{
    Projections projections(suspects.size(), geometry_);
    std::vector<RetryRange> ranges;
    std::vector<int64_t> valids;
    for (const Window* window : suspects) {
        const RetryRange range = retryRange(*window, audio_, geometry_);
        const int64_t valid = geometry_.validFrames(range.stop - range.start);
        recognizer_.encode(audio_.range(range.start, range.stop), valid, projections.slot(valids.size()));
        ranges.push_back(range);
        valids.push_back(valid);
    }

    std::vector<WindowTokens> results = recognizer_.decode(projections.values, valids);
    for (size_t j = 0; j < suspects.size(); ++j) {
        failedRetries_ = retryFailed(results[j], valids[j], geometry_) ? failedRetries_ + 1 : 0;
        Window& window = *suspects[j];
        if (window.result.tokens.empty())
            window.result = std::move(results[j]);
        else
            window.rescue = { .start = ranges[j].start, .result = std::move(results[j]) };
    }
}

// Makes words of tokens whose window is the samples from `start` to `stop`, and merges them into those so far.
void LongFormRun::append(const WindowTokens& tokens, int64_t start, int64_t stop)
{
    const auto rate = static_cast<double>(geometry_.sampleRate);
    const double seconds = static_cast<double>(start) / rate;
    const AudioSlice slice { .samples = audio_.range(start, stop), .offset = start - audio_.base() };
    std::vector<Word> words = refineEnds(timedWords(tokens, vocabulary_, geometry_.secondsPerFrame, seconds), slice,
        seconds, rate, refinementFrameSeconds);
    words_ = words_.empty() ? std::move(words)
                            : spliceOverlap(std::move(words_), std::move(words), seconds, tunables_.boundarySearch);
}

} // namespace Ostrel
