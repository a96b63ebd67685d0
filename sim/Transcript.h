// The transcript of a session: one JSON entry per event, in the order seen,
// each stamped with "t", milliseconds since the start of the session, and
// "thread", the name of the thread it was recorded on.
//
// Kinds of entries ("kind"):
//   call      the daemon called the plug-in: "fn", "args", "ret", and more per call
//   callback  the plug-in called the daemon: "fn" and the arguments
//   speech    an observation of the speech or parser stand-in: "obs"
//   device    an entry of the appliance's journal: "event" and its members
//   file      a file under the device root appeared, changed or went: "change", "path", "bytes"
//   turn      a turn begins: "turn", "audio", "end", "server"
//   latency   the stages of a finished turn (sim/README.md)
//   memory    the simulator's memory after a turn (--memory)
//   note      something the simulator says: "text"
//
// The transcript keeps only the entries of the turn in progress: at each
// flush() it hands what it holds, in order, to its sinks (the readable form,
// the JSON file, a trace...) and forgets it, so that a long session does not
// grow in memory.
#pragma once

#include "Render.h"

#include <json/json.h>

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace sim
{

// A consumer of the finished entries of a session.
class TranscriptSink
{
public:
    virtual ~TranscriptSink() = default;
    // Each finished entry, in the transcript's order, once.
    virtual void entry(const Json::Value& entry) = 0;
    // The end of the session, with the complete header.
    virtual void finish(const Json::Value& header) = 0;
};

class Transcript
{
public:
    // Called under the transcript's lock before each entry is added; returns
    // the entries that appeared elsewhere in the meantime (the journal), each
    // with its own "t" and "thread".
    using Poller = std::function<std::vector<Json::Value>()>;

    Transcript();
    void setPoller(Poller poller);
    // Sinks are not owned; they must outlive finish().
    void addSink(TranscriptSink* sink);
    // The name that entries recorded on the calling thread carry in
    // "thread" ("main", "speech"...). Threads without a name are "worker".
    void nameThread(const std::string& name);
    bool threadNamed() const;

    // Thread-safe: listeners report on the libraries' threads. Returns the
    // entry's number in the session, for set() and entriesFrom(). The entry
    // is stamped with the time now unless it has its "t" already.
    size_t add(Json::Value entry);
    // Sets a member of an entry already added and not yet flushed: a call's
    // result, known only after the things the call set off were recorded.
    void set(size_t index, const char* member, Json::Value value);
    void poll();
    // The entries held from number `index` on (those not flushed yet).
    std::vector<Json::Value> entriesFrom(size_t index) const;
    // Hands every entry held to the sinks and forgets them.
    void flush();
    // flush(), then each sink's finish(header).
    void finish();

    long long elapsedMs() const;
    long long startEpochMs() const { return mStartEpochMs; }

    Json::Value header;

private:
    void pollLocked();
    void push(Json::Value entry);

    mutable std::mutex mMutex;
    std::chrono::steady_clock::time_point mStart;
    long long mStartEpochMs;
    std::deque<Json::Value> mEntries;  // numbers mFirst, mFirst + 1, ...
    size_t mFirst = 0;
    Poller mPoller;
    std::vector<TranscriptSink*> mSinks;
    std::map<std::thread::id, std::string> mThreadNames;
    std::mutex mFlushMutex;  // one flush at a time, so sinks see the order kept
};

}  // namespace sim
