// sound_manager: volumes per sound type, from the "sound_manager" section of
// device.json, keyed by the enum names ("SOUND_TYPE_MEDIA") or by their
// numbers as text ("4").
#include "PlatformSection.h"

#include <sound_manager.h>

#include <string>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"SOUND_MANAGER_ERROR_NONE", SOUND_MANAGER_ERROR_NONE},
                         {"SOUND_MANAGER_ERROR_OUT_OF_MEMORY", SOUND_MANAGER_ERROR_OUT_OF_MEMORY},
                         {"SOUND_MANAGER_ERROR_INVALID_PARAMETER", SOUND_MANAGER_ERROR_INVALID_PARAMETER},
                         {"SOUND_MANAGER_ERROR_INVALID_OPERATION", SOUND_MANAGER_ERROR_INVALID_OPERATION},
                         {"SOUND_MANAGER_ERROR_PERMISSION_DENIED", SOUND_MANAGER_ERROR_PERMISSION_DENIED},
                         {"SOUND_MANAGER_ERROR_NOT_SUPPORTED", SOUND_MANAGER_ERROR_NOT_SUPPORTED},
                         {"SOUND_MANAGER_ERROR_NO_DATA", SOUND_MANAGER_ERROR_NO_DATA},
                         {"SOUND_MANAGER_ERROR_INTERNAL", SOUND_MANAGER_ERROR_INTERNAL},
                         {"SOUND_MANAGER_ERROR_POLICY", SOUND_MANAGER_ERROR_POLICY},
                         {"SOUND_MANAGER_ERROR_NO_PLAYING_SOUND", SOUND_MANAGER_ERROR_NO_PLAYING_SOUND},
                         {"SOUND_MANAGER_ERROR_INVALID_STATE", SOUND_MANAGER_ERROR_INVALID_STATE},
                     }),
                     true);

const char* const kTypeNames[] = {
    "SOUND_TYPE_SYSTEM", "SOUND_TYPE_NOTIFICATION", "SOUND_TYPE_ALARM", "SOUND_TYPE_RINGTONE",
    "SOUND_TYPE_MEDIA",  "SOUND_TYPE_CALL",         "SOUND_TYPE_VOIP",  "SOUND_TYPE_VOICE",
};

// `member` ("volume" or "max_volume") of the sound type's entry. The entry
// itself, or the member, may be {"error": CODE}.
int getLevel(const char* function, sound_type_e type, const char* member, int* level)
{
    const int index = static_cast<int>(type);
    if (!level || index < 0 || index >= static_cast<int>(sizeof(kTypeNames) / sizeof(kTypeNames[0])))
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(function, "sound_manager", SOUND_MANAGER_ERROR_INTERNAL);
    if (!read.ok())
        return read.code();
    const std::string name = kTypeNames[index];
    const Json::Value& entry = read.member(name, std::to_string(index));
    int code = 0;
    if (vapp::errorInPlace(entry, read.where(name), &code))
        return code;
    if (!entry.isObject())
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    return vapp::readValue(entry[member], read.where(name + "." + member), level);
}

}  // namespace

extern "C" {

int sound_manager_get_max_volume(sound_type_e type, int* max)
{
    return getLevel(__func__, type, "max_volume", max);
}

int sound_manager_get_volume(sound_type_e type, int* volume)
{
    return getLevel(__func__, type, "volume", volume);
}

}  // extern "C"
