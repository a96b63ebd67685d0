#include "TraceWriter.h"

#include "Latency.h"

#include "Transcript.h"

#include <algorithm>

namespace sim
{

namespace
{

const int kPid = 1;

// The fixed tracks, in the order shown.
const int kMainTid = 1, kSpeechTid = 2, kPlayTid = 3, kApplianceTid = 4;

long long entryMs(const Json::Value& e)
{
    return e["t"].asInt64();
}

bool isAppliance(const Json::Value& e)
{
    return e["kind"] == "device" || e["kind"] == "file";
}

// What follows an entry point on its own thread while it runs: the plug-in
// calling the daemon back, or calling into the speech library.
bool nestsInCall(const Json::Value& e)
{
    return e["kind"] == "callback" || e["kind"] == "speech";
}

std::string instantName(const Json::Value& e)
{
    const std::string kind = e["kind"].asString();
    if (kind == "call" || kind == "callback")
        return e["fn"].asString();
    if (kind == "speech")
        return e["obs"]["what"].asString();
    if (kind == "device")
        return e["event"].asString();
    if (kind == "file")
        return "file " + e["change"].asString() + " " + e["path"].asString();
    if (kind == "turn")
        return "turn " + std::to_string(e["turn"].asInt());
    if (kind == "section" || kind == "note") {
        const std::string text = e["text"].asString();
        return text.size() > 80 ? text.substr(0, 77) + "..." : text;
    }
    return kind;
}

Json::Value argsOf(const Json::Value& e)
{
    Json::Value args = e;
    args.removeMember("t");
    return args;
}

}  // namespace

TraceWriter::TraceWriter(std::string path) : mPath(std::move(path)), mOut(mPath, std::ios::binary)
{
    mOut << "{\"traceEvents\":[\n";
    Json::Value process = event("process_name", "M", 0, 0);
    process["args"]["name"] = "marl-sim";
    write(process);
    nameTrack(kMainTid, "daemon main loop", 1);
    nameTrack(kSpeechTid, "speech library", 2);
    nameTrack(kPlayTid, "play worker", 3);
    nameTrack(kApplianceTid, "appliance journal", 4);
    mTracks = {{"main", kMainTid},   {"caller", kMainTid},        {"speech", kSpeechTid},
               {"library", kSpeechTid}, {"play", kPlayTid}, {"journal", kApplianceTid}};
}

Json::Value TraceWriter::event(const std::string& name, const char* ph, long long ms,
                               int tid) const
{
    Json::Value value;
    value["name"] = name;
    value["ph"] = ph;
    value["ts"] = Json::Int64(ms * 1000);
    value["pid"] = kPid;
    value["tid"] = tid;
    return value;
}

void TraceWriter::write(const Json::Value& value)
{
    mOut << (mFirst ? "" : ",\n") << compact(value);
    mFirst = false;
}

void TraceWriter::nameTrack(int tid, const std::string& name, int sortIndex)
{
    Json::Value named = event("thread_name", "M", 0, tid);
    named["args"]["name"] = name;
    write(named);
    Json::Value order = event("thread_sort_index", "M", 0, tid);
    order["args"]["sort_index"] = sortIndex;
    write(order);
}

int TraceWriter::trackNamed(const std::string& thread)
{
    const auto found = mTracks.find(thread);
    if (found != mTracks.end())
        return found->second;
    const int tid = kApplianceTid + 1 + static_cast<int>(mTracks.size());
    mTracks[thread] = tid;
    // Threads that the transcript knows no name for are "worker".
    nameTrack(tid, thread == "worker" ? "other threads of the plug-in" : thread, tid);
    return tid;
}

int TraceWriter::track(const Json::Value& e)
{
    // What the appliance saw has its own track whichever thread noticed it.
    if (isAppliance(e))
        return kApplianceTid;
    if (e["thread"].isString())
        return trackNamed(e["thread"].asString());
    if (e["kind"] == "speech")
        return e["obs"]["thread"] == "library" ? kSpeechTid : kMainTid;
    return kMainTid;
}

void TraceWriter::instant(const Json::Value& e, int tid, long long ms)
{
    Json::Value value = event(instantName(e), "i", ms, tid);
    value["s"] = "t";
    value["args"] = argsOf(e);
    write(value);
}

void TraceWriter::complete(const std::string& name, int tid, long long startMs, long long endMs,
                           const Json::Value& args)
{
    Json::Value value = event(name, "X", startMs, tid);
    value["dur"] = Json::Int64(std::max(0LL, endMs - startMs) * 1000);
    if (!args.isNull())
        value["args"] = args;
    write(value);
}

void TraceWriter::begin(AsyncSpan& span, const char* category, const std::string& name,
                        long long ms, Json::Value args)
{
    span.open = true;
    span.id = mNextId++;
    span.startMs = ms;
    span.args = std::move(args);
    Json::Value value = event(name, "b", ms, kMainTid);
    value["cat"] = category;
    value["id"] = Json::Int64(span.id);
    if (!span.args.isNull())
        value["args"] = span.args;
    write(value);
}

void TraceWriter::end(AsyncSpan& span, const char* category, const std::string& name, long long ms,
                      const Json::Value& args)
{
    if (!span.open)
        return;
    span.open = false;
    Json::Value value = event(name, "e", std::max(ms, span.startMs), kMainTid);
    value["cat"] = category;
    value["id"] = Json::Int64(span.id);
    if (!args.isNull())
        value["args"] = args;
    write(value);
}

void TraceWriter::flushCall(int tid)
{
    const auto found = mCalls.find(tid);
    if (found == mCalls.end())
        return;
    PendingCall& call = found->second;
    call.event["dur"] = Json::Int64(std::max(0LL, call.endMs - call.startMs) * 1000);
    write(call.event);
    mCalls.erase(found);
}

void TraceWriter::flushCallsExcept(int tid)
{
    std::vector<int> others;
    for (const auto& call : mCalls)
        if (call.first != tid)
            others.push_back(call.first);
    for (int other : others)
        flushCall(other);
}

void TraceWriter::endTurn(long long ms)
{
    end(mTurnSpan, "turn", "turn " + std::to_string(mTurn), ms);
    mLibraryStartMs = mPlayStartMs = mSpeechInMs = -1;
    mDriverTexts.clear();
    mActionArgs = Json::Value();
}

void TraceWriter::speechEntry(const Json::Value& e, int tid, long long ms)
{
    const Json::Value& obs = e["obs"];
    const std::string what = obs["what"].asString();
    if (what == "startRecognition" && obs["accepted"].asBool()) {
        mLibraryStartMs = ms;
    } else if (what == "deviceData") {
        // The library pulls on its own thread once a start is accepted and
        // reports what it got when done.
        complete("device-data pull", tid, mLibraryStartMs >= 0 ? mLibraryStartMs : ms, ms,
                 argsOf(e)["obs"]);
        mLibraryStartMs = -1;
    } else if (what == "deliver") {
        const Json::Value& delivered = obs["event"];
        if (delivered["type"] == "nlu" &&
            (delivered.isMember("speechFile") || delivered.isMember("speechBytes")))
            mSpeechInMs = ms;
    } else if (what == "driverRequest") {
        Json::Value texts;
        texts["request"] = obs["request"];
        texts["response"] = obs["response"];
        mDriverTexts.push_back(texts);
    } else if (what == "executeOVAction" && mActionArgs.isNull()) {
        mActionArgs["agent"] = obs["agent"];
        mActionArgs["spokenText"] = obs["spokenText"];
    }
}

// The turn's spans from its stages: each driver request until its response
// reached the library, the wait from the action to the daemon's result or
// error (the server-speech wait), and the end of speech to the result. What
// did not come ends with the turn.
void TraceWriter::latency(const Json::Value& e)
{
    const long long start = e["startT"].isNumeric() ? e["startT"].asInt64() : mTurnStartMs;
    const long long turnEnd = entryMs(e);
    long long action = -1, answer = -1;
    std::string answeredBy;
    size_t requests = 0;
    for (const TurnStage& stage : turnStages(e)) {
        if (stage.number) {
            Json::Value args = requests < mDriverTexts.size() ? mDriverTexts[requests] : Json::Value();
            ++requests;
            if (stage.endMs < 0)
                args["response"] = "none reached the library in this turn";
            AsyncSpan span;
            begin(span, "driver", "driver response", start + stage.ms);
            end(span, "driver", "driver response", stage.endMs >= 0 ? start + stage.endMs : turnEnd, args);
        } else if (stage.key == "action") {
            action = stage.ms;
        } else if ((stage.key == "result" || stage.key == "error") && (answer < 0 || stage.ms < answer)) {
            answer = stage.ms;
            answeredBy = stage.key;
        }
    }
    if (action >= 0) {
        AsyncSpan span;
        Json::Value args;
        if (answer >= 0)
            args["by"] = answeredBy;
        else
            args["result"] = "none reached the daemon in this turn";
        begin(span, "wait", "server-speech wait", start + action, mActionArgs);
        end(span, "wait", "server-speech wait", answer >= 0 ? start + answer : turnEnd, args);
    }
    const Json::Value& stages = e["stages"];
    if (!stages["endOfSpeech"].isNumeric() || !e["endOfSpeechToResultMs"].isNumeric())
        return;
    const long long from = start + stages["endOfSpeech"].asInt64();
    AsyncSpan span;
    Json::Value args;
    args["ms"] = e["endOfSpeechToResultMs"];
    begin(span, "latency", "end of speech to result", from, args);
    end(span, "latency", "end of speech to result", from + e["endOfSpeechToResultMs"].asInt64());
}

void TraceWriter::entry(const Json::Value& e)
{
    const long long ms = entryMs(e);
    const int tid = track(e);
    const std::string kind = e["kind"].asString();
    if (!isAppliance(e)) {
        mLastMs = std::max(mLastMs, ms);
        flushCallsExcept(tid);
        const auto pending = mCalls.find(tid);
        if (pending != mCalls.end()) {
            if (nestsInCall(e))
                pending->second.endMs = std::max(pending->second.endMs, ms);
            else
                flushCall(tid);
        }
    }

    if (kind == "turn" || kind == "section") {
        endTurn(ms);
        if (kind == "turn") {
            mTurn = e["turn"].asInt();
            mTurnStartMs = ms;
            Json::Value args;
            args["audio"] = e["audio"];
            args["end"] = e["end"];
            begin(mTurnSpan, "turn", "turn " + std::to_string(mTurn), ms, args);
        }
    }

    if (kind == "call") {
        Json::Value call = event(e["fn"].asString(), "X", ms, tid);
        call["args"] = argsOf(e);
        if (e["tEnd"].isNumeric()) {
            call["dur"] = Json::Int64(std::max(0LL, e["tEnd"].asInt64() - ms) * 1000);
            write(call);
        } else {
            mCalls[tid] = {call, ms, ms};
        }
        return;
    }
    if (kind == "speech")
        speechEntry(e, tid, ms);
    if (kind == "latency")
        latency(e);
    if (e["thread"] == "play" && mPlayStartMs < 0)
        mPlayStartMs = ms;
    if (kind == "device" && e["event"] == "audio_playback") {
        // The appliance journals a playback when its player is destroyed: the
        // span runs from the play worker's first sign (or the speech reaching
        // the plug-in) to then.
        long long from = mPlayStartMs >= 0 ? mPlayStartMs : mSpeechInMs >= 0 ? mSpeechInMs : ms;
        from = std::min(std::max(from, mLastPlayEndMs), ms);
        complete("playback", kPlayTid, from, ms, argsOf(e));
        mLastPlayEndMs = ms;
        mPlayStartMs = mSpeechInMs = -1;
    }
    instant(e, tid, ms);
}

bool TraceWriter::finish(const Json::Value& header, std::string* error)
{
    for (auto it = mCalls.begin(); it != mCalls.end(); it = mCalls.begin())
        flushCall(it->first);
    endTurn(mLastMs);
    mOut << "\n],\n\"displayTimeUnit\":\"ms\",\n\"otherData\":{";
    bool first = true;
    for (const auto& name : header.getMemberNames()) {
        const Json::Value& value = header[name];
        mOut << (first ? "" : ",") << compact(Json::Value(name)) << ":"
             << compact(value.isString() ? value : Json::Value(compact(value)));
        first = false;
    }
    mOut << "}}\n";
    mOut.close();
    if (!mOut) {
        if (error)
            *error = "cannot write " + mPath;
        return false;
    }
    return true;
}

}  // namespace sim
