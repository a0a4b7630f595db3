// Loaded before the viewer's libraries: keeps a record of every picture that it shows, a line each in the
// file that FRAMEWATCH names.
//
// A record tells the second; how long the turn was from the end of the last sleep to that of this one, had
// it ended as asked for, 0 where a picture went without; and what the viewer did since the picture before:
// how often it took memory, drew faces and called display lists. Memory counts where the viewer, the engine
// or the C++ library ask for it on the viewer's own thread; what graphics driver and window system take is
// theirs.
//
// While the file that FRAMEWATCH_SLOW names exists, every picture takes 40 milliseconds more.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

struct _XDisplay;

static int allocations, faces, lists;
static double turn, lastSleep; // 0 where there was no sleep
static bool watching;          // on the viewer's thread, between pictures

template <typename Function>
static Function next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

static double seconds()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

static void record()
{
    static const char* const path = std::getenv("FRAMEWATCH");
    static const int file = path ? open(path, O_WRONLY | O_CREAT | O_APPEND, 0600) : -1;
    char line[100];
    const int length =
        std::snprintf(line, sizeof line, "%.6f %.6f %d %d %d\n", seconds(), turn, allocations, faces, lists);
    if (file < 0 || write(file, line, static_cast<size_t>(length)) < 0)
        std::abort();
}

static void beSlow()
{
    static const char* const path = std::getenv("FRAMEWATCH_SLOW");
    if (path && access(path, F_OK) == 0)
        usleep(40000);
}

extern "C" void glXSwapBuffers(_XDisplay* display, unsigned long drawable)
{
    static const auto swap = next<void (*)(_XDisplay*, unsigned long)>("glXSwapBuffers");
    watching = false;
    record();
    swap(display, drawable);
    beSlow();
    allocations = faces = lists = 0;
    if (turn == 0.0)
        lastSleep = 0.0;
    turn = 0.0;
    watching = true;
}

extern "C" int nanosleep(const timespec* time, timespec* rest)
{
    static const auto sleep = next<int (*)(const timespec*, timespec*)>("nanosleep");
    if (!watching || gettid() != getpid())
        return sleep(time, rest);
    const double asked = static_cast<double>(time->tv_sec) + 1e-9 * static_cast<double>(time->tv_nsec);
    // As if the sleep ended when it should: a busy machine wakes the viewer late.
    const double since = lastSleep > 0.0 ? seconds() - lastSleep : 0.0;
    const int result = sleep(time, rest);
    lastSleep = seconds();
    turn = since + asked;
    return result;
}

extern "C" void glDrawElements(unsigned mode, int count, unsigned type, const void* indices)
{
    static const auto draw = next<void (*)(unsigned, int, unsigned, const void*)>("glDrawElements");
    faces += count / 3;
    draw(mode, count, type, indices);
}

extern "C" void glCallList(unsigned list)
{
    static const auto call = next<void (*)(unsigned)>("glCallList");
    ++lists;
    call(list);
}

// The sanitizers have allocators of their own.
#ifndef VORNIK_SANITIZE

static bool isOurs(const void* caller)
{
    Dl_info info = {};
    if (!dladdr(caller, &info) || !info.dli_fname)
        return false;
    for (const char* name : {"/vornik", "libvornik", "libstdc++"})
        if (std::strstr(info.dli_fname, name))
            return true;
    return false;
}

static void count(const void* caller)
{
    if (watching && gettid() == getpid() && isOurs(caller))
        ++allocations;
}

extern "C" void* __libc_malloc(size_t size);
extern "C" void* __libc_calloc(size_t number, size_t size);
extern "C" void* __libc_realloc(void* block, size_t size);

extern "C" void* malloc(size_t size)
{
    count(__builtin_return_address(0));
    return __libc_malloc(size);
}

extern "C" void* calloc(size_t number, size_t size)
{
    count(__builtin_return_address(0));
    return __libc_calloc(number, size);
}

extern "C" void* realloc(void* block, size_t size)
{
    count(__builtin_return_address(0));
    return __libc_realloc(block, size);
}

#endif
