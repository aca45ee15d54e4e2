#pragma once

#include <cstddef>

/// While it exists, operator new refuses blocks of more than `largestBlock` bytes. One at a time,
/// and in a program of one thread.
class ScarceMemory
{
public:
    explicit ScarceMemory(std::size_t largestBlock);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;

    int refusals() const; ///< so far
};
