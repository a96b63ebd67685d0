#include "SessionImpl.h"

#include "vappliance/Device.h"

#include <dlfcn.h>

#include <cstdio>
#include <fstream>
#include <sstream>

namespace sim
{
namespace session
{

char gProbeToken, gResultToken, gAsrToken, gErrorToken;

std::string tokenName(const void* data)
{
    if (!data)
        return "null";
    if (data == &gProbeToken)
        return "the one given to vcp_get_engine_info";
    if (data == &gResultToken)
        return "the one given to set_result_cb";
    if (data == &gAsrToken)
        return "the one given to set_asr_result_cb";
    if (data == &gErrorToken)
        return "the one given to set_error_cb";
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%p", data);
    return buffer;
}

Json::Value text(const char* value)
{
    return value ? Json::Value(value) : Json::Value();
}

Json::Value parseJson(const std::string& text)
{
    Json::CharReaderBuilder builder;
    std::istringstream in(text);
    Json::Value value;
    std::string errors;
    if (!Json::parseFromStream(builder, in, &value, &errors))
        return Json::Value();
    return value;
}

Json::Value call(const char* fn, Json::Value args)
{
    Json::Value entry;
    entry["kind"] = "call";
    entry["fn"] = fn;
    entry["args"] = args.isNull() ? Json::Value(Json::arrayValue) : args;
    return entry;
}

Json::Value args(std::initializer_list<Json::Value> values)
{
    Json::Value list(Json::arrayValue);
    for (const auto& value : values)
        list.append(value);
    return list;
}

Json::Value note(const std::string& text)
{
    Json::Value entry;
    entry["kind"] = "note";
    entry["text"] = text;
    return entry;
}

Session* gSession = nullptr;

namespace
{

struct ProbeState {
    Transcript* transcript = nullptr;
    Json::Value* identity = nullptr;
    int calls = 0;
};
ProbeState gProbe;

void engineInfoCb(const char* uuid, const char* name, const char* setting, bool useNetwork,
                  void* data)
{
    ++gProbe.calls;
    Json::Value& identity = *gProbe.identity;
    identity["uuid"] = text(uuid);
    identity["name"] = text(name);
    identity["setting"] = text(setting);
    identity["needsNetwork"] = useNetwork;
    if (gProbe.transcript) {
        Json::Value entry = identity;
        entry["kind"] = "callback";
        entry["fn"] = "engine_info";
        entry["userData"] = tokenName(data);
        gProbe.transcript->add(entry);
    }
}

}  // namespace

void Session::addPrivateData(const std::vector<PrivateData>& list)
{
    for (const auto& item : list) {
        mSteps.push_back(
            {"private data",
             [this, item] {
                 invoke(
                     call("MarlEngine_set_private_data",
                          args({text(item.key.c_str()), text(item.data.c_str())})),
                     [&] { return mEngine.set_private_data(item.key.c_str(), item.data.c_str()); });
                 return true;
             },
             0});
    }
}

void Session::once(const char* name, std::function<void()> fn)
{
    mSteps.push_back({name,
                      [fn] {
                          fn();
                          return true;
                      },
                      0});
}

// The daemon's calls from MarlEngine_initialize to the engine's private data.
void Session::addEngineSetUp()
{
    // The platform's daemon passes no user data to the callback setters.
    auto userData = [this](char* token) -> void* { return platform() ? nullptr : token; };
    once("initialize", [this] {
        invoke(call("MarlEngine_initialize", {}), [&] { return mEngine.initialize(); });
    });
    once("set_result_cb", [this, userData] {
        invoke(call("MarlEngine_set_result_cb", args({"result callback", platform() ? Json::Value() : Json::Value("result token")})),
               [&] { return mEngine.set_result_cb(resultCb, userData(&gResultToken)); });
    });
    once("set_asr_result_cb", [this, userData] {
        invoke(call("MarlEngine_set_asr_result_cb", args({"asr callback", platform() ? Json::Value() : Json::Value("asr token")})),
               [&] { return mEngine.set_asr_result_cb(asrCb, userData(&gAsrToken)); });
    });
    once("set_error_cb", [this, userData] {
        invoke(call("MarlEngine_set_error_cb", args({"error callback", platform() ? Json::Value() : Json::Value("error token")})),
               [&] { return mEngine.set_error_cb(errorCb, userData(&gErrorToken)); });
    });
    if (mScenario.domain.set) {
        once("set_domain", [this] {
            invoke(call("MarlEngine_set_domain", args({mScenario.domain.text})),
                   [&] { return mEngine.set_domain(mScenario.domain.c_str()); });
        });
    }
    once("get_recording_format", [this] {
        vcp_audio_type_e type = VCP_AUDIO_TYPE_PCM_U8;
        int rate = 0, channels = 0;
        const size_t index = record(call("MarlEngine_get_recording_format", args({"default"})));
        const int result = mEngine.get_recording_format("default", &type, &rate, &channels);
        mTranscript.set(index, "ret", result);
        mTranscript.set(index, "type", static_cast<int>(type));
        mTranscript.set(index, "rate", rate);
        mTranscript.set(index, "channels", channels);
        if (result == 0 && (type != VCP_AUDIO_TYPE_PCM_S16_LE || rate != 16000 || channels != 1))
            record([] {
                Json::Value note;
                note["kind"] = "note";
                note["text"] =
                    "the engine asks for another format than 16 kHz mono 16-bit; "
                    "the audio is fed as 16 kHz mono 16-bit all the same";
                return note;
            }());
    });
    once("set_language", [this] {
        invoke(call("MarlEngine_set_language", args({mScenario.language})),
               [&] { return mEngine.set_language(mScenario.language.c_str()); });
    });
    once("set_commands", [this] {
        invoke(call("MarlEngine_set_commands", args({mCommandHandle})),
               [&] { return mEngine.set_commands(mCommandHandle); });
    });
    addPrivateData(mScenario.privateData);
}

void Session::buildSteps()
{
    addEngineSetUp();
    once("files after start-up", [this] { scanFiles(); });
    addNextTurn(0);
}

// A turn's steps are made when it comes, so that a long session holds those
// of one turn only and the heap stays the same from turn to turn. After the
// scenario's turns come those of marl-sim talk, one by one as they are said.
void Session::addNextTurn(size_t index)
{
    once("next turn", [this, index] {
        if (!mSkipTurns && (index < mScenario.turns.size() || takeTalkTurn())) {
            addTurnSteps(index);
            addNextTurn(index + 1);
        } else {
            addSessionEnd();
        }
    });
}

// vcp_unload_engine and dlclose, as the daemon does after deinitialize.
void Session::unload()
{
    record(call("vcp_unload_engine", {}));  // returns nothing
    mUnload();
    closePlugin();
}

void Session::closePlugin()
{
    if (mSetObserver)
        mSetObserver(nullptr, nullptr);
    mSetObserver = nullptr;
    record(call("dlclose", args({mOptions.plugin})));
    dlclose(mHandle);
    mHandle = nullptr;
}

// Before a turn that reloads the engine: it goes as at the end of a session
// and comes back from a fresh dlopen, as at the start of one.
void Session::addReloadSteps()
{
    once("reload", [this] {
        record(note("the daemon unloads the engine and loads it again"));
        invoke(call("MarlEngine_deinitialize", {}), [&] { return mEngine.deinitialize(); });
        unload();
        std::string error;
        if (!load(error)) {
            record(note("the plug-in cannot be loaded again: " + error));
            mExit = kExitFailed;
            mFinished = true;
            mSteps.erase(mSteps.begin() + 1, mSteps.end());
        }
    });
    addEngineSetUp();
}

// The gentle daemon unloads the engine in two main-loop iterations and
// closes the library when its loop has ended. The platform daemon does all
// three at once and lives on: its main loop runs 2 s more, in which nothing
// of the unloaded plug-in may be left to run.
void Session::addSessionEnd()
{
    // The transcript's last turn is handed on at the end: the daemon unloads
    // the engine without waiting for it to be written.
    once("deinitialize", [this] {
        Json::Value section;
        section["kind"] = "section";
        section["text"] = "end of session";
        record(section);
        invoke(call("MarlEngine_deinitialize", {}), [&] { return mEngine.deinitialize(); });
        if (platform()) {
            unload();
            record(note("the daemon's main loop runs on for 2 s"));
        }
    });
    if (!platform()) {
        once("vcp_unload_engine", [this] {
            record(call("vcp_unload_engine", {}));  // returns nothing
            mUnload();
            scanFiles();
            mFinished = true;
        });
        return;
    }
    mSteps.push_back({"after the unload",
                      [this, waited = false]() mutable {
                          if (!waited) {
                              waited = true;
                              return false;
                          }
                          scanFiles();
                          mFinished = true;
                          return true;
                      },
                      2.0});
}

void Session::schedule(double delay)
{
    mTimer = ecore_timer_add(delay, onTick, this);
}

Eina_Bool Session::onTick(void* data)
{
    auto* self = static_cast<Session*>(data);
    self->mTimer = nullptr;
    if (self->mSteps.empty()) {
        ecore_main_loop_quit();
        return ECORE_CALLBACK_CANCEL;
    }
    Step& step = self->mSteps.front();
    if (step.run()) {
        self->mSteps.pop_front();
        if (self->mSteps.empty()) {
            ecore_main_loop_quit();
            return ECORE_CALLBACK_CANCEL;
        }
        if (self->mSteps.front().name == "feed")
            self->mFeedStart = ecore_time_get();
        self->schedule(0.0);
    } else if (step.name == "feed") {
        // Keep the pace against the start of the feed, not the last call.
        const double due = self->mFeedStart + double(self->mChunk) * step.interval;
        if (self->mFeedSilence && step.interval == 0.0)
            self->schedule(0.01);  // silence comes in real time, even with --fast
        else
            self->schedule(std::max(0.0, due - ecore_time_get()));
    } else {
        self->schedule(step.interval);
    }
    return ECORE_CALLBACK_CANCEL;
}

int Session::run(std::string& error)
{
    gSession = this;
    mTranscript.nameThread("main");
    {
        std::ifstream in(vapp::devicePath("journal.jsonl"), std::ios::binary | std::ios::ate);
        mJournalOffset = in ? static_cast<std::streamoff>(in.tellg()) : 0;
    }
    scanFiles();
    mTranscript.setPoller([this] { return pollJournal(); });

    if (!load(error)) {
        if (mHandle && mSetObserver)
            mSetObserver(nullptr, nullptr);
        mTranscript.setPoller(nullptr);
        gSession = nullptr;
        return kExitFailed;
    }
    buildSteps();
    schedule(0.0);
    while (!mFinished) {
        ecore_main_loop_begin();
        if (!mFinished) {
            Json::Value note;
            note["kind"] = "note";
            note["text"] = "the main loop was quit from inside the session; the daemon resumes it";
            record(note);
            if (!mTimer)
                schedule(0.0);
        }
    }
    if (mHandle)
        closePlugin();
    mTranscript.poll();
    mTranscript.setPoller(nullptr);
    gSession = nullptr;
    return mExit;
}

}  // namespace session

bool probeEngine(const std::string& plugin, Json::Value& identity, Transcript* transcript,
                 std::string& error)
{
    identity = Json::Value(Json::objectValue);
    if (transcript)
        transcript->add(session::call("dlopen", session::args({plugin})));
    void* handle = dlopen(plugin.c_str(), RTLD_LAZY);
    if (!handle) {
        error = std::string("cannot load the plug-in: ") + dlerror();
        return false;
    }
    using InfoFn = int (*)(vcpe_engine_info_cb, void*);
    auto info = reinterpret_cast<InfoFn>(dlsym(handle, "vcp_get_engine_info"));
    if (!info) {
        dlclose(handle);
        error = plugin + " does not export vcp_get_engine_info";
        return false;
    }
    session::gProbe = {transcript, &identity, 0};
    const size_t index = transcript
                             ? transcript->add(session::call("vcp_get_engine_info",
                                                    session::args({"engine info callback", "probe token"})))
                             : 0;
    const int result = info(session::engineInfoCb, &session::gProbeToken);
    if (transcript) {
        transcript->set(index, "ret", result);
        transcript->add(session::call("dlclose", session::args({plugin})));
    }
    dlclose(handle);
    if (result != 0 || session::gProbe.calls != 1) {
        error = "vcp_get_engine_info returned " + std::to_string(result) + " and called back " +
                std::to_string(session::gProbe.calls) + " time(s)";
        return false;
    }
    return true;
}

int runSession(const Scenario& scenario, const Options& options, Transcript& transcript,
               std::string& error)
{
    session::Session session(scenario, options, transcript);
    return session.run(error);
}

}  // namespace sim
