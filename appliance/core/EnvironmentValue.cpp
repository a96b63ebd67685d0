#include "vappliance/EnvironmentValue.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace vapp {

namespace {

// The file-system map's count of environment changes; null without the map.
const unsigned long* environmentChanges()
{
    static const unsigned long* const counter =
        static_cast<const unsigned long*>(::dlsym(RTLD_DEFAULT, "vappliance_environment_changes"));
    return counter;
}

}  // namespace

bool EnvironmentValue::holdsTheVariable(const char* entry) const
{
    return std::strncmp(entry, mName, mNameLength) == 0 && entry[mNameLength] == '=';
}

// Whether `env` still ends where it ended: std::find stops at the first null,
// so no place beyond a shorter array's end is read.
bool EnvironmentValue::sameLength(char** env) const
{
    return std::find(env, env + mLength + 1, nullptr) == env + mLength;
}

const char* EnvironmentValue::get()
{
    char** env = environ;
    const unsigned long* counter = environmentChanges();
    const unsigned long changes = counter ? __atomic_load_n(counter, __ATOMIC_ACQUIRE) : 0;
    if (counter && env && env == mArray && changes == mChanges) {
        // Nothing changed the environment through libc since the last walk;
        // the value is read again (a string given to putenv may change in place).
        return mFound ? env[mPlace] + mNameLength + 1 : nullptr;
    } else if (env && env == mArray && sameLength(env)) {
        if (mFound && holdsTheVariable(env[mPlace]))
            return env[mPlace] + mNameLength + 1;
        if (!mFound && (mLength == 0 || env[mLength - 1] == mLast))
            return nullptr;
    }
    mArray = env;
    mChanges = changes;
    if (!env)
        return nullptr;
    const char* value = nullptr;
    mFound = false;
    size_t i = 0;
    for (; env[i]; ++i) {
        if (!mFound && holdsTheVariable(env[i])) {
            mFound = true;
            mPlace = i;
            value = env[i] + mNameLength + 1;
        }
    }
    mLength = i;
    mLast = i ? env[i - 1] : nullptr;
    return value;
}

}  // namespace vapp
