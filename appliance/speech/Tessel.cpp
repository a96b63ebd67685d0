// The speech library stand-in: Tessel and the host control API.
#include "Engine.h"
#include "standin/Observation.h"
#include "standin/SpeechStandIn.h"

#include <asr-nlu/Tessel.h>
#include <dlog.h>

#include <cstdio>

namespace standin {

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

Json::Value what(const char* name, const char* key, Json::Value value)
{
    Json::Value out = what(name);
    out[key] = std::move(value);
    return out;
}

std::shared_ptr<Engine> currentEngine()
{
    std::lock_guard<std::mutex> lock(gMutex);
    return gEngine;
}

namespace {

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

}  // namespace

void complain(const char* message)
{
    dlog_print(DLOG_ERROR, kTag, "%s", message);
    std::fprintf(stderr, "asr-nlu: %s\n", message);
}

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
    observe(what("changeLocale", "locale", locale));
}

void Tessel::setCommandList(std::string commandList)
{
    // A command list can be large: it is copied into an observation only
    // when someone observes.
    if (observing())
        observe(what("setCommandList", "document", commandList));
    if (std::shared_ptr<Engine> engine = currentEngine())
        engine->setCommandDocument(std::move(commandList));
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
