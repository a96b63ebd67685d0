// The plug-in's exported entry points and process-wide variables.
#ifndef MARL_ENGINE_PLUGIN_H
#define MARL_ENGINE_PLUGIN_H

#include <voice_control_plugin_engine.h>

#define MARL_EXPORT __attribute__((visibility("default")))

// Entries 0..999 of resultList hold matched command ids, entry 1000 their count.
#define RESULT_LIST_SIZE 1000

class MarlEngineWrapper;

extern "C" {

MARL_EXPORT extern MarlEngineWrapper* marlEngineWrapper;
MARL_EXPORT extern vcpd_foreach_command local_foreach_command;
MARL_EXPORT extern vcpd_get_command_count local_get_command_count;
MARL_EXPORT extern vcpd_get_audio_type local_get_audio_type;
MARL_EXPORT extern int local_audio_type;
MARL_EXPORT extern void* local_user_data;
MARL_EXPORT extern int commandCount;
MARL_EXPORT extern int current_count;
MARL_EXPORT extern int resultList[RESULT_LIST_SIZE + 1];

MARL_EXPORT int vcp_get_engine_info(vcpe_engine_info_cb callback, void* user_data);
MARL_EXPORT int vcp_load_engine(vcpd_funcs_s* pdfuncs, vcpe_funcs_s* pefuncs);
MARL_EXPORT void vcp_unload_engine(void);

MARL_EXPORT int MarlEngine_initialize(void);
MARL_EXPORT int MarlEngine_deinitialize(void);
MARL_EXPORT int MarlEngine_get_recording_format(const char* audio_id, vcp_audio_type_e* types, int* rate,
                                                int* channels);
MARL_EXPORT int MarlEngine_foreach_supported_languages(vcpe_supported_language_cb callback, void* user_data);
MARL_EXPORT bool MarlEngine_is_language_supported(const char* language);
MARL_EXPORT int MarlEngine_set_result_cb(vcpe_result_cb callback, void* user_data);
MARL_EXPORT int MarlEngine_set_language(const char* language);
MARL_EXPORT int MarlEngine_set_commands(int command_handle);
MARL_EXPORT int MarlEngine_unset_commands(void);
MARL_EXPORT int MarlEngine_start(bool stop_by_silence);
MARL_EXPORT int MarlEngine_set_recording_data(const void* data, unsigned int length,
                                              vcp_speech_detect_e* speech_detected);
MARL_EXPORT int MarlEngine_stop(void);
MARL_EXPORT int MarlEngine_cancel(void);
MARL_EXPORT int MarlEngine_set_asr_result_cb(vcpe_asr_result_cb callback, void* user_data);
MARL_EXPORT int MarlEngine_set_error_cb(vcpe_error_cb callback, void* user_data);
MARL_EXPORT int MarlEngine_set_domain(const char* domain);
MARL_EXPORT int MarlEngine_get_nlu_base_info(const char* key, char** value);
MARL_EXPORT int MarlEngine_set_private_data(const char* key, const char* data);
MARL_EXPORT int MarlEngine_get_private_data(const char* key, char** data);
MARL_EXPORT int MarlEngine_process_text(const char* text);
MARL_EXPORT int MarlEngine_process_list_event(const char* event);
MARL_EXPORT int MarlEngine_process_haptic_event(const char* event);

// The daemon's command visitor: called once per command of a command handle.
MARL_EXPORT bool vcpd_foreach_command_cb_local(int id, int type, int format, const char* command,
                                               const char* param, int domain, void* user_data);
}

#endif
