#include "support/allocation_counter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t threadAllocations = 0;
thread_local std::size_t failingAllocation = 0; // none at 0

void* allocate(std::size_t size) noexcept
{
    if (++threadAllocations == failingAllocation)
        return nullptr;
    return std::malloc(size == 0 ? 1 : size);
}

void* allocate(std::size_t size, std::align_val_t alignment) noexcept
{
    if (++threadAllocations == failingAllocation)
        return nullptr;
    const auto unit = static_cast<std::size_t>(alignment);
    return std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
}

void* orThrow(void* memory)
{
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

// All forms are replaced, although the standard library defines some in terms of others: a
// sanitizer brings all of them along, and what one allocates the other must not free.
#define FORMS(Result, name, signature, ...)                                                        \
    Result operator name signature                                                                 \
    {                                                                                              \
        __VA_ARGS__;                                                                               \
    }                                                                                              \
    Result operator name[] signature                                                               \
    {                                                                                              \
        __VA_ARGS__;                                                                               \
    }

// clang-format off
using Size = std::size_t;
using Align = std::align_val_t;
using NoThrow = std::nothrow_t;
FORMS(void*, new, (Size size), return orThrow(allocate(size)))
FORMS(void*, new, (Size size, Align alignment), return orThrow(allocate(size, alignment)))
FORMS(void*, new, (Size size, const NoThrow&) noexcept, return allocate(size))
FORMS(void*, new, (Size size, Align alignment, const NoThrow&) noexcept, return allocate(size, alignment))
FORMS(void, delete, (void* memory) noexcept, std::free(memory))
FORMS(void, delete, (void* memory, Size) noexcept, std::free(memory))
FORMS(void, delete, (void* memory, Align) noexcept, std::free(memory))
FORMS(void, delete, (void* memory, Size, Align) noexcept, std::free(memory))
FORMS(void, delete, (void* memory, const NoThrow&) noexcept, std::free(memory))
FORMS(void, delete, (void* memory, Align, const NoThrow&) noexcept, std::free(memory))
// clang-format on

namespace zavex::test {

AllocationCounter::AllocationCounter(std::size_t failing) : AllocationCounter()
{
    failingAllocation = mStart + failing;
}

AllocationCounter::~AllocationCounter()
{
    failingAllocation = 0;
}

std::size_t AllocationCounter::allocations()
{
    return threadAllocations;
}

} // namespace zavex::test
