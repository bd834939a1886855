// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/Rows.h"
#include "Plan/View.h"

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace MLProgram {

// Where the buffers of a plan lie, once that is decided.
class Memory {
public:
    explicit Memory(std::vector<std::byte*> bases)
        : bases_(std::move(bases))
    {
    }

    void* at(const View& view) const
    {
        return bases_[view.buffer] + view.offset * static_cast<int64_t>(sizeOf(view.element));
    }
    float* reals(const View& view) const { return static_cast<float*>(at(view)); }
    float* floats(BufferIndex buffer) const { return reinterpret_cast<float*>(bases_[buffer]); }
    StridedValues values(const View& view) const { return { at(view), view.element, view.strides }; }
    TensorView tensor(const View& dense) const { return { { dense.element, dense.shape }, at(dense) }; }

private:
    std::vector<std::byte*> bases_;
};

// One action of a plan: reads some buffers, writes others.
struct Step {
    std::string name; // kind and size of the work, for those who measure: "product 188x1024x4096"
    std::vector<BufferIndex> reads;
    std::vector<BufferIndex> writes; // working memory included

    // Gives the action with every address filled in; running it allocates nothing.
    std::function<std::function<void()>(const Memory& memory)> bind;
};

// The name of a step of this kind, over sizes that it multiplies.
std::string stepName(std::string_view kind, std::initializer_list<int64_t> sizes);

struct Buffer {
    enum class Kind {
        computed, // written by a step; shares the arena with buffers of other times
        lasting, // an input or output of the plan: nothing else lies there while the program runs
        constant // has its value before the program runs
    };
    Kind kind = Kind::computed;
    size_t size = 0; // in bytes
    Tensor value; // of a constant
};

// The steps of a plan in order, and the buffers they work on.
struct Schedule {
    std::vector<Buffer> buffers;
    std::vector<Step> steps;

    BufferIndex addBuffer(size_t size, Buffer::Kind kind = Buffer::Kind::computed);
    BufferIndex addConstant(Tensor value);
};

// Where in one arena each computed or lasting buffer goes. Two buffers share bytes only if one is last used before
// the other is first written.
struct ArenaLayout {
    std::vector<size_t> offsets; // by buffer, in bytes; 64-byte aligned; constants have none
    size_t size = 0;
};

ArenaLayout layOut(const Schedule& schedule);

} // namespace MLProgram
