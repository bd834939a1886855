// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {

thread_local size_t allocations = 0;

}

size_t allocationCount() noexcept
{
    return allocations;
}

// The other forms of new end up in this one.
void* operator new(size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, size_t) noexcept
{
    std::free(memory);
}
