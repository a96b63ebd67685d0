// The speech library stand-in's engine: its recognition manager and the
// library's own thread, on which every listener call is made. Shared by the
// sources of the library only.
#pragma once

#include "Script.h"
#include "SpeechDetector.h"
#include "standin/Observation.h"
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

const char* const kTag = "asr-nlu";

// Listening: a partial result is looked for after each 200 ms of audio, and
// the service's spoken answers are cut into pieces of 200 ms of 24 kHz speech.
const long kPartialEverySamples = 3200;
const int kAnswerRate = 24000;
const size_t kAnswerPieceBytes = 9600;

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
extern std::mutex gMutex;
extern Tessel* gTessel;
extern std::shared_ptr<Engine> gEngine;
extern std::deque<Script> gScripts;
extern int gNextStartResult;   // -1: accept
extern int gState;
extern bool gWithoutManager;
extern bool gListening;

// Takes the next scripted turn; false when there is none.
bool takeScript(Script& out);
// An observation object with "what" set, and one member more when given.
Json::Value what(const char* name);
Json::Value what(const char* name, const char* key, Json::Value value);

class Engine final : public RecognitionManager {
public:
    Engine(const Config& config, IEngineRetrieveDeviceData* data, bool withManager)
        : mConfig(config), mData(data), mWithManager(withManager)
    {
        mDetector.reset(mConfig.mEpdThreshold, mConfig.mSampleRate);
    }

    // Normally stopped by Tessel::shutdown; this covers a process that ends
    // without it.
    ~Engine();

    bool withManager() const { return mWithManager; }

    void startThread() { mThread = std::thread([this] { run(); }); }

    void stopThread();

    bool waitIdle(int timeoutMs);

    bool startRecognition(bool flag, bool keepContext, recogtype type, devicemode mode) override;

    void stopRecognition() override;

    void cancelRecognition() override;

    void processText(unsigned char* /*buffer*/, int length) override;

    void processListEvent(std::string listEvent) override;

    void processHepticEvent(std::string hapticEvent) override;

    void processDriverResponse(std::string driverResponse) override;

    void processAudio(short* samples, int sampleCount, bool epd) override;

    void setCommandDocument(std::string document);

    void setRecognitionListener(RecognitionListener* listener) override;

    void setSpeechDetectionListener(SpeechDetectionListener* listener, int option) override;

    void reservedOperation1() override {}
    void reservedOperation2() override {}

    int getState() override;

private:
    bool idleLocked() const { return mTasks.empty() && !mBusy && !mParked; }

    void post(std::function<void()> task);

    void run();

    // Sleeps on the library's thread; shutdown cuts it short.
    void sleepMs(int ms);

    RecognitionListener* recognitionListener();

    SpeechDetectionListener* speechListener();

    void detectSpeech(const std::vector<short>& chunk);

    // Delivers one event, then queues the rest behind whatever the listener
    // call queued (a driver-response turn's device data comes first).
    void deliverNext(std::shared_ptr<Delivery> delivery);

    // --- listening: the recognizer and the appliance's speech service -------

    // Opens the recognizer on first use and gives it the grammar of the
    // latest command document. False when recognition cannot run.
    bool prepareRecognizer();
    // When the recognizer began loading or taking a new grammar (the grammar's workMs).
    std::chrono::steady_clock::time_point mWorkStart;

    void buildGrammar(const std::string& document);

    void listeningProblem(const std::string& problem);

    void startListening();

    void listenTo(const std::vector<short>& chunk);

    void observeDelivery(const char* by, const Json::Value& event);

    // The end of a listening turn: the embedded result, then the script if
    // the turn has one, else the answer of the appliance's speech service.
    void finishListening(std::shared_ptr<Delivery> delivery, bool scripted);

    // Adds the events of one step of the service's dialogue; speaks the
    // answer of an "nlu" event that has one.
    void addStep(Delivery& delivery, const voice::Step& step, std::shared_ptr<voice::Dialogue> dialogue);

    void speak(ScriptEvent& event);

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

    void parseAction(RecognitionListener* listener, const Json::Value& e, const std::string& data);

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

std::shared_ptr<Engine> currentEngine();

}  // namespace standin
