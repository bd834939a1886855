// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/Pages.h"

#include <MLProgram/MLModelError.h>

#include <sys/mman.h>

#include <algorithm>

namespace MLProgram {

namespace {

constexpr size_t largePage = size_t { 2 } << 20;

} // namespace

void Pages::Unmap::operator()(std::byte* pages) const noexcept
{
    munmap(pages, size);
}

Pages::Pages(size_t size)
{
    const size_t mapped = std::max<size_t>(size, 1);
    void* pages = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED)
        throw MLModelError(MLModelError::Case::outOfMemory, "There is not enough memory for the model.");
    if (mapped >= largePage)
        madvise(pages, mapped, MADV_HUGEPAGE);
    pages_ = { static_cast<std::byte*>(pages), Unmap { mapped } };
}

} // namespace MLProgram
