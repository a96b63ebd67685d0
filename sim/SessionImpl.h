// The inside of a daemon session (Session.h): the daemon's state, shared by
// the files that tell its parts:
//   Session.cpp          the session's steps on the main loop, start to end
//   SessionLoad.cpp      loading the plug-in and filling the daemon's table
//   DaemonCallbacks.cpp  what the daemon does when the plug-in calls it
//   TurnSteps.cpp        one turn: start, audio, stop, settling, its latency
//   ApplianceWatch.cpp   the device's files and the appliance's journal
//   AppHandOver.cpp      results handed to the appliance's apps, the device's clock, talk's turns
#pragma once

#include "Session.h"

#include "apps/Apps.h"

#include "standin/SpeechStandIn.h"
#include "voice_control_plugin_engine.h"

#include <Ecore.h>

#include <atomic>
#include <cstdint>
#include <deque>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace sim
{
namespace session
{

// User-data tokens handed to the plug-in by the gentle daemon, so that the
// transcript can tell which one comes back with each callback.
extern char gProbeToken, gResultToken, gAsrToken, gErrorToken;
std::string tokenName(const void* data);

Json::Value text(const char* value);
Json::Value parseJson(const std::string& text);
Json::Value call(const char* fn, Json::Value args);
Json::Value args(std::initializer_list<Json::Value> values);
Json::Value note(const std::string& text);

// MARL_SIM_KEEP_PLUGIN_MAPPED=1: the plug-in stays mapped after dlclose.
bool keepPluginMapped();

// Copies raw 24 kHz mono 16-bit little-endian speech into a WAV file.
bool writeSpeechWav(const std::string& pcm, const std::string& wav, std::string& error);

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
    ~Session();

    int run(std::string& error);

    // Daemon callbacks (DaemonCallbacks.cpp).
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

    bool platform() const { return mOptions.daemon == DaemonProfile::Platform; }

    bool load(std::string& error);
    bool resolveStandIn(std::string& error);
    void unload();
    void closePlugin();
    void once(const char* name, std::function<void()> fn);
    void buildSteps();
    void addNextTurn(size_t index);
    void addEngineSetUp();
    void addReloadSteps();
    void addSessionEnd();
    void addTurnSteps(size_t index);
    void addPrivateData(const std::vector<PrivateData>& list);
    void skipRestOfTurn();
    void schedule(double delay);
    static Eina_Bool onTick(void* data);
    bool feedGentle(const Turn& turn);
    bool feedPlatform(const Turn& turn);
    int sendChunk(const Turn& turn, size_t first, size_t count, size_t chunkSamples);
    void endTurn(const Turn& turn);
    void stopOrCancel(bool cancel);
    bool settle();
    void finishTurn(const Turn& turn);
    void recordMemory();
    // The appliance's apps and clock (AppHandOver.cpp).
    bool prepareAppliance(std::string& error);
    void handOverResults(const Turn& turn);
    bool takeTalkTurn();
    const Turn& turnAt(size_t index) const;
    static Eina_Bool onWatchLaunches(void* data);
    static Eina_Bool onTickApps(void* data);
    void tellApps(std::vector<apps::Report> reports);
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
    bool mSkipTurns = false;  // a turn timed out: the session goes to its end
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
    // The platform daemon's request: from its stop to the first result or
    // error; a result outside it is dropped.
    std::atomic<bool> mProcessing{false};
    std::atomic<bool> mAnswered{false};  // the turn's result or error came (and was taken)
    bool mCancelled = false;             // the daemon cancelled the turn's request
    bool mStartRefused = false;     // no command, or set_commands failed: the turn does not start
    size_t mEndOfSpeechChunk = 0;   // the chunk that reported the end of speech (0: none yet)
    bool mEngineStopped = false;    // the platform daemon stopped the engine by itself
    bool mFeedSilence = false;      // the platform recorder gives silence after the audio, in real time

    int mCommandHandle = 1;
    int mNextCommandHandle = 1001;  // the platform daemon's handles, one per start
    std::map<std::string, FileState> mFiles;
    std::streamoff mJournalOffset = 0;

    std::unique_ptr<apps::Apps> mApps;  // null when no command was registered by one of them
    Ecore_Timer* mLaunchWatch = nullptr;
    Ecore_Timer* mAppsTick = nullptr;
    std::streamoff mLaunchOffset = 0;
    std::deque<Turn> mTalkTurns;  // the turns that talk reads as the session goes
};

extern Session* gSession;

// The daemon's callbacks as the plug-in's tables take them (DaemonCallbacks.cpp).
void resultCb(vcp_result_event_e event, int* ids, int count, const char* all, const char* nonFixed,
              const char* nlu, const char* msg, void* data);
void asrCb(vcp_asr_result_event_e event, const char* result, void* data);
void errorCb(vcp_error_e code, const char* msg, void* data);
void observerCb(const char* json, void*);
int foreachCommandCb(int handle, vcpd_foreach_command_cb callback, void* data);
int commandCountCb(int handle);
int audioTypeCb(char** type);

}  // namespace session
}  // namespace sim
