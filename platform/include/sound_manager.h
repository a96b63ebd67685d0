/* Sound manager: volumes per sound type. */
#ifndef __TIZEN_MEDIA_SOUND_MANAGER_H__
#define __TIZEN_MEDIA_SOUND_MANAGER_H__

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    SOUND_MANAGER_ERROR_NONE = TIZEN_ERROR_NONE,
    SOUND_MANAGER_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    SOUND_MANAGER_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    SOUND_MANAGER_ERROR_INVALID_OPERATION = TIZEN_ERROR_INVALID_OPERATION,
    SOUND_MANAGER_ERROR_PERMISSION_DENIED = TIZEN_ERROR_PERMISSION_DENIED,
    SOUND_MANAGER_ERROR_NOT_SUPPORTED = TIZEN_ERROR_NOT_SUPPORTED,
    SOUND_MANAGER_ERROR_NO_DATA = TIZEN_ERROR_NO_DATA,
    SOUND_MANAGER_ERROR_INTERNAL = TIZEN_ERROR_SOUND_MANAGER | 01,
    SOUND_MANAGER_ERROR_POLICY = TIZEN_ERROR_SOUND_MANAGER | 02,
    SOUND_MANAGER_ERROR_NO_PLAYING_SOUND = TIZEN_ERROR_SOUND_MANAGER | 03,
    SOUND_MANAGER_ERROR_INVALID_STATE = TIZEN_ERROR_SOUND_MANAGER | 04
} sound_manager_error_e;

typedef enum {
    SOUND_TYPE_SYSTEM,       /* 0 */
    SOUND_TYPE_NOTIFICATION, /* 1 */
    SOUND_TYPE_ALARM,        /* 2 */
    SOUND_TYPE_RINGTONE,     /* 3 */
    SOUND_TYPE_MEDIA,        /* 4 */
    SOUND_TYPE_CALL,         /* 5 */
    SOUND_TYPE_VOIP,         /* 6 */
    SOUND_TYPE_VOICE         /* 7 */
} sound_type_e;

/* The highest volume level of a sound type. */
int sound_manager_get_max_volume(sound_type_e type, int *max);
/* The current volume level of a sound type, 0 to the maximum. */
int sound_manager_get_volume(sound_type_e type, int *volume);

#ifdef __cplusplus
}
#endif

#endif
