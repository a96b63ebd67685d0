// system_info: the platform's features, from the "system_info" section of
// device.json, keyed by the feature names ("tizen.org/feature/screen.width").
#include "PlatformSection.h"

#include <system_info.h>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"SYSTEM_INFO_ERROR_NONE", SYSTEM_INFO_ERROR_NONE},
                         {"SYSTEM_INFO_ERROR_INVALID_PARAMETER", SYSTEM_INFO_ERROR_INVALID_PARAMETER},
                         {"SYSTEM_INFO_ERROR_OUT_OF_MEMORY", SYSTEM_INFO_ERROR_OUT_OF_MEMORY},
                         {"SYSTEM_INFO_ERROR_IO_ERROR", SYSTEM_INFO_ERROR_IO_ERROR},
                         {"SYSTEM_INFO_ERROR_PERMISSION_DENIED", SYSTEM_INFO_ERROR_PERMISSION_DENIED},
                         {"SYSTEM_INFO_ERROR_NOT_SUPPORTED", SYSTEM_INFO_ERROR_NOT_SUPPORTED},
                     }),
                     true);

template <class T>
int getPlatform(const char* function, const char* key, T* value)
{
    if (!key || !*key || !value)
        return SYSTEM_INFO_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(function, "system_info", SYSTEM_INFO_ERROR_IO_ERROR);
    if (!read.ok())
        return read.code();
    return vapp::readValue(read.member(key), read.where(key), value);
}

}  // namespace

extern "C" {

int system_info_get_platform_bool(const char* key, bool* value)
{
    return getPlatform(__func__, key, value);
}

int system_info_get_platform_int(const char* key, int* value)
{
    return getPlatform(__func__, key, value);
}

int system_info_get_platform_double(const char* key, double* value)
{
    return getPlatform(__func__, key, value);
}

int system_info_get_platform_string(const char* key, char** value)
{
    return getPlatform(__func__, key, value);
}

}  // extern "C"
