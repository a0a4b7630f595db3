// The linker sends calls of the allocating functions here (--wrap) and the functions' own names to __real_.

#include "tests/support/allocations.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <new>
#include <unordered_map>
#include <utility>

static long allocations = 0;
static bool refused = false;
static long long held = 0, peak = 0;
static long failing = 0; // calls left up to the one that fails, that one included

// What new takes from malloc comes here too where the C++ library is part of the program. It is counted once.
static int depthOfNew = 0;

struct InsideNew
{
    InsideNew() { ++depthOfNew; }
    InsideNew(const InsideNew&) = delete;
    InsideNew& operator=(const InsideNew&) = delete;
    ~InsideNew() { --depthOfNew; }
};

long allocationCount()
{
    return allocations;
}

long long heldBytes()
{
    return held;
}

long long peakBytes()
{
    return peak;
}

void resetPeak()
{
    peak = held;
}

bool failAllocation(long n)
{
    const bool reached = failing == 0;
    failing = n;
    return reached;
}

NoMemory::NoMemory()
{
    refused = true;
}

NoMemory::~NoMemory()
{
    refused = false;
}

extern "C"
{
    void* __real_malloc(size_t size);
    void __real_free(void* block);
}

// For the list of blocks, which must not count itself.
template <class T>
struct Uncounted
{
    using value_type = T;
    Uncounted() = default;
    template <class U>
    Uncounted(const Uncounted<U>&)
    {
    }
    T* allocate(size_t n) { return static_cast<T*>(__real_malloc(n * sizeof(T))); }
    void deallocate(T* block, size_t) { __real_free(block); }
    bool operator==(const Uncounted&) const { return true; }
};

// Blocks with their sizes. Others are freed here, too: libraries hand theirs over.
using Blocks = std::unordered_map<void*, size_t, std::hash<void*>, std::equal_to<void*>,
                                  Uncounted<std::pair<void* const, size_t>>>;

// Lives to the very end, when static objects free what they hold. Made by hand: the guard of a local static
// may allocate, and so come here again.
static Blocks& blocks()
{
    static Blocks* all = nullptr;
    if (!all)
        all = new (__real_malloc(sizeof(Blocks))) Blocks;
    return *all;
}

// Counts a call. @return is it the one that fails?
static bool fails()
{
    if (depthOfNew > 0)
        return false;
    ++allocations;
    return failing > 0 && --failing == 0;
}

static void* took(void* block, size_t size)
{
    if (!block || depthOfNew > 0)
        return block;
    blocks()[block] = size;
    held += static_cast<long long>(size);
    peak = std::max(peak, held);
    return block;
}

static void* within(void* (*real)(size_t), size_t size)
{
    const InsideNew inside;
    return real(size);
}

static void gives(void* block)
{
    const auto taken = blocks().find(block);
    if (taken == blocks().end())
        return;
    held -= static_cast<long long>(taken->second);
    blocks().erase(taken);
}

extern "C"
{
    void* __real_calloc(size_t count, size_t size);
    void* __real_realloc(void* block, size_t size);
    // By the names that the linker knows them by; the type of sizes is a letter of them.
    void* realNew(size_t size) __asm__("__real__Znw" VORNIK_SIZE);
    void* realNewArray(size_t size) __asm__("__real__Zna" VORNIK_SIZE);
    void realDelete(void* block) __asm__("__real__ZdlPv");
    void realDeleteArray(void* block) __asm__("__real__ZdaPv");
    void* wrapNew(size_t size) __asm__("__wrap__Znw" VORNIK_SIZE);
    void* wrapNewArray(size_t size) __asm__("__wrap__Zna" VORNIK_SIZE);
    void* wrapQuietNew(size_t size,
                       const std::nothrow_t&) __asm__("__wrap__Znw" VORNIK_SIZE "RKSt9nothrow_t");
    void* wrapQuietNewArray(size_t size,
                            const std::nothrow_t&) __asm__("__wrap__Zna" VORNIK_SIZE "RKSt9nothrow_t");
    void wrapDelete(void* block) __asm__("__wrap__ZdlPv");
    void wrapSizedDelete(void* block, size_t) __asm__("__wrap__ZdlPv" VORNIK_SIZE);
    void wrapDeleteArray(void* block) __asm__("__wrap__ZdaPv");

    void* __wrap_malloc(size_t size)
    {
        return fails() ? nullptr : took(__real_malloc(size), size);
    }

    void* __wrap_calloc(size_t count, size_t size)
    {
        return fails() || refused ? nullptr : took(__real_calloc(count, size), count * size);
    }

    void* __wrap_realloc(void* block, size_t size)
    {
        if (fails())
            return nullptr;
        const auto taken = blocks().find(block);
        const size_t before = taken == blocks().end() ? 0 : taken->second;
        const bool known = taken != blocks().end();
        gives(block);
        void* moved = __real_realloc(block, size);
        if (!moved && known)
            took(block, before);
        return took(moved, size);
    }

    void __wrap_free(void* block)
    {
        gives(block);
        __real_free(block);
    }

    void* wrapNew(size_t size)
    {
        if (fails())
            throw std::bad_alloc();
        return took(within(realNew, size), size);
    }

    void* wrapNewArray(size_t size)
    {
        if (fails())
            throw std::bad_alloc();
        return took(within(realNewArray, size), size);
    }

    void* wrapQuietNew(size_t size, const std::nothrow_t&)
    {
        return fails() ? nullptr : took(within(realNew, size), size);
    }

    void* wrapQuietNewArray(size_t size, const std::nothrow_t&)
    {
        return fails() ? nullptr : took(within(realNewArray, size), size);
    }

    void wrapDelete(void* block)
    {
        gives(block);
        realDelete(block);
    }

    void wrapSizedDelete(void* block, size_t)
    {
        wrapDelete(block);
    }

    void wrapDeleteArray(void* block)
    {
        gives(block);
        realDeleteArray(block);
    }
}
