// SPDX-License-Identifier: Apache-2.0
#include "tests/case/LargestRequest.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t s_largest = 0;

} // namespace

namespace Testing {

void forget_largest_request() { s_largest = 0; }
std::size_t largest_request() { return s_largest; }

} // namespace Testing

void* operator new(std::size_t size)
{
    s_largest = std::max(s_largest, size);
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
