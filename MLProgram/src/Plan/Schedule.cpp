// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/Schedule.h"

#include <algorithm>
#include <utility>

namespace MLProgram {

namespace {

constexpr size_t alignment = 64;

struct Placement {
    BufferIndex buffer = 0;
    size_t firstStep = 0;
    size_t lastStep = 0;
    size_t size = 0;
    size_t offset = 0;

    bool meets(const Placement& other) const { return firstStep <= other.lastStep && other.firstStep <= lastStep; }
};

std::vector<Placement> lifetimes(const Schedule& schedule)
{
    std::vector<Placement> placements(schedule.buffers.size());
    std::vector<bool> isUsed(schedule.buffers.size(), false);
    const auto use = [&](BufferIndex buffer, size_t step) {
        Placement& placement = placements[buffer];
        placement.firstStep = isUsed[buffer] ? std::min(placement.firstStep, step) : step;
        placement.lastStep = std::max(placement.lastStep, step);
        isUsed[buffer] = true;
    };
    for (size_t step = 0; step < schedule.steps.size(); ++step) {
        for (const BufferIndex buffer : schedule.steps[step].reads)
            use(buffer, step);
        for (const BufferIndex buffer : schedule.steps[step].writes)
            use(buffer, step);
    }
    std::vector<Placement> result;
    for (BufferIndex i = 0; i < schedule.buffers.size(); ++i) {
        const Buffer& buffer = schedule.buffers[i];
        if (buffer.kind == Buffer::Kind::constant || (!isUsed[i] && buffer.kind == Buffer::Kind::computed))
            continue;
        Placement placement = placements[i];
        if (buffer.kind == Buffer::Kind::lasting) {
            placement.firstStep = 0;
            placement.lastStep = schedule.steps.size();
        }
        placement.buffer = i;
        placement.size = (std::max<size_t>(1, buffer.size) + alignment - 1) / alignment * alignment;
        result.push_back(placement);
    }
    return result;
}

// The lowest offset at which the buffer meets none of those that live at the same time; `neighbours` are sorted by
// their offsets.
size_t lowestOffset(const Placement& placement, const std::vector<Placement>& neighbours)
{
    size_t offset = 0;
    for (const Placement& neighbour : neighbours) {
        if (!neighbour.meets(placement))
            continue;
        if (offset + placement.size <= neighbour.offset)
            break;
        offset = std::max(offset, neighbour.offset + neighbour.size);
    }
    return offset;
}

} // namespace

std::string stepName(std::string_view kind, std::initializer_list<int64_t> sizes)
{
    std::string name(kind);
    char separator = ' ';
    for (const int64_t size : sizes)
        name += std::exchange(separator, 'x') + std::to_string(size);
    return name;
}

BufferIndex Schedule::addBuffer(size_t size, Buffer::Kind kind)
{
    buffers.push_back({ kind, size, {} });
    return static_cast<BufferIndex>(buffers.size() - 1);
}

BufferIndex Schedule::addConstant(Tensor value)
{
    const size_t size = static_cast<size_t>(value.view().count()) * sizeOf(value.type().element);
    buffers.push_back({ Buffer::Kind::constant, size, std::move(value) });
    return static_cast<BufferIndex>(buffers.size() - 1);
}

// The largest first: small buffers fit into the gaps that are left.
ArenaLayout layOut(const Schedule& schedule)
{
    std::vector<Placement> waiting = lifetimes(schedule);
    std::stable_sort(
        waiting.begin(), waiting.end(), [](const Placement& a, const Placement& b) { return a.size > b.size; });
    ArenaLayout layout;
    layout.offsets.resize(schedule.buffers.size(), 0);
    std::vector<Placement> placed;
    for (Placement& placement : waiting) {
        placement.offset = lowestOffset(placement, placed);
        layout.offsets[placement.buffer] = placement.offset;
        layout.size = std::max(layout.size, placement.offset + placement.size);
        const auto position = std::ranges::upper_bound(placed, placement.offset, {}, &Placement::offset);
        placed.insert(position, placement);
    }
    return layout;
}

} // namespace MLProgram
