// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/Allocations.h"

#include <cstdlib>
#include <new>

namespace {

constinit thread_local std::size_t t_allocations = 0;

void* allocate(std::size_t size)
{
    ++t_allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

} // namespace

std::size_t Testing::allocations() { return t_allocations; }

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
