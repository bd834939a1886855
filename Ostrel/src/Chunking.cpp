// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Chunking.h"

#include "Arithmetic.h"
#include "Energy.h"

#include <PlatformSupport/Precondition.h>

#include <cmath>
#include <vector>

namespace Ostrel {

namespace {

constexpr float loudestOfQuiet = 2; // times the quietest cell's energy
constexpr float silence = 1e-9F; // at or below it, cells count as equally silent
constexpr float loudestOfSilence = 2e-9F; // else pure silence would allow exact ties only

struct Cell {
    int64_t centre;
    float energy;
};

std::vector<Cell> cellsBetween(int64_t first, int64_t end, const AudioBuffer& audio, int64_t length)
{
    std::vector<Cell> cells;
    for (int64_t start = first; start + length <= end; start += length) {
        const float energy = sumOfSquares(audio.range(start, start + length)) / static_cast<float>(length);
        cells.push_back({ start + length / 2, energy });
    }
    return cells;
}

float threshold(const std::vector<Cell>& cells)
{
    float lowest = cells.front().energy;
    for (const Cell& cell : cells)
        lowest = cell.energy < lowest ? cell.energy : lowest;
    return lowest <= silence ? loudestOfSilence : loudestOfQuiet * lowest;
}

// Those at most as loud as the threshold. Where energies are no numbers that may leave none; then all stay.
std::vector<Cell> quietCells(std::vector<Cell> cells)
{
    const float limit = threshold(cells);
    std::vector<Cell> quiet;
    for (const Cell& cell : cells)
        if (cell.energy <= limit)
            quiet.push_back(cell);
    return quiet.empty() ? std::move(cells) : quiet;
}

int64_t searchLength(double seconds, const Geometry& geometry)
{
    const double length = seconds * static_cast<double>(geometry.sampleRate);
    PlatformSupport::precondition(std::abs(length) < 0x1p62, "boundary search is no length");
    return truncated(length);
}

} // namespace

int64_t nextBoundary(int64_t after, const AudioBuffer& audio, const Geometry& geometry, double searchSeconds)
{
    const int64_t search = searchLength(searchSeconds, geometry);
    const int64_t end = after + geometry.windowLength;
    const std::vector<Cell> cells = cellsBetween(end - search, end, audio, geometry.cellLength);
    if (cells.empty())
        return end;

    const auto score = [&](const Cell& cell) {
        return (static_cast<float>(end - cell.centre) / static_cast<float>(search) + 1) * cell.energy;
    };
    const std::vector<Cell> candidates = quietCells(cells);
    Cell best = candidates.front();
    for (const Cell& cell : candidates)
        if (score(cell) <= score(best))
            best = cell;
    return best.centre;
}

} // namespace Ostrel
