#include "ScarceMemory.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace
{

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();
std::size_t largest = unlimited;
int refused = 0;

void* blockOf(std::size_t size)
{
    if (size <= largest)
        return std::malloc(size);
    ++refused;
    return nullptr;
}

void* blockOrThrow(std::size_t size)
{
    if (void* const block = blockOf(size))
        return block;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) { return blockOrThrow(size); }
void* operator new[](std::size_t size) { return blockOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return blockOf(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return blockOf(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

ScarceMemory::ScarceMemory(std::size_t largestBlock)
{
    refused = 0;
    largest = largestBlock;
}

ScarceMemory::~ScarceMemory() { largest = unlimited; }

int ScarceMemory::refusals() const { return refused; }
