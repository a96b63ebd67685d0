#include "SpeechFixture.h"

#include <fstream>

using namespace marltest;

namespace {

class SpeechScriptedEventsTest : public SpeechLibraryTest {};

TEST_F(SpeechScriptedEventsTest, EventsAreDeliveredInOrderOnlyAfterStop)
{
    ASSERT_EQ(speech_standin_script_turn(R"([
        {"type":"partial","text":"turn on"},
        {"type":"asr","text":"turn on the light","engineType":"EMBEDDED","confidence":0},
        {"type":"nlu","text":"{\"nlu\":1}","engineType":"CLOUD","confidence":1},
        {"type":"action","agent":"Timer"},
        {"type":"error","code":4,"message":"timed out"}])"),
              0);
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    waitIdle();
    EXPECT_TRUE(listener.calls().empty()) << "nothing comes before the turn is stopped";

    manager->stopRecognition();
    waitIdle();
    EXPECT_EQ(listener.names(), (std::vector<std::string>{"onPartialResult", "onASRResult", "onNLUResult",
                                                          "onParseAction", "onError"}));
    const auto calls = listener.calls();
    ASSERT_EQ(calls.size(), 5u);
    EXPECT_EQ(calls[0].args["text"], "turn on");
    EXPECT_EQ(calls[1].args["text"], "turn on the light");
    EXPECT_EQ(calls[1].args["engineType"], "EMBEDDED");
    EXPECT_EQ(calls[1].args["confidence"], 0);
    EXPECT_EQ(calls[2].args["text"], "{\"nlu\":1}");
    EXPECT_EQ(calls[4].args["code"], 4);
    EXPECT_EQ(calls[4].args["message"], "timed out");

    const auto delivered = observations.of("deliver");
    ASSERT_EQ(delivered.size(), 5u);
    EXPECT_EQ(delivered[0]["event"], parseJson(R"({"type":"partial","text":"turn on"})"));
    EXPECT_EQ(delivered[4]["event"]["type"], "error");
}

TEST_F(SpeechScriptedEventsTest, CancelDropsTheTurnsEvents)
{
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"partial","text":"dropped"}])"), 0);
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    manager->cancelRecognition();
    waitIdle();
    EXPECT_TRUE(listener.calls().empty());

    voiceTurn();
    EXPECT_TRUE(listener.calls().empty()) << "a cancelled turn's events do not come back";

    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"partial","text":"kept"}])"), 0);
    voiceTurn();
    ASSERT_EQ(listener.calls().size(), 1u);
    EXPECT_EQ(listener.calls()[0].args["text"], "kept");
}

TEST_F(SpeechScriptedEventsTest, EachVoiceTurnTakesTheNextScript)
{
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"partial","text":"first"}])"), 0);
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"partial","text":"second"}])"), 0);
    voiceTurn();
    ASSERT_EQ(listener.calls().size(), 1u);
    EXPECT_EQ(listener.calls()[0].args["text"], "first");
    voiceTurn();
    ASSERT_EQ(listener.calls().size(), 2u);
    EXPECT_EQ(listener.calls()[1].args["text"], "second");
}

TEST_F(SpeechScriptedEventsTest, StopWithoutAStartedTurnDeliversNothing)
{
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"partial","text":"waiting"}])"), 0);
    manager->stopRecognition();
    waitIdle();
    EXPECT_TRUE(listener.calls().empty());
    voiceTurn();
    EXPECT_EQ(listener.names(), std::vector<std::string>{"onPartialResult"});
}

TEST_F(SpeechScriptedEventsTest, AsrDefaultsToCloudWithConfidenceOne)
{
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"asr","text":"hello"}])"), 0);
    voiceTurn();
    ASSERT_EQ(listener.calls().size(), 1u);
    EXPECT_EQ(listener.calls()[0].args["engineType"], "CLOUD");
    EXPECT_EQ(listener.calls()[0].args["confidence"], 1);
}

TEST_F(SpeechScriptedEventsTest, SynthesizedSpeechIsSplitIntoPiecesWithTheLastFlagOnTheLast)
{
    ASSERT_EQ(speech_standin_script_turn(R"([
        {"type":"nlu","text":"a","speechBytes":4800,"pieces":3,"last":true},
        {"type":"nlu","text":"b","speechBytes":4800,"pieces":2,"last":false}])"),
              0);
    voiceTurn();
    const auto calls = listener.calls();
    ASSERT_EQ(calls.size(), 5u);
    std::string speech;
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(calls[i].nullBuffer);
        EXPECT_EQ(calls[i].args["length"], 1600);
        EXPECT_EQ(calls[i].args["last"], i == 2);
        speech += calls[i].bytes;
    }
    EXPECT_EQ(calls[3].args["last"], false);
    EXPECT_EQ(calls[4].args["last"], false);

    // A quiet tone: not silence, and no sample above 1000.
    int peak = 0;
    for (size_t i = 0; i + 1 < speech.size(); i += 2) {
        const short sample = static_cast<short>(static_cast<unsigned char>(speech[i]) |
                                                (static_cast<unsigned char>(speech[i + 1]) << 8));
        peak = std::max(peak, std::abs(static_cast<int>(sample)));
    }
    EXPECT_GT(peak, 500);
    EXPECT_LE(peak, 1000);
}

TEST_F(SpeechScriptedEventsTest, SpeechFileArrivesByteForByte)
{
    const std::string path = device.path("speech.raw");
    std::string content;
    for (int i = 0; i < 1001; ++i)
        content.push_back(static_cast<char>(i * 7));
    std::ofstream(path, std::ios::binary) << content;

    Json::Value event;
    event["type"] = "nlu";
    event["text"] = "t";
    event["speechFile"] = path;
    event["pieces"] = 4;
    Json::Value script(Json::arrayValue);
    script.append(event);
    ASSERT_EQ(speech_standin_script_turn(Json::writeString(Json::StreamWriterBuilder(), script).c_str()), 0);
    voiceTurn();

    const auto calls = listener.calls();
    ASSERT_EQ(calls.size(), 4u);
    std::string received;
    for (size_t i = 0; i < calls.size(); ++i) {
        received += calls[i].bytes;
        if (i + 1 < calls.size()) {
            EXPECT_EQ(calls[i].bytes.size() % 2, 0u) << "pieces end on sample boundaries";
        }
    }
    EXPECT_EQ(received, content);
    EXPECT_EQ(calls.back().args["last"], true);
}

TEST_F(SpeechScriptedEventsTest, NluWithoutSpeechOrWithZeroPiecesIsOneCallWithANullBuffer)
{
    ASSERT_EQ(speech_standin_script_turn(R"([
        {"type":"nlu","text":"none"},
        {"type":"nlu","text":"zero","speechBytes":960,"pieces":0,"last":true}])"),
              0);
    voiceTurn();
    const auto calls = listener.calls();
    ASSERT_EQ(calls.size(), 2u);
    for (const auto& call : calls) {
        EXPECT_TRUE(call.nullBuffer);
        EXPECT_EQ(call.args["length"], 0);
        EXPECT_EQ(call.args["last"], true);
    }
}

TEST_F(SpeechScriptedEventsTest, ActionIsACloudNluResponseCarryingTheAction)
{
    ASSERT_EQ(speech_standin_script_turn(R"([
        {"type":"action","agent":"Timer","actionType":"Keep Context","commandName":"timer.start",
         "actionName":"Start Timer","spokenText":"Starting","rawJson":{"time":"00:05:00"}},
        {"type":"action","agent":"Music","rawJson":"{\"raw\":true}","responseType":3}])"),
              0);
    voiceTurn();
    const auto calls = listener.calls();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].args["engineType"], "CLOUD");
    EXPECT_EQ(calls[0].args["responseType"], 1);
    EXPECT_EQ(calls[0].args["isLast"], true);
    const Json::Value data = parseJson(calls[0].args["data"].asString());
    const Json::Value& action = data["action"];
    EXPECT_EQ(action["agent"], "Timer");
    EXPECT_EQ(action["actionType"], "Keep Context");
    EXPECT_EQ(action["commandName"], "timer.start");
    EXPECT_EQ(action["actionName"], "Start Timer");
    EXPECT_EQ(action["spokenText"], "Starting");
    EXPECT_EQ(parseJson(action["rawJson"].asString()), parseJson(R"({"time":"00:05:00"})"));

    EXPECT_EQ(calls[1].args["responseType"], 3);
    const Json::Value second = parseJson(calls[1].args["data"].asString());
    EXPECT_EQ(second["action"]["rawJson"], "{\"raw\":true}");
    EXPECT_EQ(second["action"]["spokenText"], "");
}

TEST_F(SpeechScriptedEventsTest, WaitHoldsTheNextEventBack)
{
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"partial","text":"a"},{"type":"wait","ms":200},
                                             {"type":"partial","text":"b"}])"),
              0);
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    waitIdle();
    const auto before = std::chrono::steady_clock::now();
    manager->stopRecognition();
    waitIdle();
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(200));
    EXPECT_EQ(listener.names(), (std::vector<std::string>{"onPartialResult", "onPartialResult"}));
}

class SpeechDriverRequestTest : public SpeechLibraryTest {
protected:
    const char* kScript = R"([
        {"type":"driverRequest","request":{"Server Reqeust":{"agent":"Timer",
            "action":{"name":"Information Timer Request"},"data":{}}}},
        {"type":"nlu","text":"answer"},
        {"type":"action","agent":"Timer"}])";
};

TEST_F(SpeechDriverRequestTest, DriverRequestIsACloudNluResponseCarryingTheRequest)
{
    ASSERT_EQ(speech_standin_script_turn(kScript), 0);
    voiceTurn();
    const auto calls = listener.calls();
    ASSERT_GE(calls.size(), 1u);
    EXPECT_EQ(calls[0].name, "onParseAction");
    EXPECT_EQ(calls[0].args["engineType"], "CLOUD");
    EXPECT_EQ(calls[0].args["responseType"], 1);
    EXPECT_EQ(calls[0].args["isLast"], true);
    const Json::Value data = parseJson(calls[0].args["data"].asString());
    EXPECT_EQ(data["driverRequest"]["Server Reqeust"]["agent"], "Timer");
    EXPECT_EQ(data["driverRequest"]["Server Reqeust"]["action"]["name"], "Information Timer Request");
}

TEST_F(SpeechDriverRequestTest, DeliveryGoesOnOnceTheDriverResponseTurnIsStoppedInsideTheParseCall)
{
    listener.parseHook = [&](RecognitionAgentResponse* response) {
        if (parseJson(response->getData()).isMember("driverRequest")) {
            manager->startRecognition(false, false, RECOG_TYPE_DRIVER_RESPONSE, DEVICE_MODE_NORMAL);
            manager->processDriverResponse("{\"reply\":1}");
            manager->stopRecognition();
        }
    };
    ASSERT_EQ(speech_standin_script_turn(kScript), 0);
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    waitIdle();
    manager->stopRecognition();
    waitIdle();
    EXPECT_EQ(listener.names(), (std::vector<std::string>{"onParseAction", "onNLUResult", "onParseAction"}));

    // The driver-response turn's device data goes out before the server's
    // answer arrives.
    std::vector<std::string> order;
    for (const Json::Value& item : observations.all()) {
        const std::string what = item["what"].asString();
        if (what == "deliver")
            order.push_back(item["event"]["type"].asString());
        else if (what == "startRecognition")
            order.push_back("start" + item["type"].asString());
        else if (what == "deviceData" || what == "processDriverResponse" || what == "stopRecognition")
            order.push_back(what);
    }
    EXPECT_EQ(order, (std::vector<std::string>{"start2", "deviceData", "stopRecognition", "driverRequest",
                                               "start1", "processDriverResponse", "stopRecognition",
                                               "deviceData", "nlu", "action"}));
}

TEST_F(SpeechDriverRequestTest, DeliveryPausesUntilTheDriverResponseTurnIsStopped)
{
    listener.parseHook = [&](RecognitionAgentResponse* response) {
        if (parseJson(response->getData()).isMember("driverRequest"))
            manager->startRecognition(false, false, RECOG_TYPE_DRIVER_RESPONSE, DEVICE_MODE_NORMAL);
    };
    ASSERT_EQ(speech_standin_script_turn(kScript), 0);
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    manager->stopRecognition();
    EXPECT_EQ(speech_standin_wait_idle(300), -1) << "a paused delivery is not idle";
    EXPECT_EQ(listener.names(), std::vector<std::string>{"onParseAction"});

    manager->processDriverResponse("{\"reply\":1}");
    manager->stopRecognition();
    waitIdle();
    EXPECT_EQ(listener.names(), (std::vector<std::string>{"onParseAction", "onNLUResult", "onParseAction"}));
}

TEST_F(SpeechDriverRequestTest, DeliveryGoesOnWhenNoDriverResponseTurnIsStarted)
{
    ASSERT_EQ(speech_standin_script_turn(kScript), 0);
    voiceTurn();
    EXPECT_EQ(listener.names(), (std::vector<std::string>{"onParseAction", "onNLUResult", "onParseAction"}));
}

TEST_F(SpeechDriverRequestTest, CancellingThePausedDriverResponseTurnDropsTheRest)
{
    listener.parseHook = [&](RecognitionAgentResponse* response) {
        if (parseJson(response->getData()).isMember("driverRequest"))
            manager->startRecognition(false, false, RECOG_TYPE_DRIVER_RESPONSE, DEVICE_MODE_NORMAL);
    };
    ASSERT_EQ(speech_standin_script_turn(kScript), 0);
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    manager->stopRecognition();
    EXPECT_EQ(speech_standin_wait_idle(200), -1);
    manager->cancelRecognition();
    waitIdle();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(listener.names(), std::vector<std::string>{"onParseAction"});
}

class SpeechScriptValidationTest : public SpeechLibraryTest {};

TEST_F(SpeechScriptValidationTest, MalformedScriptsAreRejectedAndNothingIsQueued)
{
    const char* bad[] = {
        "not json",
        R"({"type":"partial","text":"x"})",
        "[1]",
        R"([{"text":"no type"}])",
        R"([{"type":"song"}])",
        R"([{"type":"partial"}])",
        R"([{"type":"partial","text":5}])",
        R"([{"type":"asr","text":"a","confidence":"1"}])",
        R"([{"type":"asr","text":"a","engineType":3}])",
        R"([{"type":"nlu","text":"a","pieces":-1}])",
        R"([{"type":"nlu","text":"a","last":"yes"}])",
        R"([{"type":"nlu","text":"a","speechBytes":-4}])",
        R"([{"type":"nlu","text":"a","speechBytes":4,"speechFile":"/x"}])",
        R"([{"type":"nlu","text":"a","speechFile":"/no/such/speech.raw"}])",
        R"([{"type":"action","agent":5}])",
        R"([{"type":"action","rawJson":7}])",
        R"([{"type":"action","responseType":"1"}])",
        R"([{"type":"driverRequest"}])",
        R"([{"type":"driverRequest","request":"text"}])",
        R"([{"type":"error","message":"no code"}])",
        R"([{"type":"wait","ms":-5}])",
        R"([{"type":"partial","text":"ok"}, {"type":"wait"}])",
        R"([] trailing)",
    };
    for (const char* script : bad)
        EXPECT_EQ(speech_standin_script_turn(script), -1) << script;
    EXPECT_EQ(speech_standin_script_turn(nullptr), -1);
    voiceTurn();
    EXPECT_TRUE(listener.calls().empty());
}

TEST_F(SpeechScriptValidationTest, RejectionNamesTheEventAndTheProblem)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(speech_standin_script_turn(R"([{"type":"partial","text":"a"},{"type":"song"}])"), -1);
    EXPECT_EQ(speech_standin_script_turn(R"([{"type":"asr","text":"a","confidence":"high"}])"), -1);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("event 1 (song): unknown type \"song\""), std::string::npos) << err;
    EXPECT_NE(err.find("event 0 (asr): \"confidence\" must be an integer"), std::string::npos) << err;
}

TEST_F(SpeechScriptValidationTest, AnEmptyScriptIsAcceptedAndDeliversNothing)
{
    EXPECT_EQ(speech_standin_script_turn("[]"), 0);
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"partial","text":"next"}])"), 0);
    voiceTurn();
    EXPECT_TRUE(listener.calls().empty());
    voiceTurn();
    EXPECT_EQ(listener.names(), std::vector<std::string>{"onPartialResult"});
}

}  // namespace
