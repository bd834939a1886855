// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Decoder.h"

#include "Arithmetic.h"
#include "Features.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>

namespace Ostrel {

using PlatformSupport::Float16;
using PlatformSupport::precondition;

namespace {

int64_t channelCount(const Configuration& c)
{
    return c.vocabSize + 1 + static_cast<int64_t>(c.durations.size());
}

size_t unsignedSize(int64_t size)
{
    return static_cast<size_t>(size);
}

} // namespace

Decoder::Decoder(const Configuration& c, int64_t lanes, std::span<const Float16> embedding, Stage& stage)
    : configuration_(c)
    , embedding_(embedding)
    , stage_(stage)
    , laneCount_(unsignedSize(lanes))
    , embed_(inputBuffer(stage, "embed", { lanes, c.predHidden, 1, 1 }))
    , hIn_(inputBuffer(stage, "h_in", { lanes, c.predLayers * c.predHidden, 1, 1 }))
    , cIn_(inputBuffer(stage, "c_in", { lanes, c.predLayers * c.predHidden, 1, 1 }))
    , encStep_(inputBuffer(stage, "enc_step", { lanes, c.jointHidden, 1, c.decodeWidth }))
    , logitsOut_(outputBuffer(stage, "logits", { lanes, channelCount(c), 1, c.decodeWidth }))
    , hOut_(outputBuffer(stage, "h_out", { lanes, c.predLayers * c.predHidden, 1, 1 }))
    , cOut_(outputBuffer(stage, "c_out", { lanes, c.predLayers * c.predHidden, 1, 1 }))
    , scores_(logitsOut_.slice(0).size())
    , stepProvider_(provider({ { "embed", embed_ }, { "h_in", hIn_ }, { "c_in", cIn_ }, { "enc_step", encStep_ } }))
    , stepOptions_(backings({ { "logits", logitsOut_ }, { "h_out", hOut_ }, { "c_out", cOut_ } }))
{
    precondition(embedding.size() == unsignedSize((c.vocabSize + 1) * c.predHidden), "embedding table of a wrong size");
}

std::vector<WindowTokens> Decoder::decode(std::span<const Float16> projections, std::span<const int64_t> valids)
{
    const size_t projectionSize = unsignedSize(configuration_.jointHidden * configuration_.encFrames);
    precondition(projections.size() == valids.size() * projectionSize, "projections of a wrong size");

    for (const Buffer* buffer : { &hIn_, &cIn_, &embed_, &encStep_ })
        buffer->fill({});

    Batch batch { .projections = projections, .valids = valids, .results = std::vector<WindowTokens>(valids.size()) };
    std::vector<Lane> lanes;
    for (size_t i = 0; i < laneCount_; ++i)
        takeNextWindow(lanes.emplace_back(Lane { .index = i }), batch);

    while (std::ranges::any_of(lanes, &Lane::isBusy)) {
        for (const Lane& lane : lanes)
            if (lane.isBusy)
                fillInputs(lane, batch);
        stage_.predict(stepProvider_, stepOptions_);
        for (Lane& lane : lanes) {
            if (!lane.isBusy)
                continue;
            advance(lane, batch.results[lane.window]);
            if (lane.frame >= lane.limit || lane.callCount >= maximumTokensPerFrame * lane.limit)
                takeNextWindow(lane, batch);
        }
    }
    return std::move(batch.results);
}

void Decoder::takeNextWindow(Lane& lane, Batch& batch)
{
    lane = { .index = lane.index, .isBusy = batch.nextWindow < batch.valids.size() };
    if (!lane.isBusy)
        return;
    lane.window = batch.nextWindow++;
    lane.limit = std::clamp<int64_t>(batch.valids[lane.window], 1, configuration_.encFrames);
    lane.lastToken = configuration_.blankIdx;
    std::ranges::fill(hIn_.slice(lane.index), Float16 {});
    std::ranges::fill(cIn_.slice(lane.index), Float16 {});
}

int64_t Decoder::columnsOf(const Lane& lane) const
{
    return std::min(lane.limit - lane.frame, configuration_.decodeWidth);
}

void Decoder::fillInputs(const Lane& lane, const Batch& batch)
{
    const size_t rowSize = unsignedSize(configuration_.predHidden);
    std::ranges::copy(
        embedding_.subspan(unsignedSize(lane.lastToken) * rowSize, rowSize), embed_.slice(lane.index).begin());

    const size_t encFrames = unsignedSize(configuration_.encFrames);
    const size_t width = unsignedSize(configuration_.decodeWidth);
    const size_t columns = unsignedSize(columnsOf(lane));
    const size_t channels = unsignedSize(configuration_.jointHidden);
    const auto projection = batch.projections.subspan(lane.window * channels * encFrames, channels * encFrames);
    const std::span<Float16> step = encStep_.slice(lane.index);
    for (size_t channel = 0; channel < channels; ++channel) {
        const auto frames = projection.subspan(channel * encFrames + unsignedSize(lane.frame), columns);
        const auto row = step.subspan(channel * width, width);
        std::fill(std::ranges::copy(frames, row.begin()).out, row.end(), Float16 {});
    }
}

// Handles one lane after a stage call: blanks go on within the scored columns, the first token ends them.
void Decoder::advance(Lane& lane, WindowTokens& result)
{
    PlatformSupport::toFloat(logitsOut_.slice(lane.index), scores_);
    ++lane.callCount;

    const int64_t tokenChannels = configuration_.vocabSize + 1;
    const auto durationClasses = static_cast<int64_t>(configuration_.durations.size());
    const int64_t columns = columnsOf(lane);
    int64_t column = 0;
    while (column < columns) {
        const int64_t token = argmax(0, tokenChannels, column);
        const int64_t durationClass = argmax(tokenChannels, durationClasses, column);
        const int64_t duration = configuration_.durations[unsignedSize(durationClass)];
        if (token != configuration_.blankIdx)
            return emit(lane, column, token, duration, result);
        lane.tokenCount = 0;
        column = saturatingSum(column, std::max<int64_t>(duration, 1));
    }
    lane.frame = saturatingSum(lane.frame, column);
}

void Decoder::emit(Lane& lane, int64_t column, int64_t token, int64_t duration, WindowTokens& result)
{
    const int64_t frame = lane.frame + column;
    result.tokens.push_back(token);
    result.frames.push_back(frame);
    result.ends.push_back(saturatingSum(frame, duration));

    std::ranges::copy(hOut_.slice(lane.index), hIn_.slice(lane.index).begin());
    std::ranges::copy(cOut_.slice(lane.index), cIn_.slice(lane.index).begin());
    lane.lastToken = token;
    ++lane.tokenCount;

    const bool isStuck = duration == 0 && lane.tokenCount >= maximumTokensPerFrame;
    if (isStuck)
        lane.tokenCount = 0;
    lane.frame = std::max<int64_t>(saturatingSum(frame, isStuck ? 1 : duration), 0);
}

// The channel with the highest score, counted from `firstChannel`; of equals the lowest.
int64_t Decoder::argmax(int64_t firstChannel, int64_t count, int64_t column) const
{
    const float* const scores = scores_.data() + firstChannel * configuration_.decodeWidth + column;
    int64_t best = 0;
    float highest = scores[0];
    for (int64_t i = 1; i < count; ++i) {
        const float score = scores[i * configuration_.decodeWidth];
        if (score > highest) {
            highest = score;
            best = i;
        }
    }
    return best;
}

} // namespace Ostrel
