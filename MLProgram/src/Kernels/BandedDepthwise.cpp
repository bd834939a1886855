// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/BandedDepthwise.h"

#include "Kernels/Workers.h"

#include <algorithm>

namespace MLProgram {

namespace {

// Input values of a band: half a megabyte, for the second-level cache.
constexpr int64_t valuesPerBand = 1 << 17;

// Bands are cut along the first dimension of the window; the others are whole.
class Bands {
public:
    explicit Bands(const Window& window)
        : window_(window)
        , lines_(window.dimensions[0])
        , reach_((lines_.kernel - 1) * lines_.dilation + 1)
    {
        for (size_t i = 1; i < window.dimensions.size(); ++i) {
            inputPositions_ *= window.dimensions[i].input;
            outputPositions_ *= window.dimensions[i].output;
        }
        const int64_t inputLines = valuesPerBand / (inputPositions_ * window.channels);
        outputLines_ = std::clamp<int64_t>((inputLines - reach_) / lines_.stride + 1, 1, lines_.output);
    }

    int64_t count() const { return (lines_.output + outputLines_ - 1) / outputLines_; }
    int64_t mostInputRows() const { return ((outputLines_ - 1) * lines_.stride + reach_) * inputPositions_; }

    // Computes the band's input into `band`, and convolves it.
    void run(const BandedDepthwise& work, int64_t index, float* band, const KernelSet& kernels) const
    {
        const int64_t firstOutput = index * outputLines_;
        const int64_t outputs = std::min(outputLines_, lines_.output - firstOutput);
        const int64_t start = firstOutput * lines_.stride - lines_.padding;
        const int64_t first = std::clamp<int64_t>(start, 0, lines_.input);
        const int64_t last = std::clamp(start + (outputs - 1) * lines_.stride + reach_, first, lines_.input);

        Product product = work.product;
        product.result = band;
        product.resultStride = window_.channels;
        product.workspace = band + mostInputRows() * window_.channels;
        multiplyRows(product, first * inputPositions_, (last - first) * inputPositions_, kernels);

        Depthwise depthwise = work.depthwise;
        depthwise.window.input = band;
        depthwise.window.dimensions[0].input = last - first;
        depthwise.window.dimensions[0].output = outputs;
        depthwise.window.dimensions[0].padding = first - start;
        depthwise.output += firstOutput * outputPositions_ * depthwise.outputStride;
        runAlone(depthwise, kernels);
    }

private:
    const Window& window_;
    WindowDimension lines_;
    int64_t reach_; // lines of the input that one line of the output sees
    int64_t inputPositions_ = 1; // of a line
    int64_t outputPositions_ = 1;
    int64_t outputLines_ = 1; // of a band
};

int64_t workspaceOfThread(const Bands& bands, const Window& window, int64_t depth) noexcept
{
    return bands.mostInputRows() * window.channels + productWorkspace(bands.mostInputRows(), depth);
}

} // namespace

int64_t bandedDepthwiseWorkspace(const Window& window, int64_t depth) noexcept
{
    return workspaceOfThread(Bands(window), window, depth) * Workers::shared().count();
}

void run(const BandedDepthwise& work, const KernelSet& kernels)
{
    const Window& window = work.depthwise.window;
    const Bands bands(window);
    const int64_t workspace = workspaceOfThread(bands, window, work.product.right->depth());
    forEachTask(bands.count(), true,
        [&](int64_t band, int worker) { bands.run(work, band, work.workspace + worker * workspace, kernels); });
}

} // namespace MLProgram
