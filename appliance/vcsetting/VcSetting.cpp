// vc_setting: the voice-control language, from the "vc_setting" section of
// device.json.
#include "PlatformSection.h"

#include <voice_control_setting.h>

#include <cstdlib>
#include <cstring>
#include <mutex>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"VC_ERROR_NONE", VC_ERROR_NONE},
                         {"VC_ERROR_OUT_OF_MEMORY", VC_ERROR_OUT_OF_MEMORY},
                         {"VC_ERROR_IO_ERROR", VC_ERROR_IO_ERROR},
                         {"VC_ERROR_INVALID_PARAMETER", VC_ERROR_INVALID_PARAMETER},
                         {"VC_ERROR_TIMED_OUT", VC_ERROR_TIMED_OUT},
                         {"VC_ERROR_RECORDER_BUSY", VC_ERROR_RECORDER_BUSY},
                         {"VC_ERROR_PERMISSION_DENIED", VC_ERROR_PERMISSION_DENIED},
                         {"VC_ERROR_NOT_SUPPORTED", VC_ERROR_NOT_SUPPORTED},
                         {"VC_ERROR_INVALID_STATE", VC_ERROR_INVALID_STATE},
                         {"VC_ERROR_INVALID_LANGUAGE", VC_ERROR_INVALID_LANGUAGE},
                         {"VC_ERROR_ENGINE_NOT_FOUND", VC_ERROR_ENGINE_NOT_FOUND},
                         {"VC_ERROR_OPERATION_FAILED", VC_ERROR_OPERATION_FAILED},
                         {"VC_ERROR_OPERATION_REJECTED", VC_ERROR_OPERATION_REJECTED},
                         {"VC_ERROR_SERVICE_RESET", VC_ERROR_SERVICE_RESET},
                     }),
                     true);

std::mutex gMutex;
bool gReady = false;  // per process, as the platform's library is

}  // namespace

extern "C" {

// A second initialize succeeds without doing anything, as on the platform.
int vc_setting_initialize(void)
{
    std::lock_guard<std::mutex> lock(gMutex);
    if (gReady)
        return VC_ERROR_NONE;
    vapp::PlatformRead read(__func__, "vc_setting", VC_ERROR_OPERATION_FAILED);
    if (!read.ok())
        return read.code();
    gReady = true;
    return VC_ERROR_NONE;
}

int vc_setting_deinitialize(void)
{
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    std::lock_guard<std::mutex> lock(gMutex);
    gReady = false;
    return VC_ERROR_NONE;
}

// Without "vc_setting.language" the language cannot be read:
// VC_ERROR_OPERATION_FAILED.
int vc_setting_get_language(char** language)
{
    {
        std::lock_guard<std::mutex> lock(gMutex);
        if (!gReady)
            return VC_ERROR_INVALID_STATE;
    }
    if (!language)
        return VC_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(__func__, "vc_setting", VC_ERROR_OPERATION_FAILED);
    if (!read.ok())
        return read.code();
    const Json::Value& value = read.member("language");
    int code = 0;
    if (vapp::errorInPlace(value, read.where("language"), &code))
        return code;
    if (value.isNull())
        return VC_ERROR_OPERATION_FAILED;
    if (!value.isString()) {
        vapp::platformWarning("device.json: vc_setting.language must be text");
        return VC_ERROR_OPERATION_FAILED;
    }
    char* copy = ::strdup(value.asCString());
    if (!copy)
        return VC_ERROR_OUT_OF_MEMORY;
    *language = copy;
    return VC_ERROR_NONE;
}

}  // extern "C"
