// One environment variable, read as getenv() reads it but without comparing
// the name of every variable each time. The virtual appliance reads its
// settings from the environment at every log line.
//
// The place where the variable was found is remembered. In a process with
// the file-system map preloaded, which counts the environment's changes
// (setenv, unsetenv, putenv, clearenv), that place is read again directly
// while no change was counted and `environ` is the same array. Otherwise the
// environment's length and last entry are remembered too: while `environ` is
// the same array of the same length and the place still holds the variable,
// its value is read from there, and a variable that was not set stays unset
// while the last entry is the same. setenv() and putenv() put a new string
// into a place or a new variable at the end, unsetenv() moves the later places
// down and shortens the array, and a new array replaces the pointer, so each
// of them sends the next read through the whole environment again.
//
// Not thread-safe, as getenv() with setenv() is not: keep one per thread
// (thread_local) or under a lock. Constant-initialized, so that a
// thread_local one costs no construction.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <string>

namespace vapp {

class EnvironmentValue {
public:
    constexpr explicit EnvironmentValue(const char* name)
        : mName(name), mNameLength(std::char_traits<char>::length(name))
    {
    }

    // getenv(name): the value, or null when the variable is not set.
    const char* get()
    {
        // Nothing changed the environment through libc since the last walk;
        // the value is read again (a string given to putenv may change in place).
        if (mArray && mArray == environ && sChanges && __atomic_load_n(sChanges, __ATOMIC_ACQUIRE) == mChanges)
            return mFound ? mArray[mPlace] + mNameLength + 1 : nullptr;
        return find();
    }

private:
    // The file-system map's count of environment changes; null without the map.
    static const unsigned long* const sChanges;

    const char* find();
    bool holdsTheVariable(const char* entry) const;
    bool sameLength(char** env) const;

    const char* mName;
    size_t mNameLength;
    char** mArray = nullptr;  // the environment last walked; null: walk again
    unsigned long mChanges = 0;  // the map's count of changes then
    size_t mLength = 0;       // its number of variables then
    bool mFound = false;
    size_t mPlace = 0;            // found: its index
    const char* mLast = nullptr;  // not found: the environment's last entry
};

}  // namespace vapp
