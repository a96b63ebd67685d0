/* The voice-control daemon's interface to an engine plug-in. The daemon opens
 * the plug-in, asks vcp_get_engine_info for its identity, hands it the daemon's
 * table through vcp_load_engine and receives the engine's table in return. */
#ifndef __VOICE_CONTROL_PLUGIN_ENGINE_H__
#define __VOICE_CONTROL_PLUGIN_ENGINE_H__

#include <stdbool.h>
#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    VCP_ERROR_NONE = TIZEN_ERROR_NONE,
    VCP_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    VCP_ERROR_IO_ERROR = TIZEN_ERROR_IO_ERROR,
    VCP_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,           /* -22 */
    VCP_ERROR_OUT_OF_NETWORK = -0x100030,
    VCP_ERROR_INVALID_STATE = -0x100031,                                   /* -1048625 */
    VCP_ERROR_INVALID_LANGUAGE = -0x100032,                                /* -1048626 */
    VCP_ERROR_OPERATION_FAILED = -0x100034,                                /* -1048628 */
    VCP_ERROR_NOT_SUPPORTED_FEATURE = -0x100035,
} vcp_error_e;

typedef enum {
    VCP_AUDIO_TYPE_PCM_S16_LE = 0,
    VCP_AUDIO_TYPE_PCM_U8,
} vcp_audio_type_e;

typedef enum {
    VCP_RESULT_EVENT_SUCCESS = 0,
    VCP_RESULT_EVENT_REJECTED = 1,
    VCP_RESULT_EVENT_ERROR = 2,
} vcp_result_event_e;

typedef enum {
    VCP_ASR_RESULT_EVENT_FINAL_RESULT = 0,
    VCP_ASR_RESULT_EVENT_PARTIAL_RESULT = 1,
    VCP_ASR_RESULT_EVENT_ERROR = 2,
} vcp_asr_result_event_e;

typedef enum {
    VCP_SPEECH_DETECT_NONE = 0,
    VCP_SPEECH_DETECT_BEGIN = 1,
    VCP_SPEECH_DETECT_END = 2,
} vcp_speech_detect_e;

/* Engine callbacks, called by the engine to report to the daemon. */
typedef void (*vcpe_result_cb)(vcp_result_event_e event, int* result_id, int count,
                               const char* all_result, const char* non_fixed_result,
                               const char* nlu_result, const char* msg, void* user_data);
typedef void (*vcpe_asr_result_cb)(vcp_asr_result_event_e event, const char* asr_result,
                                   void* user_data);
typedef void (*vcpe_error_cb)(vcp_error_e error, const char* msg, void* user_data);
typedef bool (*vcpe_supported_language_cb)(const char* language, void* user_data);

/* Engine operations, in the order of the engine's table. */
typedef int (*vcpe_initialize)(void);
typedef int (*vcpe_deinitialize)(void);
typedef int (*vcpe_get_recording_format)(const char* audio_id, vcp_audio_type_e* types, int* rate,
                                         int* channels);
typedef int (*vcpe_foreach_supported_languages)(vcpe_supported_language_cb callback,
                                                void* user_data);
typedef bool (*vcpe_is_language_supported)(const char* language);
typedef int (*vcpe_set_result_cb)(vcpe_result_cb callback, void* user_data);
typedef int (*vcpe_set_language)(const char* language);
typedef int (*vcpe_set_commands)(int command_handle);
typedef int (*vcpe_unset_commands)(void);
typedef int (*vcpe_start)(bool stop_by_silence);
typedef int (*vcpe_set_recording_data)(const void* data, unsigned int length,
                                       vcp_speech_detect_e* speech_detected);
typedef int (*vcpe_stop)(void);
typedef int (*vcpe_cancel)(void);
typedef int (*vcpe_set_asr_result_cb)(vcpe_asr_result_cb callback, void* user_data);
typedef int (*vcpe_set_error_cb)(vcpe_error_cb callback, void* user_data);
typedef int (*vcpe_set_domain)(const char* domain);
typedef int (*vcpe_get_nlu_base_info)(const char* key, char** value);
typedef int (*vcpe_set_private_data)(const char* key, const char* data);
typedef int (*vcpe_get_private_data)(const char* key, char** data);
typedef int (*vcpe_process_text)(const char* text);
typedef int (*vcpe_process_list_event)(const char* event);
typedef int (*vcpe_process_haptic_event)(const char* event);

/* The engine's table: 24 words on the appliance's 32-bit target (96 bytes). */
typedef struct {
    int size;
    int version;
    vcpe_initialize initialize;
    vcpe_deinitialize deinitialize;
    vcpe_get_recording_format get_recording_format;
    vcpe_foreach_supported_languages foreach_langs;
    vcpe_is_language_supported is_lang_supported;
    vcpe_set_result_cb set_result_cb;
    vcpe_set_language set_language;
    vcpe_set_commands set_commands;
    vcpe_unset_commands unset_commands;
    vcpe_start start;
    vcpe_set_recording_data set_recording;
    vcpe_stop stop;
    vcpe_cancel cancel;
    vcpe_set_asr_result_cb set_asr_result_cb;
    vcpe_set_error_cb set_error_cb;
    vcpe_set_domain set_domain;
    vcpe_get_nlu_base_info get_nlu_base_info;
    vcpe_set_private_data set_private_data;
    vcpe_get_private_data get_private_data;
    vcpe_process_text process_text;
    vcpe_process_list_event process_list_event;
    vcpe_process_haptic_event process_haptic_event;
} vcpe_funcs_s;

/* Daemon callbacks: walk the commands of a command handle. */
typedef bool (*vcpd_foreach_command_cb)(int id, int type, int format, const char* command,
                                        const char* param, int domain, void* user_data);
typedef int (*vcpd_foreach_command)(int command_handle, vcpd_foreach_command_cb callback,
                                    void* user_data);
typedef int (*vcpd_get_command_count)(int command_handle);
typedef int (*vcpd_get_audio_type)(char** audio_type);

/* The daemon's table: 5 words on the appliance's 32-bit target (20 bytes). */
typedef struct {
    int size;
    int version;
    vcpd_foreach_command foreach_command;
    vcpd_get_command_count get_command_count;
    vcpd_get_audio_type get_audio_type;
} vcpd_funcs_s;

typedef void (*vcpe_engine_info_cb)(const char* engine_uuid, const char* engine_name,
                                    const char* engine_setting, bool use_network,
                                    void* user_data);

/* Exported by the plug-in. */
int vcp_get_engine_info(vcpe_engine_info_cb callback, void* user_data);
int vcp_load_engine(vcpd_funcs_s* pdfuncs, vcpe_funcs_s* pefuncs);
void vcp_unload_engine(void);

#ifdef __cplusplus
}
#endif

#endif
