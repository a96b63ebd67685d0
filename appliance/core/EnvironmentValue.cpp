#include "vappliance/EnvironmentValue.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace vapp {

const unsigned long* const EnvironmentValue::sChanges =
    static_cast<const unsigned long*>(::dlsym(RTLD_DEFAULT, "vappliance_environment_changes"));

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

const char* EnvironmentValue::find()
{
    char** env = environ;
    const unsigned long changes = sChanges ? __atomic_load_n(sChanges, __ATOMIC_ACQUIRE) : 0;
    if (!sChanges && env && env == mArray && sameLength(env)) {
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
