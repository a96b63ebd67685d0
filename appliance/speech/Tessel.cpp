// The speech library stand-in: Tessel, its recognition manager, and the
// library's own thread, on which every listener call is made.
#include "DeviceDataPull.h"
#include "Script.h"
#include "standin/Observation.h"
#include "standin/SpeechStandIn.h"
#include "voice/Dialogue.h"
#include "voice/Grammar.h"
#include "voice/Recognizer.h"
#include "voice/Voice.h"

#include <asr-nlu/RecognitionAgentResponse.h>
#include <asr-nlu/RecognitionListener.h>
#include <asr-nlu/RecognitionManager.h>
#include <asr-nlu/SpeechDetectionListener.h>
#include <asr-nlu/Tessel.h>
#include <dlog.h>

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace standin {
namespace {

const char* const kTag = "asr-nlu";

// Speech detector: a chunk is loud when the RMS of its samples is above the
// configured threshold. Speech begins after this much loud audio in a row and
// ends after this much quiet audio in a row once it has begun.
const int kBeginMs = 60;
const int kEndMs = 300;

// Listening: a partial result is looked for after each 200 ms of audio, and
// the service's spoken answers are cut into pieces of 200 ms of 24 kHz speech.
const long kPartialEverySamples = 3200;
const int kAnswerRate = 24000;
const size_t kAnswerPieceBytes = 9600;

class SpeechDetector {
public:
    enum Event { None, Begin, End };

    void reset(int threshold, int sampleRate)
    {
        if (sampleRate <= 0)
            sampleRate = 16000;
        mThreshold = threshold;
        mBeginSamples = static_cast<long>(sampleRate) * kBeginMs / 1000;
        mEndSamples = static_cast<long>(sampleRate) * kEndMs / 1000;
        mLoud = mQuiet = 0;
        mBegun = mEnded = false;
    }

    bool begun() const { return mBegun; }
    bool ended() const { return mEnded; }

    Event feed(const std::vector<short>& samples, int& rms)
    {
        double sum = 0.0;
        for (short s : samples)
            sum += static_cast<double>(s) * s;
        rms = samples.empty() ? 0 : static_cast<int>(std::sqrt(sum / samples.size()));
        const long count = static_cast<long>(samples.size());
        const bool loud = rms > mThreshold;
        if (mEnded)
            return None;
        if (!mBegun) {
            mLoud = loud ? mLoud + count : 0;
            if (mLoud < mBeginSamples)
                return None;
            mBegun = true;
            return Begin;
        }
        mQuiet = loud ? 0 : mQuiet + count;
        if (mQuiet < mEndSamples)
            return None;
        mEnded = true;
        return End;
    }

private:
    int mThreshold = 750;
    long mBeginSamples = 960;
    long mEndSamples = 4800;
    long mLoud = 0;
    long mQuiet = 0;
    bool mBegun = false;
    bool mEnded = false;
};

// Logs a problem and tells it on stderr.
void complain(const char* message);

// Where the driver-response turn opened by a driver request stands.
enum class DriverTurn { None, Open, Stopped, Cancelled };

struct Delivery {
    Script events;
    size_t next = 0;
    std::string by;                     // who answers: empty for a script, else "service"
    std::function<void(Delivery&)> more;  // adds the next events once these are delivered
};

class Engine;

// Process-wide state of the library and of the host control API.
std::mutex gMutex;
Tessel* gTessel = nullptr;
std::shared_ptr<Engine> gEngine;
std::deque<Script> gScripts;
int gNextStartResult = -1;   // -1: accept
int gState = 0;
bool gWithoutManager = false;
bool gListening = false;

bool takeScript(Script& out)
{
    std::lock_guard<std::mutex> lock(gMutex);
    if (gScripts.empty())
        return false;
    out = std::move(gScripts.front());
    gScripts.pop_front();
    return true;
}

Json::Value what(const char* name)
{
    Json::Value out(Json::objectValue);
    out["what"] = name;
    return out;
}

class Engine final : public RecognitionManager {
public:
    Engine(const Config& config, IEngineRetrieveDeviceData* data, bool withManager)
        : mConfig(config), mData(data), mWithManager(withManager)
    {
        mDetector.reset(mConfig.mEpdThreshold, mConfig.mSampleRate);
    }

    // Normally stopped by Tessel::shutdown; this covers a process that ends
    // without it.
    ~Engine()
    {
        if (mThread.joinable())
            stopThread();
    }

    bool withManager() const { return mWithManager; }

    void startThread() { mThread = std::thread([this] { run(); }); }

    void stopThread()
    {
        {
            std::lock_guard<std::mutex> lock(mMutex);
            mStopping = true;
            mTasks.clear();
            mParked = nullptr;
        }
        mWake.notify_all();
        mIdle.notify_all();
        if (mThread.joinable())
            mThread.join();
        setLibraryThread(std::thread::id());
    }

    bool waitIdle(int timeoutMs)
    {
        std::unique_lock<std::mutex> lock(mMutex);
        return mIdle.wait_for(lock, std::chrono::milliseconds(timeoutMs < 0 ? 0 : timeoutMs),
                              [this] { return mStopping || idleLocked(); });
    }

    bool startRecognition(bool flag, bool keepContext, recogtype type, devicemode mode) override
    {
        bool accepted = true;
        {
            std::lock_guard<std::mutex> lock(gMutex);
            if (gNextStartResult >= 0)
                accepted = gNextStartResult != 0;
            gNextStartResult = -1;
        }
        Json::Value o = what("startRecognition");
        o["flag"] = flag;
        o["keepContext"] = keepContext;
        o["type"] = static_cast<int>(type);
        o["mode"] = static_cast<int>(mode);
        o["accepted"] = accepted;
        observe(o);
        if (!accepted)
            return false;
        bool listens = false;
        {
            std::lock_guard<std::mutex> lock(gMutex);
            listens = gListening && type != RECOG_TYPE_DRIVER_RESPONSE;
        }
        {
            std::lock_guard<std::mutex> lock(mMutex);
            mTurnOpen = true;
            mTurnType = type;
            mTurnSamples = 0;
            mTurnListens = listens;
            if (type == RECOG_TYPE_DRIVER_RESPONSE)
                mDriverTurn = DriverTurn::Open;
        }
        post([this, listens] {
            mDetector.reset(mConfig.mEpdThreshold, mConfig.mSampleRate);
            observe(pullDeviceData(mData));
            if (listens)
                startListening();
        });
        return true;
    }

    void stopRecognition() override
    {
        observe(what("stopRecognition"));
        bool open = false;
        int type = 0;
        bool listens = false;
        std::function<void()> resume;
        {
            std::lock_guard<std::mutex> lock(mMutex);
            open = mTurnOpen;
            type = mTurnType;
            listens = mTurnListens;
            mTurnOpen = false;
            mTurnListens = false;
            if (open && type == RECOG_TYPE_DRIVER_RESPONSE) {
                mDriverTurn = DriverTurn::Stopped;
                resume = std::move(mParked);
                mParked = nullptr;
            }
        }
        if (resume)
            post(std::move(resume));
        if (!open || type == RECOG_TYPE_DRIVER_RESPONSE)
            return;
        auto delivery = std::make_shared<Delivery>();
        const bool scripted = takeScript(delivery->events);
        if (listens)
            post([this, delivery, scripted] { finishListening(delivery, scripted); });
        else if (scripted)
            post([this, delivery] { deliverNext(delivery); });
    }

    void cancelRecognition() override
    {
        observe(what("cancelRecognition"));
        bool open = false;
        int type = 0;
        bool listens = false;
        {
            std::lock_guard<std::mutex> lock(mMutex);
            open = mTurnOpen;
            type = mTurnType;
            listens = mTurnListens;
            mTurnOpen = false;
            mTurnListens = false;
            if (open && type == RECOG_TYPE_DRIVER_RESPONSE) {
                mDriverTurn = DriverTurn::Cancelled;
                mParked = nullptr;
                if (idleLocked())
                    mIdle.notify_all();
            }
        }
        Script dropped;
        if (open && type != RECOG_TYPE_DRIVER_RESPONSE)
            takeScript(dropped);
        if (listens)
            post([this] { mRecognizer.abandon(); });
    }

    void processText(unsigned char* /*buffer*/, int length) override
    {
        Json::Value o = what("processText");
        o["length"] = length;
        observe(o);
    }

    void processListEvent(std::string listEvent) override
    {
        Json::Value o = what("processListEvent");
        o["text"] = listEvent;
        observe(o);
    }

    void processHepticEvent(std::string hapticEvent) override
    {
        Json::Value o = what("processHepticEvent");
        o["text"] = hapticEvent;
        observe(o);
    }

    void processDriverResponse(std::string driverResponse) override
    {
        Json::Value o = what("processDriverResponse");
        o["text"] = driverResponse;
        observe(o);
        std::lock_guard<std::mutex> lock(mMutex);
        mDriverResponse = driverResponse;
    }

    void processAudio(short* samples, int sampleCount, bool epd) override
    {
        if (!samples || sampleCount <= 0) {
            dlog_print(DLOG_ERROR, kTag, "processAudio: no samples (%p, %d)", static_cast<void*>(samples),
                       sampleCount);
            return;
        }
        long total = 0;
        bool detect = false;
        bool listen = false;
        {
            std::lock_guard<std::mutex> lock(mMutex);
            mTurnSamples += sampleCount;
            total = mTurnSamples;
            detect = mTurnOpen && mTurnType != RECOG_TYPE_DRIVER_RESPONSE && mConfig.mInternalSpeechDetector;
            listen = mTurnOpen && mTurnListens;
        }
        Json::Value o = what("audio");
        o["samples"] = sampleCount;
        o["total"] = static_cast<Json::Int64>(total);
        o["epd"] = epd;
        observe(o);
        if (detect || listen) {
            std::vector<short> chunk(samples, samples + sampleCount);
            post([this, detect, listen, chunk = std::move(chunk)] {
                if (detect)
                    detectSpeech(chunk);
                if (listen)
                    listenTo(chunk);
            });
        }
    }

    void setCommandDocument(const std::string& document)
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mDocument = document;
        mDocumentChanged = true;
    }

    void setRecognitionListener(RecognitionListener* listener) override
    {
        {
            std::lock_guard<std::mutex> lock(mMutex);
            mRecognitionListener = listener;
        }
        observe(what("setRecognitionListener"));
    }

    void setSpeechDetectionListener(SpeechDetectionListener* listener, int option) override
    {
        {
            std::lock_guard<std::mutex> lock(mMutex);
            mSpeechListener = listener;
        }
        Json::Value o = what("setSpeechDetectionListener");
        o["option"] = option;
        observe(o);
    }

    void reservedOperation1() override {}
    void reservedOperation2() override {}

    int getState() override
    {
        std::lock_guard<std::mutex> lock(gMutex);
        return gState;
    }

private:
    bool idleLocked() const { return mTasks.empty() && !mBusy && !mParked; }

    void post(std::function<void()> task)
    {
        {
            std::lock_guard<std::mutex> lock(mMutex);
            if (mStopping)
                return;
            mTasks.push_back(std::move(task));
        }
        mWake.notify_all();
    }

    void run()
    {
        setLibraryThread(std::this_thread::get_id());
        std::unique_lock<std::mutex> lock(mMutex);
        for (;;) {
            mWake.wait(lock, [this] { return mStopping || !mTasks.empty(); });
            if (mStopping)
                break;
            std::function<void()> task = std::move(mTasks.front());
            mTasks.pop_front();
            mBusy = true;
            lock.unlock();
            task();
            task = nullptr;
            lock.lock();
            mBusy = false;
            if (idleLocked())
                mIdle.notify_all();
        }
    }

    // Sleeps on the library's thread; shutdown cuts it short.
    void sleepMs(int ms)
    {
        std::unique_lock<std::mutex> lock(mMutex);
        mWake.wait_for(lock, std::chrono::milliseconds(ms), [this] { return mStopping; });
    }

    RecognitionListener* recognitionListener()
    {
        std::lock_guard<std::mutex> lock(mMutex);
        return mRecognitionListener;
    }

    SpeechDetectionListener* speechListener()
    {
        std::lock_guard<std::mutex> lock(mMutex);
        return mSpeechListener;
    }

    void detectSpeech(const std::vector<short>& chunk)
    {
        int rms = 0;
        const SpeechDetector::Event event = mDetector.feed(chunk, rms);
        SpeechDetectionListener* listener = speechListener();
        if (listener && mConfig.mRmsComputation)
            listener->onRmsChanged(rms);
        if (event == SpeechDetector::None)
            return;
        Json::Value o = what("speech");
        o["event"] = event == SpeechDetector::Begin ? "begin" : "end";
        observe(o);
        if (!listener)
            return;
        if (event == SpeechDetector::Begin)
            listener->onBeginningOfSpeech();
        else
            listener->onEndOfSpeech();
    }

    // Delivers one event, then queues the rest behind whatever the listener
    // call queued (a driver-response turn's device data comes first).
    void deliverNext(std::shared_ptr<Delivery> delivery)
    {
        if (delivery->next >= delivery->events.size()) {
            if (!delivery->more)
                return;
            std::function<void(Delivery&)> more = std::move(delivery->more);
            delivery->more = nullptr;
            more(*delivery);
            if (delivery->next >= delivery->events.size())
                return;
        }
        const ScriptEvent& event = delivery->events[delivery->next++];
        Json::Value o = what("deliver");
        if (!delivery->by.empty())
            o["by"] = delivery->by;
        o["event"] = event.json;
        observe(o);

        std::function<void()> resume = [this, delivery] { deliverNext(delivery); };
        RecognitionListener* listener = recognitionListener();
        const Json::Value& e = event.json;
        const std::string engineType = e.get("engineType", "CLOUD").asString();
        const int confidence = e.get("confidence", 1).asInt();
        if (event.type == "partial") {
            if (listener)
                listener->onPartialResult(e["text"].asString());
        } else if (event.type == "asr") {
            if (listener)
                listener->onASRResult(e["text"].asString(), engineType, confidence);
        } else if (event.type == "nlu") {
            if (listener)
                deliverNlu(listener, event, engineType, confidence);
        } else if (event.type == "error") {
            if (listener)
                listener->onError(static_cast<RecognitionListener::RecognitionErrorCode>(e["code"].asInt()),
                                  e.get("message", "").asString());
        } else if (event.type == "wait") {
            sleepMs(e["ms"].asInt());
        } else if (event.type == "action") {
            Json::Value action(Json::objectValue);
            for (const char* key : {"agent", "actionType", "commandName", "actionName", "spokenText"})
                action[key] = e.get(key, "").asString();
            const Json::Value& raw = e["rawJson"];
            action["rawJson"] = raw.isString() ? raw.asString() : raw.isNull() ? std::string() : toText(raw);
            Json::Value data(Json::objectValue);
            data["action"] = action;
            parseAction(listener, e, toText(data));
        } else if (event.type == "driverRequest") {
            Json::Value data(Json::objectValue);
            data["driverRequest"] = e["request"];
            {
                std::lock_guard<std::mutex> lock(mMutex);
                mDriverTurn = DriverTurn::None;
                mDriverResponse.clear();
            }
            parseAction(listener, e, toText(data));
            std::lock_guard<std::mutex> lock(mMutex);
            if (mDriverTurn == DriverTurn::Cancelled)
                return;
            if (mDriverTurn == DriverTurn::Open) {
                mParked = std::move(resume);
                return;
            }
        }
        post(std::move(resume));
    }

    // --- listening: the recognizer and the appliance's speech service -------

    // Opens the recognizer on first use and gives it the grammar of the
    // latest command document. False when recognition cannot run.
    bool prepareRecognizer()
    {
        if (mConfig.mSampleRate != 16000) {
            listeningProblem("the recognizer takes 16000 Hz audio; the library is configured for " +
                             std::to_string(mConfig.mSampleRate) + " Hz");
            return false;
        }
        if (!mRecognizer.isOpen()) {
            if (!mRecognizerError.empty()) {
                mListenProblem = "speech recognition is not available: " + mRecognizerError;
                return false;
            }
            std::string error;
            if (!mRecognizer.open(error)) {
                mRecognizerError = error;
                listeningProblem("speech recognition is not available: " + error);
                return false;
            }
        }
        std::string document;
        bool changed = false;
        {
            std::lock_guard<std::mutex> lock(mMutex);
            document = mDocument;
            changed = mDocumentChanged;
            mDocumentChanged = false;
        }
        if (changed || !mGrammarReady)
            buildGrammar(document);
        return mGrammarReady;
    }

    void buildGrammar(const std::string& document)
    {
        Json::Value o = what("grammar");
        std::vector<voice::Command> commands;
        std::string error;
        if (document.empty()) {
            o["problem"] = "no command document yet: the grammar holds the service's requests only";
        } else if (!voice::readCommands(document, commands, error)) {
            o["problem"] = error + ": the grammar holds the service's requests only";
            complain(error.c_str());
        }
        mGrammar = voice::buildGrammar(commands, [this](const std::string& w) { return mRecognizer.knows(w); });
        Json::Value unknown(Json::arrayValue);
        for (const std::string& word : mGrammar.unknownWords) {
            if (!mReportedWords.insert(word).second)
                continue;
            unknown.append(word);
            const std::string message = "the recognizer's dictionary has no word \"" + word +
                                        "\"; it is left out of the grammar";
            complain(message.c_str());
        }
        Json::Value kept(Json::arrayValue);
        for (const voice::GrammarCommand& c : mGrammar.commands)
            kept.append(c.text);
        Json::Value leftOut(Json::arrayValue);
        for (const std::string& why : mGrammar.leftOut)
            leftOut.append(why);
        o["commands"] = kept;
        o["leftOut"] = leftOut;
        o["unknownWords"] = unknown;
        mGrammarReady = mRecognizer.setGrammar(mGrammar.jsgf, error);
        if (!mGrammarReady) {
            o["problem"] = error;
            mListenProblem = "the recognizer has no grammar: " + error;
            complain(error.c_str());
        }
        observe(o);
    }

    void listeningProblem(const std::string& problem)
    {
        mListenProblem = problem;
        Json::Value o = what("recognition");
        o["problem"] = problem;
        observe(o);
        complain(problem.c_str());
    }

    void startListening()
    {
        mListenProblem.clear();
        mListening = prepareRecognizer();
        mHeardSamples = 0;
        mPartial.clear();
        if (mListening)
            mRecognizer.start();
    }

    void listenTo(const std::vector<short>& chunk)
    {
        if (!mListening)
            return;
        const long before = mHeardSamples;
        mHeardSamples += static_cast<long>(chunk.size());
        mRecognizer.feed(chunk.data(), chunk.size());
        // Partial results while speech goes on.
        if (before / kPartialEverySamples == mHeardSamples / kPartialEverySamples || !mDetector.begun() ||
            mDetector.ended())
            return;
        const std::string partial = mRecognizer.partial();
        if (partial.empty() || partial == mPartial)
            return;
        mPartial = partial;
        Json::Value e(Json::objectValue);
        e["type"] = "partial";
        e["text"] = partial;
        observeDelivery("recognizer", e);
        if (RecognitionListener* listener = recognitionListener())
            listener->onPartialResult(partial);
    }

    void observeDelivery(const char* by, const Json::Value& event)
    {
        Json::Value o = what("deliver");
        o["by"] = by;
        o["event"] = event;
        observe(o);
    }

    // The end of a listening turn: the embedded result, then the script if
    // the turn has one, else the answer of the appliance's speech service.
    void finishListening(std::shared_ptr<Delivery> delivery, bool scripted)
    {
        voice::Heard heard;
        heard.speech = mDetector.begun();
        if (mListening) {
            mListening = false;
            const voice::Recognition r = mRecognizer.finish();
            const std::string said = r.accepted ? voice::matchCommand(mGrammar, r.text) : std::string();
            heard.command = !said.empty();
            heard.speech = heard.speech || r.accepted;
            if (r.accepted)
                heard.text = heard.command ? said : r.text;
            Json::Value o = what("recognition");
            o["text"] = r.text;
            o["score"] = r.score;
            o["accepted"] = r.accepted;
            o["command"] = heard.command;
            o["speechDetected"] = mDetector.begun();
            observe(o);
            Json::Value e(Json::objectValue);
            e["type"] = "asr";
            e["text"] = heard.command ? said : "";
            e["engineType"] = "EMBEDDED";
            e["confidence"] = heard.command ? 1 : 0;
            observeDelivery("recognizer", e);
            if (RecognitionListener* listener = recognitionListener())
                listener->onASRResult(e["text"].asString(), "EMBEDDED", e["confidence"].asInt());
        }
        if (!scripted) {
            auto dialogue = std::make_shared<voice::Dialogue>();
            delivery->by = "service";
            if (!mListenProblem.empty()) {
                // Nothing was recognized: the service cannot tell what was said.
                voice::Step step;
                step.events.append(Json::Value(Json::objectValue));
                step.events[0]["type"] = "error";
                step.events[0]["code"] = static_cast<int>(RecognitionListener::RECOGNITION_ERROR_UNKNOWN);
                step.events[0]["message"] = mListenProblem;
                addStep(*delivery, step, dialogue);
            } else {
                addStep(*delivery, dialogue->begin(heard), dialogue);
            }
        }
        deliverNext(delivery);
    }

    // Adds the events of one step of the service's dialogue; speaks the
    // answer of an "nlu" event that has one.
    void addStep(Delivery& delivery, const voice::Step& step, std::shared_ptr<voice::Dialogue> dialogue)
    {
        for (const Json::Value& json : step.events) {
            ScriptEvent event;
            event.json = json;
            event.type = json["type"].asString();
            if (event.type == "nlu" && json.isMember("speak"))
                speak(event);
            delivery.events.push_back(std::move(event));
        }
        if (step.awaitsReply)
            delivery.more = [this, dialogue](Delivery& d) {
                std::string reply;
                {
                    std::lock_guard<std::mutex> lock(mMutex);
                    reply = mDriverResponse;
                }
                addStep(d, dialogue->reply(reply), dialogue);
            };
    }

    void speak(ScriptEvent& event)
    {
        voice::SpeechOptions options;
        options.sampleRate = kAnswerRate;
        std::vector<int16_t> samples;
        std::string error;
        if (!voice::synthesize(event.json["speak"].asString(), options, samples, error)) {
            Json::Value o = what("synthesis");
            o["problem"] = error;
            observe(o);
            complain(("the spoken answer cannot be synthesized: " + error).c_str());
            event.json["pieces"] = 0;
            return;
        }
        event.speech.resize(samples.size() * 2);
        for (size_t i = 0; i < samples.size(); ++i) {
            const uint16_t v = static_cast<uint16_t>(samples[i]);
            event.speech[2 * i] = static_cast<char>(v & 0xff);
            event.speech[2 * i + 1] = static_cast<char>(v >> 8);
        }
        event.json["speechMs"] = static_cast<Json::UInt>(samples.size() * 1000 / kAnswerRate);
        event.json["pieces"] = static_cast<Json::UInt>((event.speech.size() + kAnswerPieceBytes - 1) / kAnswerPieceBytes);
    }

    void deliverNlu(RecognitionListener* listener, const ScriptEvent& event, const std::string& engineType,
                    int confidence)
    {
        const Json::Value& e = event.json;
        const std::string text = e["text"].asString();
        const bool last = e.get("last", true).asBool();
        const std::string& speech = event.speech;
        size_t pieces = e.get("pieces", 1).asUInt();
        if (pieces == 0 || speech.empty()) {
            listener->onNLUResult(text, engineType, confidence, nullptr, 0, last);
            return;
        }
        // Pieces end on sample boundaries and none is empty.
        const size_t samples = speech.size() / 2;
        if (pieces > samples)
            pieces = samples > 0 ? samples : 1;
        for (size_t i = 0; i < pieces; ++i) {
            const size_t begin = i * samples / pieces * 2;
            const size_t end = i + 1 == pieces ? speech.size() : (i + 1) * samples / pieces * 2;
            listener->onNLUResult(text, engineType, confidence, speech.data() + begin,
                                  static_cast<unsigned int>(end - begin), i + 1 == pieces ? last : false);
        }
    }

    void parseAction(RecognitionListener* listener, const Json::Value& e, const std::string& data)
    {
        RecognitionAgentResponse response;
        response.setEngineType("CLOUD");
        response.setResponseType(e.get("responseType", 1).asInt());
        response.setIsLast(true);
        response.setData(data);
        if (listener)
            listener->onParseAction(&response);
    }

    const Config mConfig;
    IEngineRetrieveDeviceData* const mData;
    const bool mWithManager;
    std::thread mThread;

    std::mutex mMutex;   // guards everything below but the detector
    std::condition_variable mWake;
    std::condition_variable mIdle;
    std::deque<std::function<void()>> mTasks;
    bool mStopping = false;
    bool mBusy = false;
    RecognitionListener* mRecognitionListener = nullptr;
    SpeechDetectionListener* mSpeechListener = nullptr;
    bool mTurnOpen = false;
    int mTurnType = 0;
    long mTurnSamples = 0;
    DriverTurn mDriverTurn = DriverTurn::None;
    std::function<void()> mParked;   // the rest of a delivery, held until the driver-response turn stops
    bool mTurnListens = false;       // the voice turn in progress is recognized
    std::string mDriverResponse;     // the last driver response, since the last driver request
    std::string mDocument;           // the last command document
    bool mDocumentChanged = false;

    // The library's thread only.
    SpeechDetector mDetector;
    voice::Recognizer mRecognizer;
    std::string mRecognizerError;    // why it could not be opened
    voice::Grammar mGrammar;
    bool mGrammarReady = false;
    std::set<std::string> mReportedWords;
    bool mListening = false;         // an utterance is being recognized
    std::string mListenProblem;      // why the turn in progress is not recognized
    long mHeardSamples = 0;
    std::string mPartial;
};

std::shared_ptr<Engine> currentEngine()
{
    std::lock_guard<std::mutex> lock(gMutex);
    return gEngine;
}

Json::Value configJson(const Config& c)
{
    Json::Value o(Json::objectValue);
    o["internalSpeechDetector"] = c.mInternalSpeechDetector;
    o["internalRecorder"] = c.mInternalRecorder;
    o["reservedFlag"] = c.mReservedFlag;
    o["rmsComputation"] = c.mRmsComputation;
    o["configureDuringInit"] = c.mConfigureDuringInit;
    o["sampleRate"] = c.mSampleRate;
    o["serverPort"] = c.mServerPort;
    o["locale"] = c.mLocale;
    o["serverIP"] = c.mServerIP;
    o["reservedText"] = c.mReservedText;
    o["audioBufferFormat"] = static_cast<int>(c.mAudioBufferFormat);
    o["recognitionPath"] = static_cast<int>(c.mRecognitionPath);
    o["epdThreshold"] = c.mEpdThreshold;
    return o;
}

void complain(const char* message)
{
    dlog_print(DLOG_ERROR, kTag, "%s", message);
    std::fprintf(stderr, "asr-nlu: %s\n", message);
}

}  // namespace
}  // namespace standin

using namespace standin;

Tessel::Tessel() {}
Tessel::~Tessel() {}

void Tessel::init(Config config, IEngineRetrieveDeviceData* deviceData)
{
    std::shared_ptr<Engine> engine;
    {
        std::lock_guard<std::mutex> lock(gMutex);
        if (gTessel) {
            complain("Tessel::init: the library is already initialised; Tessel::shutdown comes first");
            return;
        }
        engine = std::make_shared<Engine>(config, deviceData, !gWithoutManager);
        gEngine = engine;
        gTessel = new Tessel();
    }
    Json::Value o = what("init");
    o["config"] = configJson(config);
    o["recognitionManager"] = engine->withManager();
    observe(o);
    engine->startThread();
}

Tessel* Tessel::getInstance()
{
    std::lock_guard<std::mutex> lock(gMutex);
    return gTessel;
}

void Tessel::shutdown()
{
    std::shared_ptr<Engine> engine;
    Tessel* tessel = nullptr;
    {
        std::lock_guard<std::mutex> lock(gMutex);
        if (!gTessel)
            return;
        if (onLibraryThread()) {
            complain("Tessel::shutdown: refused on the library's own thread (from a listener)");
            return;
        }
        engine = std::move(gEngine);
        gEngine = nullptr;
        tessel = gTessel;
        gTessel = nullptr;
        gScripts.clear();
        gNextStartResult = -1;
        gState = 0;
        gWithoutManager = false;
        gListening = false;
    }
    engine->stopThread();
    delete tessel;
    observe(what("shutdown"));
}

RecognitionManager* Tessel::getRecognitionManager()
{
    std::lock_guard<std::mutex> lock(gMutex);
    return gEngine && gEngine->withManager() ? gEngine.get() : nullptr;
}

void Tessel::changeLocale(std::string locale)
{
    Json::Value o = what("changeLocale");
    o["locale"] = locale;
    observe(o);
}

void Tessel::setCommandList(std::string commandList)
{
    Json::Value o = what("setCommandList");
    o["document"] = commandList;
    observe(o);
    if (std::shared_ptr<Engine> engine = currentEngine())
        engine->setCommandDocument(commandList);
}

void Tessel::syncUserData()
{
    observe(what("syncUserData"));
}

extern "C" {

int speech_standin_script_turn(const char* events_json)
{
    Script script;
    std::string error;
    if (!parseScript(events_json, script, error)) {
        std::fprintf(stderr, "speech stand-in: script rejected: %s\n", error.c_str());
        return -1;
    }
    std::lock_guard<std::mutex> lock(gMutex);
    gScripts.push_back(std::move(script));
    return 0;
}

int speech_standin_wait_idle(int timeout_ms)
{
    if (onLibraryThread())
        return -1;
    std::shared_ptr<Engine> engine = currentEngine();
    if (!engine)
        return 0;
    return engine->waitIdle(timeout_ms) ? 0 : -1;
}

void speech_standin_set_start_result(int accepted)
{
    std::lock_guard<std::mutex> lock(gMutex);
    gNextStartResult = accepted ? 1 : 0;
}

void speech_standin_set_state(int state)
{
    std::lock_guard<std::mutex> lock(gMutex);
    gState = state;
}

void speech_standin_set_without_manager(int without_manager)
{
    std::lock_guard<std::mutex> lock(gMutex);
    gWithoutManager = without_manager != 0;
}

void speech_standin_listen(int listen)
{
    std::lock_guard<std::mutex> lock(gMutex);
    gListening = listen != 0;
}

}  // extern "C"
