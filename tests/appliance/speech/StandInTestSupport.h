// Helpers for the tests of the speech and parser stand-ins: an observer that
// keeps every observation, and listeners that record what they are told and
// on which thread.
#pragma once

#include "standin/SpeechStandIn.h"

#include <asr-nlu/RecognitionAgentResponse.h>
#include <asr-nlu/RecognitionListener.h>
#include <asr-nlu/SpeechDetectionListener.h>
#include <json/json.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace marltest {

inline Json::Value parseJson(const std::string& text)
{
    Json::CharReaderBuilder builder;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value out;
    std::string errors;
    if (!reader->parse(text.data(), text.data() + text.size(), &out, &errors))
        return Json::Value("unparsable: " + text);
    return out;
}

// Installs itself as the stand-in's observer for its lifetime.
class Observations {
public:
    Observations() { speech_standin_set_observer(&Observations::receive, this); }
    ~Observations() { speech_standin_set_observer(nullptr, nullptr); }
    Observations(const Observations&) = delete;
    Observations& operator=(const Observations&) = delete;

    std::vector<Json::Value> all()
    {
        std::lock_guard<std::mutex> lock(mMutex);
        return mItems;
    }

    std::vector<Json::Value> of(const std::string& what)
    {
        std::vector<Json::Value> out;
        for (const Json::Value& item : all())
            if (item["what"].asString() == what)
                out.push_back(item);
        return out;
    }

    // The "what" of every observation, in order.
    std::vector<std::string> sequence()
    {
        std::vector<std::string> out;
        for (const Json::Value& item : all())
            out.push_back(item["what"].asString());
        return out;
    }

private:
    static void receive(const char* json, void* self)
    {
        auto* me = static_cast<Observations*>(self);
        std::lock_guard<std::mutex> lock(me->mMutex);
        me->mItems.push_back(parseJson(json));
    }

    std::mutex mMutex;
    std::vector<Json::Value> mItems;
};

// Records every listener call with its arguments and its thread.
class RecordingListener : public RecognitionListener, public SpeechDetectionListener {
public:
    struct Call {
        std::string name;
        std::thread::id thread;
        Json::Value args;
        std::string bytes;   // onNLUResult: the speech piece
        bool nullBuffer = false;
    };

    std::vector<Call> calls()
    {
        std::lock_guard<std::mutex> lock(mMutex);
        return mCalls;
    }

    std::vector<std::string> names()
    {
        std::vector<std::string> out;
        for (const Call& call : calls())
            out.push_back(call.name);
        return out;
    }

    // Runs inside onParseAction, after the call is recorded.
    std::function<void(RecognitionAgentResponse*)> parseHook;

    void onPartialResult(std::string result) override
    {
        Json::Value args;
        args["text"] = result;
        add("onPartialResult", args);
    }

    void onASRResult(std::string result, std::string engineType, int confidence) override
    {
        Json::Value args;
        args["text"] = result;
        args["engineType"] = engineType;
        args["confidence"] = confidence;
        add("onASRResult", args);
    }

    void onNLUResult(std::string result, std::string engineType, int confidence, const char* buffer,
                     unsigned int length, bool last) override
    {
        Call call;
        call.name = "onNLUResult";
        call.args["text"] = result;
        call.args["engineType"] = engineType;
        call.args["confidence"] = confidence;
        call.args["length"] = static_cast<int>(length);
        call.args["last"] = last;
        call.nullBuffer = buffer == nullptr;
        if (buffer)
            call.bytes.assign(buffer, length);
        add(call);
    }

    void onError(RecognitionErrorCode code, std::string message) override
    {
        Json::Value args;
        args["code"] = static_cast<int>(code);
        args["message"] = message;
        add("onError", args);
    }

    void onParseAction(RecognitionAgentResponse* response) override
    {
        Json::Value args;
        args["engineType"] = response->getEngineType();
        args["responseType"] = response->getResponseType();
        args["isLast"] = response->getIsLast();
        args["data"] = response->getData();
        add("onParseAction", args);
        if (parseHook)
            parseHook(response);
    }

    void onBeginningOfSpeech() override { add("onBeginningOfSpeech", Json::Value()); }
    void onEndOfSpeech() override { add("onEndOfSpeech", Json::Value()); }
    void onRmsChanged(int rms) override
    {
        Json::Value args;
        args["rms"] = rms;
        add("onRmsChanged", args);
    }

private:
    void add(const std::string& name, const Json::Value& args)
    {
        Call call;
        call.name = name;
        call.args = args;
        add(call);
    }

    void add(Call call)
    {
        call.thread = std::this_thread::get_id();
        std::lock_guard<std::mutex> lock(mMutex);
        mCalls.push_back(std::move(call));
    }

    std::mutex mMutex;
    std::vector<Call> mCalls;
};

// `ms` milliseconds of a 16 kHz sine of the given amplitude (0: silence).
inline std::vector<short> sine16k(int ms, double amplitude)
{
    std::vector<short> out(static_cast<size_t>(ms) * 16);
    for (size_t i = 0; i < out.size(); ++i)
        out[i] = static_cast<short>(std::lround(amplitude * std::sin(2.0 * M_PI * 300.0 * i / 16000.0)));
    return out;
}

}  // namespace marltest
