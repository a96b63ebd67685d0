#include "vappliance/EnvironmentValue.h"

#include <unistd.h>

#include <cstring>

namespace vapp {

bool EnvironmentValue::holdsTheVariable(const char* entry) const
{
    return std::strncmp(entry, mName, mNameLength) == 0 && entry[mNameLength] == '=';
}

const char* EnvironmentValue::get()
{
    char** env = environ;
    if (env && env == mArray) {
        size_t i = 0;
        if (mFound) {
            // The place is still inside the array: none before it ends the environment.
            while (i < mPlace && env[i])
                ++i;
            if (i == mPlace && env[i] && holdsTheVariable(env[i]))
                return env[i] + mNameLength + 1;
        } else {
            while (env[i])
                ++i;
            if (i == mPlace && (i == 0 || env[i - 1] == mLast))
                return nullptr;
        }
    }
    mArray = env;
    if (!env)
        return nullptr;
    size_t i = 0;
    for (; env[i]; ++i) {
        if (holdsTheVariable(env[i])) {
            mFound = true;
            mPlace = i;
            return env[i] + mNameLength + 1;
        }
    }
    mFound = false;
    mPlace = i;
    mLast = i ? env[i - 1] : nullptr;
    return nullptr;
}

}  // namespace vapp
