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

// The forms for arrays end up in these two.
void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    ++allocations;
    return std::malloc(size == 0 ? 1 : size);
}

void* operator new(size_t size)
{
    if (void* const memory = operator new(size, std::nothrow))
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
