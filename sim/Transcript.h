// The transcript of a session: one JSON entry per event, in the order seen,
// each stamped with "t", milliseconds since the start of the session.
//
// Kinds of entries ("kind"):
//   call      the daemon called the plug-in: "fn", "args", "ret", and more per call
//   callback  the plug-in called the daemon: "fn" and the arguments
//   speech    an observation of the speech or parser stand-in: "obs"
//   device    an entry of the appliance's journal: "event" and its members
//   file      a file under the device root appeared, changed or went: "change", "path", "bytes"
//   turn      a turn begins: "turn", "audio", "end", "server"
//   note      something the simulator says: "text"
#pragma once

#include <json/json.h>

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace sim
{

class Transcript
{
public:
    // Called under the transcript's lock before each entry is added; returns
    // the entries that appeared elsewhere in the meantime (the journal), each
    // with its own "t".
    using Poller = std::function<std::vector<Json::Value>()>;

    Transcript();
    void setPoller(Poller poller);
    // Thread-safe: listeners report on the libraries' threads. Returns the
    // entry's index, for set().
    size_t add(Json::Value entry);
    // Sets a member of an entry already added: a call's result, known only
    // after the things the call set off have been recorded after it.
    void set(size_t index, const char* member, Json::Value value);
    void poll();
    std::vector<Json::Value> entries() const;
    long long elapsedMs() const;
    long long startEpochMs() const { return mStartEpochMs; }

    Json::Value header;

private:
    void pollLocked();

    mutable std::mutex mMutex;
    std::chrono::steady_clock::time_point mStart;
    long long mStartEpochMs;
    std::vector<Json::Value> mEntries;
    Poller mPoller;
};

struct RenderOptions {
    // Without times, with the substitutions applied and with pointers and
    // present times masked: the form that expected transcripts are kept in.
    bool normalized = false;
    // Text replaced by a placeholder in the normalized form, e.g. the device
    // directory by "$DEVICE"; longest first.
    std::vector<std::pair<std::string, std::string>> substitutions;
    long long nowEpochMs = 0;  // for masking present times
    // The lines of pulled device data that the normalized form keeps, by the
    // names they begin with; the full form keeps all, unless briefDeviceData.
    std::vector<std::string> deviceDataKept;
    bool briefDeviceData = false;
};

std::string render(const Json::Value& header, const std::vector<Json::Value>& entries,
                   const RenderOptions& options);

// Compact one-line JSON.
std::string compact(const Json::Value& value);

}  // namespace sim
