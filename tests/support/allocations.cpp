// The linker sends calls of the allocating functions here (--wrap) and the functions' own names to __real_.

#include "tests/support/allocations.h"

#include <cstddef>

static long allocations = 0;
static bool refused = false;

long allocationCount()
{
    return allocations;
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
    void* __real_calloc(size_t count, size_t size);
    void* __real_realloc(void* block, size_t size);
    void* realNew(size_t size) __asm__("__real_" VORNIK_NEW);
    void* realNewArray(size_t size) __asm__("__real_" VORNIK_NEW_ARRAY);

    void* __wrap_malloc(size_t size)
    {
        ++allocations;
        return __real_malloc(size);
    }

    void* __wrap_calloc(size_t count, size_t size)
    {
        ++allocations;
        return refused ? nullptr : __real_calloc(count, size);
    }

    void* __wrap_realloc(void* block, size_t size)
    {
        ++allocations;
        return __real_realloc(block, size);
    }

    void* wrapNew(size_t size) __asm__("__wrap_" VORNIK_NEW);
    void* wrapNew(size_t size)
    {
        ++allocations;
        return realNew(size);
    }

    void* wrapNewArray(size_t size) __asm__("__wrap_" VORNIK_NEW_ARRAY);
    void* wrapNewArray(size_t size)
    {
        ++allocations;
        return realNewArray(size);
    }
}
