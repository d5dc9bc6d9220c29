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

void* operator new(std::size_t size)
{
    return orThrow(allocate(size));
}

void* operator new[](std::size_t size)
{
    return orThrow(allocate(size));
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return orThrow(allocate(size, alignment));
}

void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return orThrow(allocate(size, alignment));
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return allocate(size);
}

void* operator new(std::size_t size, std::align_val_t alignment,
                   const std::nothrow_t& /*tag*/) noexcept
{
    return allocate(size, alignment);
}

void* operator new[](std::size_t size, std::align_val_t alignment,
                     const std::nothrow_t& /*tag*/) noexcept
{
    return allocate(size, alignment);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::align_val_t /*alignment*/,
                     const std::nothrow_t& /*tag*/) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::align_val_t /*alignment*/,
                       const std::nothrow_t& /*tag*/) noexcept
{
    std::free(memory);
}

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
