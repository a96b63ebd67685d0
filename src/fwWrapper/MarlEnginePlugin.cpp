#include "fwWrapper/MarlEnginePlugin.h"

#include "RetrieveImpl/DA/DaDeviceMusicDataRetrieverImpl.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

#include <Ecore.h>
#include <asr-nlu/Tessel.h>
#include <json-glib/json-glib.h>
#include <tzplatform_config.h>

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <string>

MarlEngineWrapper* marlEngineWrapper = nullptr;
vcpd_foreach_command local_foreach_command = nullptr;
vcpd_get_command_count local_get_command_count = nullptr;
vcpd_get_audio_type local_get_audio_type = nullptr;
int local_audio_type;
void* local_user_data = nullptr;
int commandCount = 0;
int current_count = 0;

namespace {

const char* const ENGINE_UUID = "4FAF79CF-FE69-40E0-AE11-69369F6DA743";
const char* const ENGINE_NAME = "Marl Engine";
const char* const ENGINE_SETTING = "libmarlsharedlib.so";

const char* const FALLBACK_COMMANDS[] = {"Bluetooth Off", "Navigate to", "Play Music"};

int __make_dir(const char* path)
{
    if (access(path, F_OK) == 0)
        return 0;
    if (mkdir(path, 0755) != 0) {
        LOGE("[ERROR] Fail to make dir(%s)", path);
        return -1;
    }
    LOGD("[SUCCESS] Make dir(%s)", path);
    return 0;
}

// Copies the engine's resources into the daemon user's shared data folder,
// once per installation.
int copyResources()
{
    const std::string source = tzplatform_mkpath(static_cast<tzplatform_variable>(28),
                                                 "voice/vc/1.0/engine-data/marl/shared/res/en_US");
    const std::string target = tzplatform_mkpath(static_cast<tzplatform_variable>(71),
                                                 ".voice/vc/engine/shared/data/");
    if (access(target.c_str(), F_OK) == 0)
        return 0;

    const char* const levels[] = {".voice/vc/engine", ".voice/vc/engine/shared/",
                                  ".voice/vc/engine/shared/data/"};
    for (const char* level : levels) {
        const std::string path = tzplatform_mkpath(static_cast<tzplatform_variable>(71), level);
        if (__make_dir(path.c_str()) != 0)
            return VCP_ERROR_OPERATION_FAILED;
    }
    LOGD("[SUCCESS] Make data directory");

    char command[1024];
    memset(command, 0, sizeof(command));
    snprintf(command, sizeof(command), "cp -rf %s %s/", source.c_str(), target.c_str());
    if (system(command) != 0)
        LOGE("[ERROR] Fail to copy");
    else
        LOGD("[SUCCESS] copy resource");
    return 0;
}

}  // namespace

// --- loading ---------------------------------------------------------------------

int vcp_get_engine_info(vcpe_engine_info_cb callback, void* user_data)
{
    LOGD("====== START vcp_get_engine_info ======");
    local_user_data = user_data;
    if (!callback)
        return VCP_ERROR_INVALID_PARAMETER;
    callback(ENGINE_UUID, ENGINE_NAME, ENGINE_SETTING, true, user_data);
    return 0;
}

int vcp_load_engine(vcpd_funcs_s* pdfuncs, vcpe_funcs_s* pefuncs)
{
    if (!pdfuncs || !pefuncs) {
        LOGE("A function table is NULL");
        return VCP_ERROR_INVALID_PARAMETER;
    }
    if (copyResources() != 0)
        return VCP_ERROR_OPERATION_FAILED;

    LOGD("====== START vcp_load_engine ======");
    pdfuncs->size = sizeof(vcpd_funcs_s);
    pdfuncs->version = 1;
    local_foreach_command = pdfuncs->foreach_command;
    local_get_command_count = pdfuncs->get_command_count;
    local_get_audio_type = pdfuncs->get_audio_type;

    pefuncs->size = sizeof(vcpe_funcs_s);
    pefuncs->version = 1;
    pefuncs->initialize = MarlEngine_initialize;
    pefuncs->deinitialize = MarlEngine_deinitialize;
    pefuncs->get_recording_format = MarlEngine_get_recording_format;
    pefuncs->foreach_langs = MarlEngine_foreach_supported_languages;
    pefuncs->is_lang_supported = MarlEngine_is_language_supported;
    pefuncs->set_result_cb = MarlEngine_set_result_cb;
    pefuncs->set_language = MarlEngine_set_language;
    pefuncs->set_commands = MarlEngine_set_commands;
    pefuncs->unset_commands = MarlEngine_unset_commands;
    pefuncs->start = MarlEngine_start;
    pefuncs->set_recording = MarlEngine_set_recording_data;
    pefuncs->stop = MarlEngine_stop;
    pefuncs->cancel = MarlEngine_cancel;
    pefuncs->set_asr_result_cb = MarlEngine_set_asr_result_cb;
    pefuncs->set_error_cb = MarlEngine_set_error_cb;
    pefuncs->set_domain = MarlEngine_set_domain;
    pefuncs->get_nlu_base_info = MarlEngine_get_nlu_base_info;
    pefuncs->set_private_data = MarlEngine_set_private_data;
    pefuncs->get_private_data = MarlEngine_get_private_data;
    pefuncs->process_text = MarlEngine_process_text;
    pefuncs->process_list_event = MarlEngine_process_list_event;
    pefuncs->process_haptic_event = MarlEngine_process_haptic_event;
    LOGD("====== END vcp_load_engine ======");
    return 0;
}

void vcp_unload_engine(void)
{
    // The wrapper is freed by MarlEngine_deinitialize.
    LOGD("====== vcp_unload_engine ======");
}

// --- engine life ---------------------------------------------------------------------

int MarlEngine_initialize(void)
{
    if (marlEngineWrapper) {
        LOGE("marlEngineWrapper is not NULL");
        return VCP_ERROR_INVALID_STATE;
    }
    marlEngineWrapper = new MarlEngineWrapper();
    const int ret = marlEngineWrapper->configureMarlEngine();
    if (ret != 0)
        return ret;
    marlEngineWrapper->setLanguage(marlEngineWrapper->toOrvaneLocale("en_US"));
    return 0;
}

int MarlEngine_deinitialize(void)
{
    if (!marlEngineWrapper) {
        LOGE("marlEngineWrapper is NULL");
        return 0;
    }
    delete marlEngineWrapper;
    marlEngineWrapper = nullptr;
    return 0;
}

int MarlEngine_get_recording_format(const char* /*audio_id*/, vcp_audio_type_e* types, int* rate, int* channels)
{
    if (!types || !rate || !channels)
        return VCP_ERROR_INVALID_PARAMETER;
    *types = VCP_AUDIO_TYPE_PCM_S16_LE;
    *rate = 16000;
    *channels = 1;
    return 0;
}

int MarlEngine_foreach_supported_languages(vcpe_supported_language_cb callback, void* user_data)
{
    if (!callback)
        return VCP_ERROR_INVALID_PARAMETER;
    if (!marlEngineWrapper) {
        LOGE("marlEngineWrapper is NULL");
        return VCP_ERROR_INVALID_STATE;
    }
    for (const auto& entry : marlEngineWrapper->localeList)
        callback(entry.first.c_str(), user_data);
    return 0;
}

bool MarlEngine_is_language_supported(const char* language)
{
    if (!marlEngineWrapper)
        return true;
    return marlEngineWrapper->isSupported(language);
}

int MarlEngine_set_language(const char* language)
{
    if (!marlEngineWrapper)
        return VCP_ERROR_INVALID_STATE;
    if (!marlEngineWrapper->isSupported(language))
        return VCP_ERROR_INVALID_LANGUAGE;
    marlEngineWrapper->setLanguage(language);
    return 0;
}

int MarlEngine_set_result_cb(vcpe_result_cb callback, void* user_data)
{
    if (!marlEngineWrapper)
        return VCP_ERROR_INVALID_STATE;
    marlEngineWrapper->resultCallback = callback;
    marlEngineWrapper->userData = user_data;
    return 0;
}

int MarlEngine_set_asr_result_cb(vcpe_asr_result_cb callback, void* user_data)
{
    if (!marlEngineWrapper)
        return VCP_ERROR_INVALID_STATE;
    marlEngineWrapper->asrResultCallback = callback;
    marlEngineWrapper->userData = user_data;
    return 0;
}

int MarlEngine_set_error_cb(vcpe_error_cb callback, void* user_data)
{
    if (!marlEngineWrapper)
        return VCP_ERROR_INVALID_STATE;
    marlEngineWrapper->errorCallback = callback;
    marlEngineWrapper->userData = user_data;
    return 0;
}

int MarlEngine_set_domain(const char* domain)
{
    if (!marlEngineWrapper) {
        LOGE("marlEngineWrapper is NULL");
        return VCP_ERROR_INVALID_STATE;
    }
    marlEngineWrapper->setDeviceProfile(domain ? domain : "");
    return 0;
}

// The text and event entry points are inert in this engine.
int MarlEngine_get_nlu_base_info(const char* /*key*/, char** /*value*/)
{
    LOGD("====== Get nlu base info ======");
    return 0;
}

int MarlEngine_get_private_data(const char* /*key*/, char** /*data*/)
{
    LOGD("====== Get private data ======");
    return 0;
}

int MarlEngine_process_text(const char* /*text*/)
{
    LOGD("====== Process text ======");
    return 0;
}

int MarlEngine_process_list_event(const char* /*event*/)
{
    LOGD("====== Process list event ======");
    return 0;
}

int MarlEngine_process_haptic_event(const char* /*event*/)
{
    LOGD("====== Process haptic event ======");
    return 0;
}

int MarlEngine_unset_commands(void)
{
    return 0;
}

// --- recognition ------------------------------------------------------------------------

int MarlEngine_start(bool /*stop_by_silence*/)
{
    if (!marlEngineWrapper) {
        LOGE("====== Wrapper is not set ======");
        return VCP_ERROR_INVALID_STATE;
    }
    if (!marlEngineWrapper->pRecogMgr) {
        LOGE("====== recognition manager is not set ======");
        return VCP_ERROR_INVALID_STATE;
    }
    marlEngineWrapper->speechDetectState = 0;
    marlEngineWrapper->embeddedResults.asrResult.clear();
    marlEngineWrapper->embeddedResults.nluResult.clear();
    marlEngineWrapper->cloudResults.asrResult.clear();
    marlEngineWrapper->cloudResults.nluResult.clear();

    const int context = marlEngineWrapper->getCurrentVoiceContext();
    LOGD("Current Context[%d]", context);
    const bool keepContext = context == VOICE_CONTEXT_KEEP || context == VOICE_CONTEXT_FOLLOW_UP;
    if (!marlEngineWrapper->startRecognition(false, keepContext, static_cast<recogtype>(2),
                                             static_cast<devicemode>(0)))
        LOGE("Failed to start recognition");
    return 0;
}

int MarlEngine_set_recording_data(const void* data, unsigned int length, vcp_speech_detect_e* speech_detected)
{
    if (!marlEngineWrapper)
        return VCP_ERROR_INVALID_STATE;
    // The daemon counts bytes, the speech library 16-bit samples.
    short* samples = static_cast<short*>(const_cast<void*>(data));
    if (!marlEngineWrapper->processAudio(samples, static_cast<int>(length / 2), false))
        LOGE("Audio Processing failed");
    if (speech_detected)
        *speech_detected = static_cast<vcp_speech_detect_e>(marlEngineWrapper->speechDetectState);
    marlEngineWrapper->speechDetectState = 0;
    return 0;
}

int MarlEngine_stop(void)
{
    if (!marlEngineWrapper)
        return VCP_ERROR_INVALID_STATE;
    return marlEngineWrapper->stopRecognition() ? 0 : VCP_ERROR_INVALID_STATE;
}

int MarlEngine_cancel(void)
{
    if (!marlEngineWrapper)
        return VCP_ERROR_INVALID_STATE;
    return marlEngineWrapper->cancelRecognition() ? 0 : VCP_ERROR_INVALID_STATE;
}

// --- commands and private data --------------------------------------------------------------

bool vcpd_foreach_command_cb_local(int id, int type, int format, const char* command, const char* /*param*/,
                                   int /*domain*/, void* /*user_data*/)
{
    LOGD("====== vcpd_foreach_command_cb_local ======");
    LOGD("current_count[%d], commandCount[%d]", current_count, commandCount);
    LOGD("type (%d) format(%d)", type, format);
    if (current_count >= commandCount) {
        LOGD("vcpd_foreach_command_cb_local completed all commands in list");
        current_count = 0;
        commandCount = 0;
        return false;
    }
    srand(static_cast<unsigned int>(time(0)));
    if (!marlEngineWrapper->commandArray) {
        LOGD("vcpd_foreach_command_cb_local instantiate array");
        marlEngineWrapper->commandArray = json_array_new();
    }
    current_count++;
    LOGD("current_count[%d]", current_count);

    JsonObject* element = json_object_new();
    JsonObject* meta = json_object_new();
    const std::string idText = std::to_string(id);

    json_object_set_int_member(meta, "format", format);
    if (!command || command[0] == '\0') {
        json_object_set_string_member(meta, "command", FALLBACK_COMMANDS[rand() % 3]);
    } else {
        LOGD("commandText[%s], length of commandText[%d]", command, static_cast<int>(strlen(command)));
        json_object_set_string_member(meta, "command", command);
    }
    json_object_set_string_member(meta, "domain", "Domain String");

    json_object_set_string_member(element, "version", "0.01");
    json_object_set_string_member(element, "_id", idText.c_str());
    json_object_set_string_member(element, "type", "VoiceControl");
    json_object_set_string_member(element, "doc_number", idText.c_str());
    json_object_set_string_member(element, "device", "QuoinA");
    json_object_set_object_member(element, "meta_data", meta);

    json_array_add_object_element(marlEngineWrapper->commandArray, element);
    return true;
}

int MarlEngine_set_commands(int command_handle)
{
    LOGD("====== MarlEngine_set_commands ======");
    if (!marlEngineWrapper) {
        LOGE("====== MarlEngine_set_commands marlEngineWrapper is NULL======");
        return VCP_ERROR_INVALID_STATE;
    }
    commandCount = local_get_command_count ? local_get_command_count(command_handle) : 0;
    LOGD("MarlEngine_set_commands commandCount=%d", commandCount);

    LOGD("MarlEngine_set_commands... set array = NULL");
    if (marlEngineWrapper->commandArray) {
        json_array_unref(marlEngineWrapper->commandArray);
        marlEngineWrapper->commandArray = nullptr;
    }
    current_count = 0;
    if (local_foreach_command)
        local_foreach_command(command_handle, vcpd_foreach_command_cb_local, local_user_data);
    LOGD("MarlEngine_set_commands after local_foreach_command");

    if (!marlEngineWrapper->commandArray) {
        LOGE("MarlEngine_set_commands some issue with JSON composition");
        return VCP_ERROR_OPERATION_FAILED;
    }
    LOGD("MarlEngine_set_commands json array is ready...");

    JsonObject* document = json_object_new();
    json_object_set_array_member(document, "docs", marlEngineWrapper->commandArray);
    json_array_ref(marlEngineWrapper->commandArray);

    JsonNode* node = json_node_new(JSON_NODE_OBJECT);
    json_node_set_object(node, document);
    JsonGenerator* generator = json_generator_new();
    json_generator_set_root(generator, node);
    gchar* text = json_generator_to_data(generator, nullptr);

    LOGD("====== MarlEngine_set_commands Tessel::setCommandList ======");
    Tessel* tessel = Tessel::getInstance();
    if (tessel)
        tessel->setCommandList(text ? text : "");
    else
        LOGE("Tessel is not initialized");

    g_free(text);
    json_object_unref(document);
    json_node_free(node);
    g_object_unref(generator);

    if (!marlEngineWrapper->pTessel) {
        LOGE("====== MarlEngine_set_commands Tessel::setCommandList marlEngineWrapper->pTessel is NULL ======");
        return VCP_ERROR_INVALID_STATE;
    }
    LOGD("====== MarlEngine_set_commands Tessel::setCommandList marlEngineWrapper->pTessel->syncUserData() ======");
    marlEngineWrapper->pTessel->syncUserData();
    LOGD("====== MarlEngine_set_commands END ======");
    return 0;
}

int MarlEngine_set_private_data(const char* key, const char* data)
{
    LOGD("====== Set private data ======");
    if (key && strcmp(key, "Request") == 0 && data) {
        if (strcmp(data, "resetSession") == 0) {
            LOGD("Reset session");
            if (marlEngineWrapper)
                marlEngineWrapper->setCurrentVoiceContext(VOICE_CONTEXT_NONE);
        } else if (strcmp(data, "reloadEngine") == 0) {
            LOGD("Reload engine");
            ecore_main_loop_quit();
        }
    }
    if (key && strcmp(key, "MediaVolume") == 0 && data && marlEngineWrapper) {
        // Only the appliance's music retriever keeps a media volume level.
        DaDeviceMusicDataRetrieverImpl* music = dynamic_cast<DaDeviceMusicDataRetrieverImpl*>(
            marlEngineWrapper->getDeviceDataRetrieveManager()->getMusicRetriever());
        if (music)
            music->setVolumeLevel(atoi(data));
    }
    return 0;
}
