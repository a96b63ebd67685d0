// Loading the plug-in as the daemon does: its tables and the speech
// stand-in's control functions.
#include "SessionImpl.h"

#include <dlfcn.h>

#include <cstddef>
#include <cstdlib>

namespace sim
{
namespace session
{

bool keepPluginMapped()
{
    const char* keep = std::getenv("MARL_SIM_KEEP_PLUGIN_MAPPED");
    return keep && std::string(keep) == "1";
}

bool Session::load(std::string& error)
{
    record(call("dlopen", args({mOptions.plugin})));
    // Under the sanitizers (MARL_SIM_KEEP_PLUGIN_MAPPED=1) the session's
    // plug-in, and the stand-ins it brought, stay mapped after dlclose until
    // exit: the leak check at exit can then name the plug-in's functions,
    // which its suppressions match. The last load of the run, so no later
    // load sees its state.
    const int mode = keepPluginMapped() ? RTLD_LAZY | RTLD_NODELETE : RTLD_LAZY;
    mHandle = dlopen(mOptions.plugin.c_str(), mode);
    if (!mHandle) {
        error = std::string("cannot load the plug-in: ") + dlerror();
        return false;
    }
    if (!prepareAppliance(error))
        return false;
    using LoadFn = int (*)(vcpd_funcs_s*, vcpe_funcs_s*);
    auto loadEngine = reinterpret_cast<LoadFn>(dlsym(mHandle, "vcp_load_engine"));
    mUnload = reinterpret_cast<void (*)()>(dlsym(mHandle, "vcp_unload_engine"));
    if (!loadEngine || !mUnload) {
        error = mOptions.plugin + " does not export vcp_load_engine and vcp_unload_engine";
        return false;
    }
    if (!resolveStandIn(error))
        return false;
    mSetObserver(observerCb, nullptr);

    mDaemon.foreach_command = foreachCommandCb;
    mDaemon.get_command_count = commandCountCb;
    mDaemon.get_audio_type = audioTypeCb;
    const size_t index = record(call("vcp_load_engine", args({"daemon table", "engine table"})));
    const int result = loadEngine(&mDaemon, &mEngine);
    mTranscript.set(index, "ret", result);
    Json::Value daemonTable, engineTable;
    daemonTable["size"] = mDaemon.size;
    daemonTable["version"] = mDaemon.version;
    engineTable["size"] = mEngine.size;
    engineTable["version"] = mEngine.version;
    Json::Value empty(Json::arrayValue);
    const void* const* slots = reinterpret_cast<const void* const*>(&mEngine.initialize);
    static const char* const names[] = {"initialize",
                                        "deinitialize",
                                        "get_recording_format",
                                        "foreach_langs",
                                        "is_lang_supported",
                                        "set_result_cb",
                                        "set_language",
                                        "set_commands",
                                        "unset_commands",
                                        "start",
                                        "set_recording",
                                        "stop",
                                        "cancel",
                                        "set_asr_result_cb",
                                        "set_error_cb",
                                        "set_domain",
                                        "get_nlu_base_info",
                                        "set_private_data",
                                        "get_private_data",
                                        "process_text",
                                        "process_list_event",
                                        "process_haptic_event"};
    static_assert(sizeof(names) / sizeof(names[0]) ==
                      (sizeof(vcpe_funcs_s) - offsetof(vcpe_funcs_s, initialize)) / sizeof(void*),
                  "one name per slot of the engine table");
    for (size_t i = 0; i < sizeof(names) / sizeof(names[0]); ++i)
        if (!slots[i])
            empty.append(names[i]);
    if (!empty.empty())
        engineTable["empty"] = empty;
    mTranscript.set(index, "daemonTable", daemonTable);
    mTranscript.set(index, "engineTable", engineTable);
    if (result != 0) {
        error = "vcp_load_engine failed with " + std::to_string(result);
        return false;
    }
    if (mDaemon.size != static_cast<int>(sizeof(vcpd_funcs_s)) ||
        mEngine.size != static_cast<int>(sizeof(vcpe_funcs_s))) {
        error = "refused: the plug-in wrote table sizes " + std::to_string(mDaemon.size) + " and " +
                std::to_string(mEngine.size) + ", this daemon's tables are " +
                std::to_string(sizeof(vcpd_funcs_s)) + " and " +
                std::to_string(sizeof(vcpe_funcs_s)) + " bytes";
        return false;
    }
    if (!empty.empty()) {
        error = "refused: the engine table has empty slots: " + compact(empty);
        return false;
    }
    return true;
}

bool Session::resolveStandIn(std::string& error)
{
    auto find = [this](const char* name) {
        void* symbol = dlsym(mHandle, name);
        return symbol ? symbol : dlsym(RTLD_DEFAULT, name);
    };
    mSetObserver = reinterpret_cast<decltype(mSetObserver)>(find("speech_standin_set_observer"));
    mScriptTurn = reinterpret_cast<decltype(mScriptTurn)>(find("speech_standin_script_turn"));
    mWaitIdle = reinterpret_cast<decltype(mWaitIdle)>(find("speech_standin_wait_idle"));
    mListen = reinterpret_cast<decltype(mListen)>(find("speech_standin_listen"));
    if (!mSetObserver || !mScriptTurn || !mWaitIdle || !mListen) {
        error =
            "the speech stand-in's control functions (speech_standin_set_observer, "
            "speech_standin_script_turn, speech_standin_wait_idle, speech_standin_listen) are not in the process "
            "after loading " +
            mOptions.plugin + ": is the plug-in linked against the stand-in libasr-nlu.so?";
        return false;
    }
    return true;
}


}  // namespace session
}  // namespace sim
