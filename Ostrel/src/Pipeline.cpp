// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Decoder.h"
#include "Encoder.h"
#include "Geometry.h"
#include "LongFormRun.h"

#include <Ostrel/Pipeline.h>

#include <bit>

namespace Ostrel {

using PlatformSupport::Float16;

namespace {

static_assert(std::endian::native == std::endian::little, "the embedding table is read in place");

std::span<const Float16> embeddingTable(const PlatformSupport::MappedFile& file)
{
    const auto* const values = reinterpret_cast<const Float16*>(file.bytes().data());
    return { values, file.bytes().size() / sizeof(Float16) };
}

} // namespace

class Pipeline::Implementation final : public Recognizer {
public:
    Implementation(Assets assets, const Tunables& tunables)
        : assets_(std::move(assets))
        , tunables_(tunables)
        , geometry_(assets_.configuration)
        , encoder_(assets_.configuration, *assets_.mel, *assets_.encoder)
        , decoder_(
              assets_.configuration, assets_.decodeLanes, embeddingTable(assets_.embeddingData), *assets_.decodeStep)
    {
    }

    Transcript run(AudioStream& stream, const std::function<void(double)>& progress)
    {
        return LongFormRun(*this, geometry_, assets_.vocabulary, tunables_, stream, progress).run();
    }

    void encode(std::span<const float> window, int64_t validFrames, std::span<Float16> into) override
    {
        encoder_.encode(window, validFrames, into);
    }

    std::vector<WindowTokens> decode(std::span<const Float16> projections, std::span<const int64_t> valids) override
    {
        return decoder_.decode(projections, valids);
    }

private:
    Assets assets_;
    Tunables tunables_;
    Geometry geometry_;
    Encoder encoder_;
    Decoder decoder_;
};

Pipeline::Pipeline(Assets assets, const Tunables& tunables)
    : implementation_(std::make_unique<Implementation>(std::move(assets), tunables))
{
}

Pipeline::~Pipeline() = default;
Pipeline::Pipeline(Pipeline&&) noexcept = default;
Pipeline& Pipeline::operator=(Pipeline&&) noexcept = default;

Transcript Pipeline::run(AudioStream& stream, const std::function<void(double)>& progress)
{
    return implementation_->run(stream, progress);
}

} // namespace Ostrel
