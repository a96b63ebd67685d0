// Heap and thread accounting of the footprint program (FootprintAccounting.cpp).
#pragma once

#include <map>
#include <string>

namespace footprint {

// The heap in use as the C library's allocator counts it (mallinfo2: in-use
// chunks and mapped blocks), in the sizes of the running program's target.
long long heapInUse();

// Bytes of the blocks allocated and not yet freed, counted by this program's
// allocation functions, and their peak since restartPeak(). Off (zero) until
// startAccounting(): a run that counts instructions leaves it off.
void startAccounting();
long long accountedNow();
void restartPeak();
long long accountedPeak();

struct Threads {
    int created = 0;    // pthread_create calls that succeeded
    int alive = 0;      // of them, running now
    int mostAlive = 0;  // most running at once, since the start
    std::map<std::string, int> creators;  // the file of each creating call's caller
};
Threads threadsNow();
// What happened from `earlier` to `later`: threads created and their creators.
Threads threadsBetween(const Threads& earlier, const Threads& later);

}  // namespace footprint
