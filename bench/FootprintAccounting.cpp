// The footprint program's own accounting of the heap and of threads, for
// every library of the process: the allocation functions and pthread_create
// are defined here, in the executable, so that every call reaches these
// definitions first; they hand the work on to the C library's own.
#include "FootprintAccounting.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <malloc.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <new>

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* pointer, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* pointer);
}

namespace {

std::atomic<bool> gAccounting{false};
std::atomic<long long> gInUse{0};
std::atomic<long long> gPeak{0};

void account(void* pointer, bool added)
{
    if (!pointer || !gAccounting.load(std::memory_order_relaxed))
        return;
    const long long size = static_cast<long long>(malloc_usable_size(pointer));
    const long long now = gInUse.fetch_add(added ? size : -size) + (added ? size : -size);
    long long peak = gPeak.load(std::memory_order_relaxed);
    while (now > peak && !gPeak.compare_exchange_weak(peak, now, std::memory_order_relaxed)) {
    }
}

std::atomic<int> gCreated{0};
std::atomic<int> gAlive{0};
std::atomic<int> gMostAlive{0};
std::mutex gCreatorsMutex;
std::map<std::string, int>* gCreators = nullptr;

struct Start {
    void* (*routine)(void*);
    void* argument;
};

// Counts the thread out when it ends, however it ends.
struct AliveMark {
    ~AliveMark() { gAlive.fetch_sub(1); }
};

void* started(void* raw)
{
    const Start start = *static_cast<Start*>(raw);
    delete static_cast<Start*>(raw);
    thread_local AliveMark mark;
    (void)mark;
    const int alive = gAlive.fetch_add(1) + 1;
    int most = gMostAlive.load();
    while (alive > most && !gMostAlive.compare_exchange_weak(most, alive)) {
    }
    return start.routine(start.argument);
}

// The library that asked for the thread: the first caller outside this
// program and the C and C++ runtime libraries (std::thread asks from libstdc++).
std::string creatingLibrary()
{
    void* frames[16];
    const int depth = backtrace(frames, 16);
    Dl_info self{};
    dladdr(reinterpret_cast<void*>(&creatingLibrary), &self);
    for (int i = 1; i < depth; ++i) {
        Dl_info caller{};
        if (!dladdr(frames[i], &caller) || !caller.dli_fname || caller.dli_fbase == self.dli_fbase)
            continue;
        const char* slash = std::strrchr(caller.dli_fname, '/');
        const std::string name = slash ? slash + 1 : caller.dli_fname;
        if (name.rfind("libc.so", 0) != 0 && name.rfind("libstdc++.so", 0) != 0)
            return name;
    }
    return "?";
}

}  // namespace

extern "C" {

void* malloc(size_t size)
{
    void* pointer = __libc_malloc(size);
    account(pointer, true);
    return pointer;
}

void* calloc(size_t count, size_t size)
{
    void* pointer = __libc_calloc(count, size);
    account(pointer, true);
    return pointer;
}

void* realloc(void* old, size_t size)
{
    const bool on = gAccounting.load(std::memory_order_relaxed);
    const long long before = old && on ? static_cast<long long>(malloc_usable_size(old)) : 0;
    void* pointer = __libc_realloc(old, size);
    if (pointer || size == 0) {
        gInUse.fetch_sub(before);
        account(pointer, true);
    }
    return pointer;
}

void* reallocarray(void* old, size_t count, size_t size)
{
    if (size && count > SIZE_MAX / size) {
        errno = ENOMEM;
        return nullptr;
    }
    return realloc(old, count * size);
}

void free(void* pointer)
{
    account(pointer, false);
    __libc_free(pointer);
}

void* memalign(size_t alignment, size_t size)
{
    void* pointer = __libc_memalign(alignment, size);
    account(pointer, true);
    return pointer;
}

void* aligned_alloc(size_t alignment, size_t size)
{
    return memalign(alignment, size);
}

int posix_memalign(void** out, size_t alignment, size_t size)
{
    if (alignment % sizeof(void*) != 0 || (alignment & (alignment - 1)) != 0)
        return EINVAL;
    void* pointer = memalign(alignment, size);
    if (!pointer)
        return ENOMEM;
    *out = pointer;
    return 0;
}

void* valloc(size_t size)
{
    return memalign(static_cast<size_t>(sysconf(_SC_PAGESIZE)), size);
}

void* pvalloc(size_t size)
{
    const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    return memalign(page, (size + page - 1) / page * page);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*), void* argument)
{
    using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static const Create next = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    if (!next)
        return EAGAIN;
    const std::string creator = creatingLibrary();
    {
        std::lock_guard<std::mutex> lock(gCreatorsMutex);
        if (gCreators)
            ++(*gCreators)[creator];
    }
    auto* start = new (std::nothrow) Start{routine, argument};
    if (!start)
        return EAGAIN;
    const int result = next(thread, attributes, started, start);
    if (result != 0)
        delete start;
    else
        gCreated.fetch_add(1);
    return result;
}

}  // extern "C"

namespace footprint {

void startAccounting()
{
    gAccounting.store(true);
}

long long heapInUse()
{
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<long long>(heap.uordblks + heap.hblkhd);
}

long long accountedNow()
{
    return gInUse.load();
}

void restartPeak()
{
    gPeak.store(gInUse.load());
}

long long accountedPeak()
{
    return gPeak.load();
}

Threads threadsBetween(const Threads& earlier, const Threads& later)
{
    Threads between = later;
    between.created -= earlier.created;
    for (const auto& [library, count] : earlier.creators)
        if ((between.creators[library] -= count) == 0)
            between.creators.erase(library);
    return between;
}

Threads threadsNow()
{
    Threads now;
    now.created = gCreated.load();
    now.alive = gAlive.load();
    now.mostAlive = gMostAlive.load();
    std::lock_guard<std::mutex> lock(gCreatorsMutex);
    if (!gCreators)
        gCreators = new std::map<std::string, int>;
    now.creators = *gCreators;
    return now;
}

}  // namespace footprint
