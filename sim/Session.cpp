#include "Session.h"

#include "standin/SpeechStandIn.h"
#include "vappliance/Device.h"
#include "voice_control_plugin_engine.h"

#include <Ecore.h>
#include <dlfcn.h>
#include <sndfile.h>
#include <sys/stat.h>

#include <atomic>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

namespace fs = std::filesystem;

namespace sim
{

namespace
{

// How long the main loop waits, before each audio chunk and before a turn's
// stop, for the speech library's thread to finish what it has in hand.
const int kCatchUpMs = 1000;
// How long the main loop waits after the start of a listening turn for the
// library to load its recognizer.
const int kLoadMs = 10000;

// User-data tokens handed to the plug-in, so that the transcript can tell
// which one comes back with each callback.
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

// Copies raw 24 kHz mono 16-bit little-endian speech into a WAV file.
bool writeSpeechWav(const std::string& pcm, const std::string& wav, std::string& error)
{
    SF_INFO format = {};
    format.samplerate = 24000;
    format.channels = 1;
    format.format = SF_FORMAT_RAW | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE;
    SNDFILE* in = sf_open(pcm.c_str(), SFM_READ, &format);
    if (!in) {
        error = std::string("cannot read it: ") + sf_strerror(nullptr);
        return false;
    }
    std::vector<short> samples(static_cast<size_t>(format.frames));
    samples.resize(static_cast<size_t>(std::max<sf_count_t>(0, sf_readf_short(in, samples.data(), format.frames))));
    sf_close(in);
    std::error_code ec;
    fs::create_directories(fs::path(wav).parent_path(), ec);
    SF_INFO info = {};
    info.samplerate = 24000;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* out = sf_open(wav.c_str(), SFM_WRITE, &info);
    if (!out) {
        error = "cannot write " + wav + ": " + sf_strerror(nullptr);
        return false;
    }
    const sf_count_t written = sf_writef_short(out, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(out);
    if (written != static_cast<sf_count_t>(samples.size())) {
        error = "cannot write " + wav;
        return false;
    }
    return true;
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

// --- the probe -------------------------------------------------------------

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

// --- the session ---------------------------------------------------------------

struct FileState {
    uintmax_t size;
    long long mtime;
    uintmax_t inode;
    bool operator!=(const FileState& other) const
    {
        return size != other.size || mtime != other.mtime || inode != other.inode;
    }
};

class Session
{
public:
    Session(const Scenario& scenario, const Options& options, Transcript& transcript)
        : mScenario(scenario), mOptions(options), mTranscript(transcript)
    {
    }

    int run(std::string& error);

    // Daemon callbacks.
    void onResult(vcp_result_event_e event, int* ids, int count, const char* all,
                  const char* nonFixed, const char* nlu, const char* msg, void* data);
    void onAsr(vcp_asr_result_event_e event, const char* result, void* data);
    void onError(vcp_error_e code, const char* msg, void* data);
    void onObservation(const char* json);
    int foreachCommand(int handle, vcpd_foreach_command_cb callback, void* data);
    int commandCount(int handle);
    int audioType(char** type);

private:
    struct Step {
        std::string name;
        std::function<bool()> run;  // true when done, false to be called again
        double interval;            // seconds between calls of a step that repeats
    };

    bool load(std::string& error);
    bool resolveStandIn(std::string& error);
    void buildSteps();
    void addTurnSteps(size_t index);
    void addPrivateData(const std::vector<PrivateData>& list);
    void schedule(double delay);
    static Eina_Bool onTick(void* data);
    bool settle();
    void activity() { mLastActivity = mTranscript.elapsedMs(); }
    size_t record(Json::Value entry)
    {
        activity();
        return mTranscript.add(std::move(entry));
    }
    // Records the call, makes it, and adds its result to the record: what
    // the call sets off is recorded after it.
    template <class Fn>
    int invoke(Json::Value entry, Fn fn)
    {
        const size_t index = record(std::move(entry));
        const int result = fn();
        mTranscript.set(index, "ret", result);
        return result;
    }
    void scanFiles();
    void noteSpokenAnswers();
    std::vector<Json::Value> pollJournal();

    const Scenario& mScenario;
    const Options& mOptions;
    Transcript& mTranscript;

    void* mHandle = nullptr;
    vcpd_funcs_s mDaemon{};
    vcpe_funcs_s mEngine{};
    void (*mUnload)() = nullptr;

    void (*mSetObserver)(speech_standin_observer_cb, void*) = nullptr;
    int (*mScriptTurn)(const char*) = nullptr;
    int (*mWaitIdle)(int) = nullptr;
    void (*mListen)(int) = nullptr;

    std::deque<Step> mSteps;
    Ecore_Timer* mTimer = nullptr;
    bool mFinished = false;
    int mExit = kExitOk;

    // The turn in progress.
    std::atomic<const Turn*> mTurn{nullptr};  // read by callbacks on the libraries' threads
    size_t mTurnNumber = 0;
    size_t mTurnFirstEntry = 0;
    size_t mChunk = 0;
    double mFeedStart = 0;
    long long mTurnEnded = 0;
    int mQuietPolls = 0;
    std::atomic<long long> mLastActivity{0};
    std::atomic<int> mActions{0};
    std::atomic<int> mResults{0};

    int mCommandHandle = 1;
    std::map<std::string, FileState> mFiles;
    std::streamoff mJournalOffset = 0;
};

Session* gSession = nullptr;

void resultCb(vcp_result_event_e event, int* ids, int count, const char* all, const char* nonFixed,
              const char* nlu, const char* msg, void* data)
{
    if (gSession)
        gSession->onResult(event, ids, count, all, nonFixed, nlu, msg, data);
}
void asrCb(vcp_asr_result_event_e event, const char* result, void* data)
{
    if (gSession)
        gSession->onAsr(event, result, data);
}
void errorCb(vcp_error_e code, const char* msg, void* data)
{
    if (gSession)
        gSession->onError(code, msg, data);
}
void observerCb(const char* json, void*)
{
    if (gSession)
        gSession->onObservation(json);
}
int foreachCommandCb(int handle, vcpd_foreach_command_cb callback, void* data)
{
    return gSession ? gSession->foreachCommand(handle, callback, data) : VCP_ERROR_INVALID_STATE;
}
int commandCountCb(int handle)
{
    return gSession ? gSession->commandCount(handle) : 0;
}
int audioTypeCb(char** type)
{
    return gSession ? gSession->audioType(type) : VCP_ERROR_INVALID_STATE;
}

void Session::onResult(vcp_result_event_e event, int* ids, int count, const char* all,
                       const char* nonFixed, const char* nlu, const char* msg, void* data)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "result";
    entry["event"] = static_cast<int>(event);
    entry["ids"] = Json::Value(Json::arrayValue);
    for (int i = 0; ids && i < count && i < 1000; ++i)
        entry["ids"].append(ids[i]);
    if (!ids)
        entry["ids"] = Json::Value();
    entry["count"] = count;
    entry["allResult"] = text(all);
    entry["nonFixedResult"] = text(nonFixed);
    entry["nluResult"] = text(nlu);
    entry["message"] = text(msg);
    entry["userData"] = tokenName(data);
    const Turn* turn = mTurn.load();
    if (turn && turn->listen && ids) {
        // What the ids stand for, in a turn that the stand-in recognized.
        Json::Value matched(Json::arrayValue);
        for (int i = 0; i < count && i < 1000; ++i)
            for (const auto& c : mScenario.commands)
                if (c.id == ids[i]) {
                    matched.append(c.command);
                    break;
                }
        entry["matched"] = matched;
    }
    record(entry);
    ++mResults;
}

void Session::onAsr(vcp_asr_result_event_e event, const char* result, void* data)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "asr";
    entry["event"] = static_cast<int>(event);
    entry["text"] = text(result);
    entry["userData"] = tokenName(data);
    record(entry);
}

void Session::onError(vcp_error_e code, const char* msg, void* data)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "error";
    entry["code"] = static_cast<int>(code);
    entry["message"] = text(msg);
    entry["userData"] = tokenName(data);
    record(entry);
}

void Session::onObservation(const char* json)
{
    Json::Value entry;
    entry["kind"] = "speech";
    Json::Value obs = parseJson(json ? json : "");
    if (obs.isObject()) {
        entry["obs"] = obs;
        if (obs["what"] == "executeOVAction")
            ++mActions;
    } else {
        entry["obs"]["what"] = "unreadable observation";
        entry["obs"]["text"] = text(json);
    }
    record(entry);
}

int Session::foreachCommand(int handle, vcpd_foreach_command_cb callback, void* data)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "foreach_command";
    entry["handle"] = handle;
    entry["userData"] = tokenName(data);
    Json::Value answers(Json::arrayValue);
    int result = 0;
    if (handle != mCommandHandle || !callback) {
        result = VCP_ERROR_INVALID_PARAMETER;
    } else {
        for (const auto& c : mScenario.commands) {
            const bool more = callback(c.id, c.type, c.format, c.command.c_str(), c.param.c_str(),
                                       c.domain, data);
            answers.append(more);
            if (!more)
                break;
        }
    }
    entry["visitorAnswers"] = answers;
    entry["ret"] = result;
    record(entry);
    return result;
}

int Session::commandCount(int handle)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "get_command_count";
    entry["handle"] = handle;
    const int count = handle == mCommandHandle ? static_cast<int>(mScenario.commands.size()) : 0;
    entry["ret"] = count;
    record(entry);
    return count;
}

int Session::audioType(char** type)
{
    Json::Value entry;
    entry["kind"] = "callback";
    entry["fn"] = "get_audio_type";
    int result = VCP_ERROR_INVALID_PARAMETER;
    if (type) {
        *type = strdup("default");
        result = 0;
    }
    entry["ret"] = result;
    record(entry);
    return result;
}

bool Session::load(std::string& error)
{
    record(call("dlopen", args({mOptions.plugin})));
    mHandle = dlopen(mOptions.plugin.c_str(), RTLD_LAZY);
    if (!mHandle) {
        error = std::string("cannot load the plug-in: ") + dlerror();
        return false;
    }
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

void Session::buildSteps()
{
    auto once = [this](const char* name, std::function<void()> fn) {
        mSteps.push_back({name,
                          [fn] {
                              fn();
                              return true;
                          },
                          0});
    };
    once("initialize", [this] {
        invoke(call("MarlEngine_initialize", {}), [&] { return mEngine.initialize(); });
    });
    once("set_result_cb", [this] {
        invoke(call("MarlEngine_set_result_cb", args({"result callback", "result token"})),
               [&] { return mEngine.set_result_cb(resultCb, &gResultToken); });
    });
    once("set_asr_result_cb", [this] {
        invoke(call("MarlEngine_set_asr_result_cb", args({"asr callback", "asr token"})),
               [&] { return mEngine.set_asr_result_cb(asrCb, &gAsrToken); });
    });
    once("set_error_cb", [this] {
        invoke(call("MarlEngine_set_error_cb", args({"error callback", "error token"})),
               [&] { return mEngine.set_error_cb(errorCb, &gErrorToken); });
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
    once("files after start-up", [this] { scanFiles(); });
    for (size_t i = 0; i < mScenario.turns.size(); ++i)
        addTurnSteps(i);
    once("deinitialize", [this] {
        Json::Value section;
        section["kind"] = "section";
        section["text"] = "end of session";
        record(section);
        invoke(call("MarlEngine_deinitialize", {}), [&] { return mEngine.deinitialize(); });
    });
    once("vcp_unload_engine", [this] {
        record(call("vcp_unload_engine", {}));  // returns nothing
        mUnload();
        scanFiles();
        mFinished = true;
    });
}

void Session::addTurnSteps(size_t index)
{
    const Turn& turn = mScenario.turns[index];
    mSteps.push_back({"turn",
                      [this, index, &turn] {
                          Json::Value entry;
                          entry["kind"] = "turn";
                          entry["turn"] = Json::UInt(index + 1);
                          entry["audio"] = turn.audioSource;
                          entry["samples"] = Json::UInt64(turn.audio.size());
                          entry["end"] = turn.cancel ? "cancel" : "stop";
                          entry["server"] = turn.server;
                          if (turn.listen)
                              entry["listen"] = true;
                          mTurn = &turn;
                          mTurnNumber = index + 1;
                          mTurnFirstEntry = record(entry);
                          return true;
                      },
                      0});
    addPrivateData(turn.privateData);
    mSteps.push_back({"start",
                      [this, &turn] {
                          mListen(turn.listen ? 1 : 0);
                          if (!turn.listen && mScriptTurn(compact(turn.server).c_str()) != 0) {
                              Json::Value note;
                              note["kind"] = "note";
                              note["text"] = "the speech stand-in refused the turn's server events";
                              record(note);
                              mExit = kExitFailed;
                          }
                          mActions = 0;
                          mResults = 0;
                          mChunk = 0;
                          invoke(call("MarlEngine_start", args({true})),
                                 [&] { return mEngine.start(true); });
                          // A listening library may load its recognizer first:
                          // let it, so that the feed keeps its pace.
                          if (turn.listen)
                              mWaitIdle(kLoadMs);
                          return true;
                      },
                      0});
    mSteps.push_back(
        {"feed",
         [this, &turn] {
             const size_t perChunk = 320;  // 20 ms of 16 kHz samples
             const size_t first = mChunk * perChunk;
             if (first >= turn.audio.size())
                 return true;
             // The library detects speech on its own thread: let it catch
             // up, so that each chunk meets the state the last one left.
             mWaitIdle(kCatchUpMs);
             const size_t count = std::min(perChunk, turn.audio.size() - first);
             const unsigned bytes = static_cast<unsigned>(count * 2);
             int detect = -1;
             Json::Value entry = call("MarlEngine_set_recording_data", args({bytes}));
             entry["chunk"] = Json::UInt(++mChunk);
             const size_t index = record(entry);
             const int result = mEngine.set_recording(
                 turn.audio.data() + first, bytes, reinterpret_cast<vcp_speech_detect_e*>(&detect));
             mTranscript.set(index, "ret", result);
             mTranscript.set(index, "speech", detect == -1 ? Json::Value() : Json::Value(detect));
             return first + count >= turn.audio.size();
         },
         mOptions.fast ? 0.0 : 0.02});
    mSteps.push_back({"end",
                      [this, &turn] {
                          mWaitIdle(kCatchUpMs);
                          if (turn.cancel)
                              invoke(call("MarlEngine_cancel", {}),
                                     [&] { return mEngine.cancel(); });
                          else
                              invoke(call("MarlEngine_stop", {}), [&] { return mEngine.stop(); });
                          mTurnEnded = mTranscript.elapsedMs();
                          mQuietPolls = 0;
                          return true;
                      },
                      0});
    mSteps.push_back({"settle", [this] { return settle(); }, 0.02});
    mSteps.push_back({"files",
                      [this, &turn] {
                          scanFiles();
                          if (turn.listen)
                              noteSpokenAnswers();
                          mTurn = nullptr;
                          return true;
                      },
                      0});
}

// Where the speech service's spoken answer of a listening turn went: a
// playback of the appliance (its WAV file), or raw 24 kHz speech written
// for an outside player, which is copied into a WAV file beside the device's
// other files (DIR/answers/turn-N.wav).
void Session::noteSpokenAnswers()
{
    const std::vector<Json::Value> entries = mTranscript.entries();
    for (size_t i = mTurnFirstEntry; i < entries.size(); ++i) {
        const Json::Value& e = entries[i];
        std::string text;
        if (e["kind"] == "device" && e["event"] == "audio_playback" && e["file"].isString()) {
            text = "spoken answer: played, " + vapp::devicePath(e["file"].asString());
        } else if (e["kind"] == "file" && e["change"] != "removed" &&
                   fs::path(e["path"].asString()).extension() == ".pcm") {
            const std::string pcm = vapp::hostPath(e["path"].asString());
            const std::string wav =
                vapp::devicePath("answers/turn-" + std::to_string(mTurnNumber) + ".wav");
            std::string error;
            if (writeSpeechWav(pcm, wav, error))
                text = "spoken answer: " + e["path"].asString() + " (24 kHz), as WAV " + wav;
            else
                text = "spoken answer: " + e["path"].asString() + "; " + error;
        }
        if (text.empty())
            continue;
        Json::Value note;
        note["kind"] = "note";
        note["text"] = text;
        record(note);
    }
}

// A turn has settled when the speech stand-in has delivered everything, no
// worker thread of the plug-in runs, and every action the parser handed over
// has reached the daemon (an action may wait up to 5 s for server speech on a
// main-loop timer). An action that the plug-in dropped never reaches it: after
// a quiet spell longer than that wait the turn counts as settled all the same.
bool Session::settle()
{
    const long long now = mTranscript.elapsedMs();
    const bool idle = mWaitIdle(0) == 0;
    const bool threads = ecore_thread_active_get() > 0 || ecore_thread_pending_get() > 0;
    const bool waiting = mActions.load() > mResults.load();
    const bool quietLong = now - mLastActivity.load() > 6000;
    if (idle && !threads && (!waiting || quietLong)) {
        if (++mQuietPolls >= 3) {
            if (waiting) {
                Json::Value note;
                note["kind"] = "note";
                note["text"] = "an action that the parser handed over never reached the daemon";
                record(note);
            }
            return true;
        }
        return false;
    }
    mQuietPolls = 0;
    if (now - mTurnEnded > static_cast<long long>(mOptions.turnTimeout * 1000)) {
        Json::Value note;
        note["kind"] = "note";
        std::string why = !idle     ? "the speech stand-in still had events to deliver"
                          : threads ? "a worker thread of the plug-in was still running"
                                    : "an action had not reached the daemon";
        std::ostringstream text;
        text << "time-out: the turn did not settle within " << mOptions.turnTimeout << " s (" << why
             << ")";
        note["text"] = text.str();
        record(note);
        mExit = kExitTimedOut;
        while (mSteps.size() > 1 && mSteps[1].name != "deinitialize")
            mSteps.erase(mSteps.begin() + 1);
        return true;
    }
    return false;
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
        // Keep the 20 ms pace against the start of the feed, not the last call.
        const double due = self->mFeedStart + double(self->mChunk) * step.interval;
        self->schedule(std::max(0.0, due - ecore_time_get()));
    } else {
        self->schedule(step.interval);
    }
    return ECORE_CALLBACK_CANCEL;
}

void Session::scanFiles()
{
    std::map<std::string, FileState> now;
    const fs::path root = vapp::rootDir();
    std::error_code ec;
    for (fs::recursive_directory_iterator it(root, ec), end; !ec && it != end; it.increment(ec)) {
        struct stat st;
        if (::lstat(it->path().c_str(), &st) != 0 || !S_ISREG(st.st_mode))
            continue;
        const std::string path = "/" + it->path().lexically_relative(root).string();
        now[path] = {static_cast<uintmax_t>(st.st_size),
                     st.st_mtim.tv_sec * 1000000000LL + st.st_mtim.tv_nsec,
                     static_cast<uintmax_t>(st.st_ino)};
    }
    for (const auto& file : now) {
        const auto before = mFiles.find(file.first);
        if (before != mFiles.end() && !(before->second != file.second))
            continue;
        Json::Value entry;
        entry["kind"] = "file";
        entry["change"] = before == mFiles.end() ? "new" : "changed";
        entry["path"] = file.first;
        entry["bytes"] = Json::UInt64(file.second.size);
        mTranscript.add(entry);
    }
    for (const auto& file : mFiles) {
        if (now.count(file.first))
            continue;
        Json::Value entry;
        entry["kind"] = "file";
        entry["change"] = "removed";
        entry["path"] = file.first;
        mTranscript.add(entry);
    }
    mFiles = std::move(now);
}

// Complete lines of the journal written since the last look.
std::vector<Json::Value> Session::pollJournal()
{
    std::vector<Json::Value> entries;
    std::ifstream in(vapp::devicePath("journal.jsonl"), std::ios::binary);
    if (!in)
        return entries;
    in.seekg(mJournalOffset);
    std::string rest((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    size_t start = 0;
    for (size_t end = rest.find('\n'); end != std::string::npos; end = rest.find('\n', start)) {
        const std::string text = rest.substr(start, end - start);
        start = end + 1;
        const Json::Value line = parseJson(text);
        Json::Value entry = line.isObject() ? line : Json::Value(Json::objectValue);
        if (!line.isObject())
            entry["unreadable"] = text;
        entry["kind"] = "device";
        entry["t"] = Json::Int64(line["time"].asInt64() - mTranscript.startEpochMs());
        entry.removeMember("time");
        entries.push_back(entry);
    }
    mJournalOffset += static_cast<std::streamoff>(start);
    return entries;
}

int Session::run(std::string& error)
{
    gSession = this;
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
    mSetObserver(nullptr, nullptr);
    record(call("dlclose", args({mOptions.plugin})));
    dlclose(mHandle);
    mTranscript.poll();
    mTranscript.setPoller(nullptr);
    gSession = nullptr;
    return mExit;
}

}  // namespace

bool probeEngine(const std::string& plugin, Json::Value& identity, Transcript* transcript,
                 std::string& error)
{
    identity = Json::Value(Json::objectValue);
    if (transcript)
        transcript->add(call("dlopen", args({plugin})));
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
    gProbe = {transcript, &identity, 0};
    const size_t index = transcript
                             ? transcript->add(call("vcp_get_engine_info",
                                                    args({"engine info callback", "probe token"})))
                             : 0;
    const int result = info(engineInfoCb, &gProbeToken);
    if (transcript) {
        transcript->set(index, "ret", result);
        transcript->add(call("dlclose", args({plugin})));
    }
    dlclose(handle);
    if (result != 0 || gProbe.calls != 1) {
        error = "vcp_get_engine_info returned " + std::to_string(result) + " and called back " +
                std::to_string(gProbe.calls) + " time(s)";
        return false;
    }
    return true;
}

int runSession(const Scenario& scenario, const Options& options, Transcript& transcript,
               std::string& error)
{
    Session session(scenario, options, transcript);
    return session.run(error);
}

}  // namespace sim
