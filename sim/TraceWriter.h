// The session as a trace in the Trace Event Format (chrome://tracing,
// Perfetto): {"traceEvents": [...]}, every event with "name", "ph", "ts"
// (microseconds since the start of the run), "pid" and "tid".
//
// One track per thread, named by "thread_name" metadata: the daemon's main
// loop, the speech library's thread, the play worker, and one for what the
// appliance saw (its journal and files); a thread of another name gets a track
// of its own. An entry's track is its "thread" member; without one, its kind
// decides (calls and callbacks on the main loop, observations by the thread
// the stand-in names).
//
// Spans: each entry point ("X" on the main loop; it ends at "tEnd" when the
// entry has it, else with the callbacks and observations that follow it
// directly on its thread), each device-data pull ("X" on the library's track,
// from the start the library accepted to the data it reports), each playback
// ("X" on the play worker, from its first entry or the speech that reached
// the plug-in to the appliance's journal entry), and as async spans ("b"/"e")
// each turn and, from the stages of the turn's latency entry, each driver
// request until its response reaches the library, the wait from an action to
// the daemon's result (the server-speech wait), and the end of speech to the
// result.
// Every other entry is an instant event with the entry as its "args".
//
// The events go to the file as the entries come; only the spans still open
// are kept.
#pragma once

#include <json/json.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace sim
{

class TraceWriter
{
public:
    explicit TraceWriter(std::string path);

    // One finished transcript entry, in the transcript's order.
    void entry(const Json::Value& e);
    // Closes what is still open, adds the header as "otherData" and closes the
    // file. False, with a message, when the file could not be written.
    bool finish(const Json::Value& header, std::string* error);

private:
    struct PendingCall {
        Json::Value event;  // the "X" event, "dur" still to set
        long long startMs = 0;
        long long endMs = 0;
    };
    struct AsyncSpan {
        bool open = false;
        long long id = 0;
        long long startMs = 0;
        Json::Value args;
    };

    int track(const Json::Value& e);
    int trackNamed(const std::string& thread);
    void nameTrack(int tid, const std::string& name, int sortIndex);
    void write(const Json::Value& event);
    Json::Value event(const std::string& name, const char* ph, long long ms, int tid) const;
    void instant(const Json::Value& e, int tid, long long ms);
    void complete(const std::string& name, int tid, long long startMs, long long endMs,
                  const Json::Value& args);
    void begin(AsyncSpan& span, const char* category, const std::string& name, long long ms,
               Json::Value args = Json::Value());
    void end(AsyncSpan& span, const char* category, const std::string& name, long long ms,
             const Json::Value& args = Json::Value());
    void flushCall(int tid);
    void flushCallsExcept(int tid);
    void endTurn(long long ms);
    void speechEntry(const Json::Value& e, int tid, long long ms);
    void latency(const Json::Value& e);

    std::string mPath;
    std::ofstream mOut;
    bool mFirst = true;
    long long mLastMs = 0;
    std::map<std::string, int> mTracks;
    std::map<int, PendingCall> mCalls;

    // The turn in progress.
    int mTurn = 0;
    long long mTurnStartMs = 0;
    AsyncSpan mTurnSpan;
    std::vector<Json::Value> mDriverTexts;  // each driver request with the plug-in's response
    Json::Value mActionArgs;                // the parser's first action: its agent and spoken text
    long long mLibraryStartMs = -1;  // the start the library accepted, for its device-data pull
    long long mPlayStartMs = -1;     // the first sign of the play worker in this turn
    long long mSpeechInMs = -1;      // the last server speech that reached the plug-in
    long long mLastPlayEndMs = 0;
    long long mNextId = 1;
};

}  // namespace sim
