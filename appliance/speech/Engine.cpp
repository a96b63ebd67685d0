#include "Engine.h"

#include "DeviceDataPull.h"

namespace standin {

Engine::~Engine()
{
    if (mThread.joinable())
        stopThread();
}

void Engine::stopThread()
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

bool Engine::waitIdle(int timeoutMs)
{
    std::unique_lock<std::mutex> lock(mMutex);
    return mIdle.wait_for(lock, std::chrono::milliseconds(timeoutMs < 0 ? 0 : timeoutMs),
                          [this] { return mStopping || idleLocked(); });
}

bool Engine::startRecognition(bool flag, bool keepContext, recogtype type, devicemode mode)
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

void Engine::stopRecognition()
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

void Engine::cancelRecognition()
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

void Engine::processText(unsigned char* /*buffer*/, int length)
{
    observe(what("processText", "length", length));
}

void Engine::processListEvent(std::string listEvent)
{
    observe(what("processListEvent", "text", listEvent));
}

void Engine::processHepticEvent(std::string hapticEvent)
{
    observe(what("processHepticEvent", "text", hapticEvent));
}

void Engine::processDriverResponse(std::string driverResponse)
{
    observe(what("processDriverResponse", "text", driverResponse));
    std::lock_guard<std::mutex> lock(mMutex);
    mDriverResponse = driverResponse;
}

void Engine::processAudio(short* samples, int sampleCount, bool epd)
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

void Engine::setCommandDocument(std::string document)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mDocument = std::move(document);
    mDocumentChanged = true;
}

void Engine::setRecognitionListener(RecognitionListener* listener)
{
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mRecognitionListener = listener;
    }
    observe(what("setRecognitionListener"));
}

void Engine::setSpeechDetectionListener(SpeechDetectionListener* listener, int option)
{
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mSpeechListener = listener;
    }
    observe(what("setSpeechDetectionListener", "option", option));
}

int Engine::getState()
{
    std::lock_guard<std::mutex> lock(gMutex);
    return gState;
}

void Engine::post(std::function<void()> task)
{
    {
        std::lock_guard<std::mutex> lock(mMutex);
        if (mStopping)
            return;
        mTasks.push_back(std::move(task));
    }
    mWake.notify_all();
}

void Engine::run()
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

void Engine::sleepMs(int ms)
{
    std::unique_lock<std::mutex> lock(mMutex);
    mWake.wait_for(lock, std::chrono::milliseconds(ms), [this] { return mStopping; });
}

RecognitionListener* Engine::recognitionListener()
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mRecognitionListener;
}

SpeechDetectionListener* Engine::speechListener()
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mSpeechListener;
}

void Engine::detectSpeech(const std::vector<short>& chunk)
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

void Engine::deliverNext(std::shared_ptr<Delivery> delivery)
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

void Engine::parseAction(RecognitionListener* listener, const Json::Value& e, const std::string& data)
{
    RecognitionAgentResponse response;
    response.setEngineType("CLOUD");
    response.setResponseType(e.get("responseType", 1).asInt());
    response.setIsLast(true);
    response.setData(data);
    if (listener)
        listener->onParseAction(&response);
}

}  // namespace standin
