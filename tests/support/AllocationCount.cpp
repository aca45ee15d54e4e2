#include "AllocationCount.h"

#include <cstdlib>
#include <functional>
#include <new>
#include <unordered_map>
#include <utility>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

bool AllocationCount::isPossible() { return false; }
AllocationCount::AllocationCount() = default;
AllocationCount::~AllocationCount() = default;
std::size_t AllocationCount::blocks() const { return 0; }
std::size_t AllocationCount::bytes() const { return 0; }
std::size_t AllocationCount::allocations() const { return 0; }

#else

// The C library's own, under the names that it offers to a program with a malloc() of its own.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);
}

namespace
{

/// For what the counting itself allocates.
template <typename T>
struct Uncounted
{
    using value_type = T;

    Uncounted() = default;
    template <typename Other>
    Uncounted(const Uncounted<Other>&)
    {
    }
    T* allocate(std::size_t count)
    {
        void* const block = __libc_malloc(count * sizeof(T));
        if (!block)
            throw std::bad_alloc();
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) { __libc_free(block); }
    bool operator==(const Uncounted&) const { return true; }
    bool operator!=(const Uncounted&) const { return false; }
};

struct Blocks
{
    std::unordered_map<void*, std::size_t, std::hash<void*>, std::equal_to<void*>,
                       Uncounted<std::pair<void* const, std::size_t>>>
        sizes;
    std::size_t bytes = 0;
    std::size_t added = 0;

    void add(void* block, std::size_t size)
    {
        if (!block || !sizes.emplace(block, size).second)
            return;
        bytes += size;
        ++added;
    }

    void remove(void* block)
    {
        const auto found = sizes.find(block);
        if (found == sizes.end())
            return;
        bytes -= found->second;
        sizes.erase(found);
    }
};

Blocks* counted = nullptr; // null while nothing is counted

} // namespace

extern "C" void* malloc(std::size_t size) noexcept
{
    void* const block = __libc_malloc(size);
    if (counted)
        counted->add(block, size);
    return block;
}

extern "C" void* calloc(std::size_t count, std::size_t size) noexcept
{
    void* const block = __libc_calloc(count, size);
    if (counted)
        counted->add(block, count * size);
    return block;
}

extern "C" void* realloc(void* block, std::size_t size) noexcept
{
    if (counted)
        counted->remove(block);
    void* const moved = __libc_realloc(block, size);
    if (counted)
        counted->add(moved, size);
    return moved;
}

extern "C" void free(void* block) noexcept
{
    if (counted)
        counted->remove(block);
    __libc_free(block);
}

bool AllocationCount::isPossible()
{
    const AllocationCount count;
    void* volatile block = std::malloc(1); // or the compiler does without
    std::free(block);
    return count.allocations() == 1;
}

AllocationCount::AllocationCount()
{
    static Blocks blocks;
    blocks = {};
    blocks.sizes.reserve(1 << 17); // so that it seldom grows
    counted = &blocks;
}

AllocationCount::~AllocationCount() { counted = nullptr; }

std::size_t AllocationCount::blocks() const { return counted->sizes.size(); }

std::size_t AllocationCount::bytes() const { return counted->bytes; }

std::size_t AllocationCount::allocations() const { return counted->added; }

#endif
