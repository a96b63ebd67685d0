// One environment variable, read as getenv() reads it but without walking the
// whole environment each time: the place where the variable was found is
// remembered, and while `environ` is the same array and that place still
// holds the variable, its value is read from there. setenv() and putenv() put
// a new string into the place or a new array into `environ`, and unsetenv()
// moves the later places down; either way the place no longer matches and the
// environment is walked again. A variable that is not set is looked for again
// when the environment's length or last entry has changed (setenv() and
// putenv() add a variable at the end). The virtual appliance reads its settings from
// the environment at every log line and every device path, and getenv()
// compares the name of every variable before the one it looks for.
//
// Not thread-safe, as getenv() with setenv() is not: keep one per thread
// (thread_local) or under a lock. Constant-initialized, so that a
// thread_local one costs no construction.
#pragma once

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
    const char* get();

private:
    bool holdsTheVariable(const char* entry) const;

    const char* mName;
    size_t mNameLength;
    char** mArray = nullptr;  // the environment last walked; null: walk again
    bool mFound = false;
    size_t mPlace = 0;        // found: its index; not found: the environment's length
    const char* mLast = nullptr;  // not found: the environment's last entry
};

}  // namespace vapp
