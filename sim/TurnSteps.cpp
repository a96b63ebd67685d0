// One turn of the session: the daemon's start, the audio, its stop or
// cancel, the settling of what the turn set off, and its latency.
//
// The gentle daemon feeds 20 ms chunks and lets the speech library's thread
// catch up before each; it plays the whole audio, then stops. The platform
// daemon sets its commands before every start, feeds 10 ms chunks on a timer
// as its recorder gives them, without waiting for the library, and stops the
// recorder and the engine by itself one chunk after the plug-in reports the
// end of speech. A turn is over for the gentle daemon when everything it set
// off has settled; for the platform daemon when the request's result or error
// has come, or it cancelled the request.
#include "SessionImpl.h"

#include "Latency.h"
#include "vappliance/Device.h"

#include <malloc.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

namespace sim
{
namespace session
{

namespace
{

// How long the gentle daemon waits, before each audio chunk and before a
// turn's stop, for the speech library's thread to finish what it has in hand.
const int kCatchUpMs = 1000;
// How long the gentle daemon waits after the start of a listening turn for
// the library to load its recognizer.
const int kLoadMs = 10000;
// Samples per chunk: 20 ms (gentle), 10 ms (platform) of 16 kHz audio.
const size_t kGentleChunk = 320;
const size_t kPlatformChunk = 160;
// The platform daemon stops this many chunks after the one that reported the
// end of speech.
const size_t kChunksAfterEnd = 1;

}  // namespace

void Session::addTurnSteps(size_t index)
{
    const Turn& turn = turnAt(index);
    mSteps.push_back({"turn",
                      [this, index, &turn] {
                          // What earlier turns recorded is finished: hand it on.
                          // The turn begins now, whatever the handing on takes.
                          Json::Value entry;
                          entry["t"] = Json::Int64(mTranscript.elapsedMs());
                          mTranscript.flush();
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
                          mStartRefused = false;
                          mEndOfSpeechChunk = 0;
                          mEngineStopped = false;
                          mFeedSilence = false;
                          mTurnFirstEntry = record(entry);
                          mAnswered = false;
                          mCancelled = false;
                          if (!turn.device.isNull()) {
                              std::string error;
                              if (!vapp::applyDescription(turn.device, mScenario.dir, &error)) {
                                  record(note("the turn's device description was not applied: " + error));
                                  mExit = kExitFailed;
                              }
                          }
                          return true;
                      },
                      0});
    if (turn.reload)
        addReloadSteps();
    addPrivateData(turn.privateData);
    if (platform()) {
        mSteps.push_back(
            {"set_commands",
             [this] {
                 // Before every start, with a handle of its own; no start
                 // without a command or when the plug-in refuses them.
                 mCommandHandle = mNextCommandHandle++;
                 const int result = invoke(call("MarlEngine_set_commands", args({mCommandHandle})),
                                           [&] { return mEngine.set_commands(mCommandHandle); });
                 if (mScenario.commands.empty()) {
                     record(note("the daemon does not start: there is no command"));
                     mStartRefused = true;
                 } else if (result != 0) {
                     record(note("the daemon does not start: set_commands failed with " + std::to_string(result)));
                     mStartRefused = true;
                 }
                 return true;
             },
             0});
    }
    mSteps.push_back({"start",
                      [this, &turn] {
                          if (mStartRefused)
                              return true;
                          mListen(turn.listen ? 1 : 0);
                          if (!turn.listen && mScriptTurn(compact(turn.server).c_str()) != 0) {
                              record(note("the speech stand-in refused the turn's server events"));
                              mExit = kExitFailed;
                          }
                          mActions = 0;
                          mResults = 0;
                          mChunk = 0;
                          invoke(call("MarlEngine_start", args({true})),
                                 [&] { return mEngine.start(true); });
                          // A listening library may load its recognizer first:
                          // the gentle daemon lets it, so that the feed keeps its pace.
                          if (turn.listen && !platform())
                              mWaitIdle(kLoadMs);
                          return true;
                      },
                      0});
    const double pace = mOptions.fast ? 0.0 : platform() ? 0.01 : 0.02;
    mSteps.push_back({"feed",
                      [this, &turn] {
                          if (mStartRefused)
                              return true;
                          return platform() ? feedPlatform(turn) : feedGentle(turn);
                      },
                      pace});
    mSteps.push_back({"end",
                      [this, &turn] {
                          if (!mStartRefused)
                              endTurn(turn);
                          mTurnEnded = mTranscript.elapsedMs();
                          mQuietPolls = 0;
                          return true;
                      },
                      0});
    mSteps.push_back({"settle", [this] { return mStartRefused || settle(); }, 0.02});
    mSteps.push_back({"files",
                      [this, &turn] {
                          finishTurn(turn);
                          return true;
                      },
                      0});
}

// Sends one chunk: `count` samples of the turn's audio from `first`, padded
// with silence to `chunkSamples`. Returns the speech detection reported.
int Session::sendChunk(const Turn& turn, size_t first, size_t count, size_t chunkSamples)
{
    std::vector<int16_t> chunk(chunkSamples, 0);
    if (count)
        std::copy(turn.audio.begin() + static_cast<std::ptrdiff_t>(first),
                  turn.audio.begin() + static_cast<std::ptrdiff_t>(first + count), chunk.begin());
    const unsigned bytes = static_cast<unsigned>(chunkSamples * 2);
    int detect = -1;
    Json::Value entry = call("MarlEngine_set_recording_data", args({bytes}));
    entry["chunk"] = Json::UInt(++mChunk);
    if (turn.wordsEndSample > first && turn.wordsEndSample <= first + count)
        entry["wordsEnd"] = true;
    const size_t index = record(entry);
    const int result =
        mEngine.set_recording(chunk.data(), bytes, reinterpret_cast<vcp_speech_detect_e*>(&detect));
    mTranscript.set(index, "ret", result);
    mTranscript.set(index, "speech", detect == -1 ? Json::Value() : Json::Value(detect));
    return detect;
}

bool Session::feedGentle(const Turn& turn)
{
    const size_t first = mChunk * kGentleChunk;
    if (first >= turn.audio.size())
        return true;
    // The library detects speech on its own thread: let it catch up, so that
    // each chunk meets the state the last one left.
    mWaitIdle(kCatchUpMs);
    const size_t count = std::min(kGentleChunk, turn.audio.size() - first);
    sendChunk(turn, first, count, count);
    return first + count >= turn.audio.size();
}

bool Session::feedPlatform(const Turn& turn)
{
    if (mEndOfSpeechChunk && mChunk >= mEndOfSpeechChunk + kChunksAfterEnd && !mEngineStopped) {
        if (!mScenario.restartAfterReject)
            return true;  // the end step stops recorder and engine
        // Restart after reject: only the engine stops; the recorder goes on.
        record(note("the daemon stops the engine " + std::to_string(kChunksAfterEnd) +
                    " chunk(s) after the reported end of speech; its recorder keeps going"));
        stopOrCancel(turn.cancel);
        mEngineStopped = true;
    }
    const size_t first = mChunk * kPlatformChunk;
    size_t count = 0;
    if (first < turn.audio.size()) {
        count = std::min(kPlatformChunk, turn.audio.size() - first);
    } else if (turn.audio.empty() || mEngineStopped) {
        return true;  // a turn without audio, or the recorder's end after an engine stop
    } else if (!mEndOfSpeechChunk) {
        // A microphone keeps recording: silence, until the plug-in reports
        // the end of speech (the daemon has no time-out of its own; the
        // simulator gives up after the turn's time-out).
        const size_t audioChunks = (turn.audio.size() + kPlatformChunk - 1) / kPlatformChunk;
        const size_t silent = mChunk - audioChunks;
        const size_t kMaxSilenceChunks = static_cast<size_t>(mOptions.turnTimeout * 100);
        if (silent == 0)
            record(note("the audio has ended; the recorder gives silence until the plug-in reports the end of speech"));
        if (silent >= kMaxSilenceChunks) {
            record(note("no end of speech after " + std::to_string(kMaxSilenceChunks / 100) +
                        " s of silence; the simulator stops the turn (its time-out)"));
            return true;
        }
        mFeedSilence = true;
    }
    // The recorder gives whole chunks and the daemon does not wait for the library.
    if (sendChunk(turn, first, count, kPlatformChunk) == 2 && !mEndOfSpeechChunk)
        mEndOfSpeechChunk = mChunk;
    return false;
}

void Session::endTurn(const Turn& turn)
{
    if (!platform()) {
        mWaitIdle(kCatchUpMs);
    } else if (mEngineStopped) {
        record(note("the recorder stops at the end of the audio"));
        return;
    } else if (mEndOfSpeechChunk) {
        record(note("the daemon stops the recorder and the engine " + std::to_string(mChunk - mEndOfSpeechChunk) +
                    " chunk(s) after the one that reported the end of speech"));
    }
    stopOrCancel(turn.cancel);
}

// The platform daemon processes the request from its stop to the request's
// result or error; a cancel ends it.
void Session::stopOrCancel(bool cancel)
{
    mProcessing = !cancel;
    if (cancel) {
        mCancelled = true;
        invoke(call("MarlEngine_cancel", {}), [&] { return mEngine.cancel(); });
    } else {
        invoke(call("MarlEngine_stop", {}), [&] { return mEngine.stop(); });
    }
}

// For the gentle daemon a turn has settled when the speech stand-in has
// delivered everything, no worker thread of the plug-in runs, and every
// action the parser handed over has reached the daemon (an action may wait up
// to 5 s for server speech on a main-loop timer). An action that the plug-in
// dropped never reaches it: after a quiet spell longer than that wait the
// turn counts as settled all the same. The platform daemon is done with the
// turn once the request's result or error came or it cancelled the request;
// without either, as the gentle daemon, but it never waits for the plug-in's
// threads. Neither daemon gives up on a turn by itself; the time-out is the
// simulator's, so that a session that hangs still ends.
bool Session::settle()
{
    const long long now = mTranscript.elapsedMs();
    const Turn* turn = mTurn.load();
    if (turn && turn->cancelAfterMs >= 0 && !mCancelled && !mAnswered && now - mTurnEnded >= turn->cancelAfterMs) {
        record(note("the daemon cancels the request " + std::to_string(turn->cancelAfterMs) + " ms after its stop"));
        stopOrCancel(true);
    }
    if (platform() && (mAnswered || mCancelled))
        return true;
    const bool idle = mWaitIdle(0) == 0;
    const bool threads = !platform() && (ecore_thread_active_get() > 0 || ecore_thread_pending_get() > 0);
    const bool waiting = mActions.load() > mResults.load();
    const bool quietLong = now - mLastActivity.load() > 6000;
    if (idle && !threads && (!waiting || quietLong)) {
        if (++mQuietPolls >= 3) {
            if (waiting)
                record(note("an action that the parser handed over never reached the daemon"));
            return true;
        }
        return false;
    }
    mQuietPolls = 0;
    if (now - mTurnEnded > static_cast<long long>(mOptions.turnTimeout * 1000)) {
        const std::string why = !idle     ? "the speech stand-in still had events to deliver"
                                : threads ? "a worker thread of the plug-in was still running"
                                          : "an action had not reached the daemon";
        std::ostringstream text;
        text << "time-out: the turn did not settle within " << mOptions.turnTimeout << " s (" << why << ")";
        record(note(text.str()));
        mExit = kExitTimedOut;
        mSkipTurns = true;
        while (mSteps.size() > 1 && mSteps[1].name != "next turn")
            mSteps.erase(mSteps.begin() + 1);
        return true;
    }
    return false;
}

void Session::finishTurn(const Turn& turn)
{
    handOverResults(turn);
    scanFiles();
    if (turn.listen)
        noteSpokenAnswers();
    mProcessing = false;
    mTranscript.poll();
    const Json::Value latency = latencyEntry(mTranscript.entriesFrom(mTurnFirstEntry), mTurnNumber);
    if (!latency.isNull())
        record(latency);
    if (mOptions.memory)
        recordMemory();
    mTurn = nullptr;
}

// The process's resident memory and the heap in use, after a turn.
void Session::recordMemory()
{
    long pages = 0, resident = 0;
    if (std::FILE* statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(statm);
    }
    const struct mallinfo2 heap = mallinfo2();
    Json::Value entry;
    entry["kind"] = "memory";
    entry["turn"] = Json::UInt64(mTurnNumber);
    entry["rssBytes"] = Json::Int64(resident * sysconf(_SC_PAGESIZE));
    entry["heapBytes"] = Json::UInt64(heap.uordblks + heap.hblkhd);
    record(entry);
}

// Where the speech service's spoken answer of a listening turn went: a
// playback of the appliance (its WAV file), or raw 24 kHz speech written
// for an outside player, which is copied into a WAV file beside the device's
// other files (DIR/answers/turn-N.wav).
void Session::noteSpokenAnswers()
{
    const std::vector<Json::Value> entries = mTranscript.entriesFrom(mTurnFirstEntry);
    for (const auto& e : entries) {
        std::string text;
        if (e["kind"] == "device" && e["event"] == "audio_playback" && e["file"].isString()) {
            text = "spoken answer: played, " + vapp::devicePath(e["file"].asString());
        } else if (e["kind"] == "file" && e["change"] != "removed" &&
                   fs::path(e["path"].asString()).extension() == ".pcm") {
            const std::string pcm = vapp::hostPath(e["path"].asString());
            const std::string wav = vapp::devicePath("answers/turn-" + std::to_string(mTurnNumber) + ".wav");
            std::string error;
            if (writeSpeechWav(pcm, wav, error))
                text = "spoken answer: " + e["path"].asString() + " (24 kHz), as WAV " + wav;
            else
                text = "spoken answer: " + e["path"].asString() + "; " + error;
        }
        if (!text.empty())
            record(note(text));
    }
}

}  // namespace session
}  // namespace sim
