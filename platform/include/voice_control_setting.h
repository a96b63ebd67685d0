/* Voice-control settings: the voice language of the device. */
#ifndef __VOICE_CONTROL_SETTING_H__
#define __VOICE_CONTROL_SETTING_H__

#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The voice-control error codes. The platform declares them in its common
 * voice-control header, which this appliance does not have; they move there
 * when it comes. */
typedef enum {
    VC_ERROR_NONE = TIZEN_ERROR_NONE,
    VC_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    VC_ERROR_IO_ERROR = TIZEN_ERROR_IO_ERROR,
    VC_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    VC_ERROR_TIMED_OUT = TIZEN_ERROR_TIMED_OUT,
    VC_ERROR_RECORDER_BUSY = TIZEN_ERROR_RESOURCE_BUSY,
    VC_ERROR_PERMISSION_DENIED = TIZEN_ERROR_PERMISSION_DENIED,
    VC_ERROR_NOT_SUPPORTED = TIZEN_ERROR_NOT_SUPPORTED,
    VC_ERROR_INVALID_STATE = TIZEN_ERROR_VOICE_CONTROL | 0x011,
    VC_ERROR_INVALID_LANGUAGE = TIZEN_ERROR_VOICE_CONTROL | 0x012,
    VC_ERROR_ENGINE_NOT_FOUND = TIZEN_ERROR_VOICE_CONTROL | 0x013,
    VC_ERROR_OPERATION_FAILED = TIZEN_ERROR_VOICE_CONTROL | 0x014,
    VC_ERROR_OPERATION_REJECTED = TIZEN_ERROR_VOICE_CONTROL | 0x015,
    VC_ERROR_ITERATION_END = TIZEN_ERROR_VOICE_CONTROL | 0x016,
    VC_ERROR_EMPTY = TIZEN_ERROR_VOICE_CONTROL | 0x017,
    VC_ERROR_SERVICE_RESET = TIZEN_ERROR_VOICE_CONTROL | 0x018,
    VC_ERROR_IN_PROGRESS_TO_READY = TIZEN_ERROR_VOICE_CONTROL | 0x019,
    VC_ERROR_IN_PROGRESS_TO_RECORDING = TIZEN_ERROR_VOICE_CONTROL | 0x020,
    VC_ERROR_IN_PROGRESS_TO_PROCESSING = TIZEN_ERROR_VOICE_CONTROL | 0x021
} vc_error_e;

int vc_setting_initialize(void);
int vc_setting_deinitialize(void);
/* The voice language, such as "en_US". The caller frees *language. */
int vc_setting_get_language(char **language);

#ifdef __cplusplus
}
#endif

#endif
