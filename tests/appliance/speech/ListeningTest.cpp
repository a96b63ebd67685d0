// The speech stand-in listening: real audio recognized against the command
// document's grammar, and the appliance's speech service answering.
#include "SpeechFixture.h"

#include "voice/Voice.h"

#include <cstdlib>
#include <random>

using namespace marltest;

namespace {

const char* const kDocument =
    R"({"docs":[{"version":"0.01","_id":"2","type":"VoiceControl","doc_number":"2","device":"QuoinA",)"
    R"("meta_data":{"format":0,"command":"open the fridge camera","domain":"Domain String"}},)"
    R"({"_id":"10","meta_data":{"format":5,"command":"#org.tizen.Timer","domain":"Domain String"}}]})";

class ListeningTest : public SpeechLibraryTest {
protected:
    void SetUp() override
    {
        SpeechLibraryTest::SetUp();
        speech_standin_listen(1);
        Tessel::getInstance()->setCommandList(kDocument);
        // Plays the plug-in's part in a dialogue: a driver request is answered
        // by a driver-response turn that carries `driverResponse`.
        listener.parseHook = [this](RecognitionAgentResponse* response) {
            const Json::Value data = parseJson(response->getData());
            if (!data.isMember("driverRequest"))
                return;
            requests.push_back(data["driverRequest"]);
            manager->startRecognition(false, false, RECOG_TYPE_DRIVER_RESPONSE, DEVICE_MODE_NORMAL);
            manager->processDriverResponse(driverResponse);
            manager->stopRecognition();
        };
    }

    // One voice turn of `audio`, fed in 20 ms chunks, then stopped.
    void turn(const std::vector<short>& audio)
    {
        ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
        for (size_t i = 0; i < audio.size(); i += 320)
            manager->processAudio(const_cast<short*>(audio.data() + i),
                                  static_cast<int>(std::min<size_t>(320, audio.size() - i)), false);
        manager->stopRecognition();
        ASSERT_EQ(speech_standin_wait_idle(30000), 0);
    }

    static std::vector<short> spoken(const std::string& text)
    {
        std::vector<int16_t> speech;
        std::string error;
        EXPECT_TRUE(voice::synthesize(text, voice::SpeechOptions(), speech, error)) << error;
        std::vector<short> audio(4800, 0);
        audio.insert(audio.end(), speech.begin(), speech.end());
        audio.insert(audio.end(), 11200, 0);
        return audio;
    }

    std::vector<RecordingListener::Call> callsNamed(const std::string& name)
    {
        std::vector<RecordingListener::Call> out;
        for (const auto& call : listener.calls())
            if (call.name == name)
                out.push_back(call);
        return out;
    }

    std::string driverResponse;
    std::vector<Json::Value> requests;
};

TEST_F(ListeningTest, CommandIsHeardWithPartialResultsAndGivenAsTheEmbeddedResult)
{
    turn(spoken("open the fridge camera"));
    const auto names = listener.names();
    const auto begin = std::find(names.begin(), names.end(), "onBeginningOfSpeech");
    const auto partial = std::find(names.begin(), names.end(), "onPartialResult");
    ASSERT_NE(partial, names.end()) << "partial results while speech goes on";
    EXPECT_LT(begin, partial) << "partials come once speech has begun";

    const auto asr = callsNamed("onASRResult");
    ASSERT_EQ(asr.size(), 2u);
    EXPECT_EQ(asr[0].args["engineType"], "EMBEDDED");
    EXPECT_EQ(asr[0].args["text"], "open the fridge camera");
    EXPECT_EQ(asr[0].args["confidence"], 1);
    EXPECT_EQ(asr[0].thread, asr[1].thread) << "both on the library's thread";
    EXPECT_NE(asr[0].thread, std::this_thread::get_id());
    EXPECT_EQ(asr[1].args["engineType"], "CLOUD");
    EXPECT_EQ(asr[1].args["text"], "open the fridge camera");

    const auto actions = callsNamed("onParseAction");
    ASSERT_EQ(actions.size(), 1u);
    const Json::Value action = parseJson(actions[0].args["data"].asString())["action"];
    EXPECT_EQ(action["actionName"], "Run Command");
    EXPECT_EQ(action["agent"], "");
    EXPECT_TRUE(callsNamed("onNLUResult").empty()) << "a command gets no spoken answer";

    const auto grammar = observations.of("grammar");
    ASSERT_EQ(grammar.size(), 1u);
    EXPECT_EQ(grammar[0]["commands"], parseJson(R"(["open the fridge camera"])"));
    EXPECT_TRUE(grammar[0]["workMs"].isIntegral() && grammar[0]["workMs"].asInt64() >= 0) << grammar[0];
    const auto recognition = observations.of("recognition");
    ASSERT_EQ(recognition.size(), 1u);
    EXPECT_EQ(recognition[0]["accepted"], true);
    EXPECT_EQ(recognition[0]["command"], true);
    EXPECT_EQ(recognition[0]["thread"], "library");
    EXPECT_TRUE(recognition[0]["workMs"].isIntegral() && recognition[0]["workMs"].asInt64() >= 0)
        << recognition[0];
}

TEST_F(ListeningTest, WordsAfterTheEndOfSpeechAreNotRecognized)
{
    // The recognizer's final pass starts at the pause before the end of
    // speech; a word said after the end of speech, before the stop, is not
    // part of the utterance ("what's the weather today" would be a request
    // too).
    std::vector<short> audio = spoken("what's the weather");
    const std::vector<short> more = spoken("today");
    audio.insert(audio.end(), more.begin(), more.end());
    turn(audio);
    EXPECT_EQ(callsNamed("onEndOfSpeech").size(), 1u);
    const auto recognition = observations.of("recognition");
    ASSERT_EQ(recognition.size(), 1u);
    EXPECT_EQ(recognition[0]["text"], "what's the weather") << recognition[0];
    EXPECT_EQ(recognition[0]["accepted"], true);
}

TEST_F(ListeningTest, RequestDialogueAsksItsDriverRequestAndSpeaksTheAnswer)
{
    driverResponse = R"({"userComposedDriverResponse":{"action":"Timer Reply","agent":"Timer","data":)"
                     R"({"id":"1","isRinging":"False","isRunning":"False","status":"Single Found","time":"00:04:30"}}})"
                     "\n";
    turn(spoken("how much time is left on the timer"));

    const auto asr = callsNamed("onASRResult");
    ASSERT_EQ(asr.size(), 2u);
    EXPECT_EQ(asr[0].args["engineType"], "EMBEDDED");
    EXPECT_EQ(asr[0].args["text"], "") << "a request is no registered command";
    EXPECT_EQ(asr[0].args["confidence"], 0);
    EXPECT_EQ(asr[1].args["text"], "how much time is left on the timer");

    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0]["Server Reqeust"]["action"]["name"], "Timer Request");
    EXPECT_EQ(observations.of("processDriverResponse").size(), 1u);

    const auto actions = callsNamed("onParseAction");
    ASSERT_EQ(actions.size(), 2u);
    const Json::Value action = parseJson(actions[1].args["data"].asString())["action"];
    EXPECT_EQ(action["agent"], "Timer");
    EXPECT_EQ(action["spokenText"], "Your timer is paused with 4 minutes and 30 seconds left.");

    const auto nlu = callsNamed("onNLUResult");
    ASSERT_GE(nlu.size(), 3u) << "the intent, then the spoken answer in pieces";
    EXPECT_TRUE(nlu[0].nullBuffer);
    EXPECT_EQ(nlu[0].args["last"], false);
    size_t bytes = 0;
    for (size_t i = 1; i < nlu.size(); ++i) {
        EXPECT_FALSE(nlu[i].nullBuffer);
        EXPECT_LE(nlu[i].bytes.size(), 9600u);
        EXPECT_EQ(nlu[i].args["last"], i + 1 == nlu.size());
        bytes += nlu[i].bytes.size();
    }
    EXPECT_GT(bytes, 24000u * 2) << "more than a second of 24 kHz speech";
    EXPECT_EQ(bytes % 2, 0u);

    const auto delivered = observations.of("deliver");
    ASSERT_FALSE(delivered.empty());
    EXPECT_EQ(delivered.back()["by"], "service");
}

TEST_F(ListeningTest, ScriptedTurnIsAnsweredByItsScriptAfterTheEmbeddedResult)
{
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"asr","text":"scripted","engineType":"CLOUD"}])"), 0);
    turn(spoken("open the fridge camera"));
    const auto asr = callsNamed("onASRResult");
    ASSERT_EQ(asr.size(), 2u);
    EXPECT_EQ(asr[0].args["engineType"], "EMBEDDED");
    EXPECT_EQ(asr[1].args["text"], "scripted");
    EXPECT_TRUE(callsNamed("onParseAction").empty()) << "the service stays silent";
}

TEST_F(ListeningTest, SilenceIsAnErrorOfNoSpeech)
{
    turn(std::vector<short>(16000, 0));
    EXPECT_EQ(listener.names(), (std::vector<std::string>{"onASRResult", "onError"}));
    const auto error = callsNamed("onError");
    ASSERT_EQ(error.size(), 1u);
    EXPECT_EQ(error[0].args["code"], 5);
    EXPECT_EQ(error[0].args["message"], "no speech was heard");
    EXPECT_EQ(callsNamed("onASRResult")[0].args["confidence"], 0);
}

TEST_F(ListeningTest, NoiseIsARejectedResult)
{
    std::mt19937 random(11);
    std::normal_distribution<double> noise(0.0, 4000.0);
    std::vector<short> audio(24000);
    for (short& s : audio)
        s = static_cast<short>(std::clamp(noise(random), -32768.0, 32767.0));
    turn(audio);
    const auto asr = callsNamed("onASRResult");
    ASSERT_EQ(asr.size(), 1u);
    EXPECT_EQ(asr[0].args["text"], "");
    EXPECT_EQ(asr[0].args["confidence"], 0);
    const auto error = callsNamed("onError");
    ASSERT_EQ(error.size(), 1u);
    EXPECT_EQ(error[0].args["code"], 1);
    EXPECT_EQ(error[0].args["message"], "the request was not understood");
}

TEST_F(ListeningTest, UnknownWordIsReportedOnceAndTheRestOfTheCommandStillWorks)
{
    const char* document = R"({"docs":[{"_id":"3","meta_data":{"format":0,"command":"open the fridgecam"}},)"
                           R"({"_id":"4","meta_data":{"format":0,"command":"show the fridgecam"}}]})";
    Tessel::getInstance()->setCommandList(document);
    ::testing::internal::CaptureStderr();
    turn(spoken("open the"));
    Tessel::getInstance()->setCommandList(document);
    turn(spoken("open the"));
    const std::string err = ::testing::internal::GetCapturedStderr();
    const std::string message = "the recognizer's dictionary has no word \"fridgecam\"; it is left out of the grammar";
    EXPECT_NE(err.find(message), std::string::npos) << err;
    EXPECT_EQ(err.find(message), err.rfind(message)) << "once: " << err;

    const auto grammar = observations.of("grammar");
    ASSERT_EQ(grammar.size(), 2u);
    EXPECT_EQ(grammar[0]["unknownWords"], parseJson(R"(["fridgecam"])"));
    EXPECT_EQ(grammar[1]["unknownWords"], parseJson("[]"));
    const auto asr = callsNamed("onASRResult");
    ASSERT_GE(asr.size(), 1u);
    EXPECT_EQ(asr[0].args["text"], "open the fridgecam") << "heard as the registered command";
    EXPECT_EQ(asr[0].args["confidence"], 1);
}

TEST_F(ListeningTest, ACommandListReachesTheRecognizerWithNoObserver)
{
    speech_standin_set_observer(nullptr, nullptr);
    Tessel::getInstance()->setCommandList(R"({"docs":[{"_id":"3","meta_data":{"format":0,"command":"open the fridgecam"}}]})");
    ::testing::internal::CaptureStderr();
    turn(spoken("open the"));
    ::testing::internal::GetCapturedStderr();
    const auto asr = callsNamed("onASRResult");
    ASSERT_GE(asr.size(), 1u);
    EXPECT_EQ(asr[0].args["text"], "open the fridgecam") << "heard as the command of the list set unobserved";
}

TEST_F(ListeningTest, DocumentThatIsNotJsonLeavesTheRequestsToListenFor)
{
    Tessel::getInstance()->setCommandList("not a document");
    driverResponse = R"({"userComposedDriverResponse":{"action":"Location Reply","agent":"Weather","data":)"
                     R"({"currentLocationName":"London","locationID":"2643743"}}})";
    turn(spoken("what's the weather today"));
    const auto grammar = observations.of("grammar");
    ASSERT_EQ(grammar.size(), 1u);
    EXPECT_EQ(grammar[0]["problem"], "the command document is not JSON: the grammar holds the service's requests only");
    EXPECT_EQ(grammar[0]["commands"], parseJson("[]"));
    const auto actions = callsNamed("onParseAction");
    ASSERT_EQ(actions.size(), 2u);
    EXPECT_EQ(parseJson(actions[1].args["data"].asString())["action"]["spokenText"], "Here is the weather for London.");
}

TEST_F(ListeningTest, EmptyCommandListStillHearsRequests)
{
    Tessel::getInstance()->setCommandList(R"({"docs":[]})");
    driverResponse = R"({"userComposedDriverResponse":{"action":"Cart Status Reply","agent":"Commerce","data":{"status":"Empty"}}})";
    turn(spoken("what's in my shopping cart"));
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0]["Server Reqeust"]["action"]["name"], "Cart Status Request");
    const auto actions = callsNamed("onParseAction");
    ASSERT_EQ(actions.size(), 2u);
    EXPECT_EQ(parseJson(actions[1].args["data"].asString())["action"]["spokenText"], "Your cart is empty.");
}

TEST_F(ListeningTest, CancelledTurnGivesNothingAndTheNextTurnIsHeard)
{
    const std::vector<short> audio = spoken("open the fridge camera");
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    for (size_t i = 0; i + 320 <= audio.size() / 2; i += 320)
        manager->processAudio(const_cast<short*>(audio.data() + i), 320, false);
    manager->cancelRecognition();
    waitIdle();
    EXPECT_TRUE(callsNamed("onASRResult").empty());
    EXPECT_TRUE(observations.of("recognition").empty());

    turn(audio);
    const auto asr = callsNamed("onASRResult");
    ASSERT_EQ(asr.size(), 2u);
    EXPECT_EQ(asr[0].args["text"], "open the fridge camera");
}

TEST_F(ListeningTest, TurnsAreNotRecognizedWhenListeningIsOffAndShutdownTurnsItOff)
{
    speech_standin_listen(0);
    turn(spoken("open the fridge camera"));
    EXPECT_EQ(listener.names(), (std::vector<std::string>{"onBeginningOfSpeech", "onEndOfSpeech"}));
    EXPECT_TRUE(observations.of("recognition").empty());

    speech_standin_listen(1);
    Tessel::shutdown();
    start(Config());
    turn(spoken("open the fridge camera"));
    EXPECT_TRUE(observations.of("recognition").empty()) << "a new library does not listen until told";
}

TEST(ListeningWithoutModel, TheTurnEndsInAnErrorThatSaysWhy)
{
    TestDevice device;
    Observations observations;
    RecordingListener listener;
    IEngineRetrieveDeviceData data;
    ::setenv("MARL_SPEECH_MODEL", "/nonexistent/model", 1);
    Tessel::init(Config(), &data);
    RecognitionManager* manager = Tessel::getInstance()->getRecognitionManager();
    manager->setRecognitionListener(&listener);
    speech_standin_listen(1);
    ::testing::internal::CaptureStderr();
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    manager->stopRecognition();
    ASSERT_EQ(speech_standin_wait_idle(10000), 0);
    const std::string err = ::testing::internal::GetCapturedStderr();
    Tessel::shutdown();
    ::unsetenv("MARL_SPEECH_MODEL");

    const std::string why = "speech recognition is not available: no pocketsphinx US English model in /nonexistent/model";
    EXPECT_NE(err.find(why), std::string::npos) << err;
    ASSERT_EQ(listener.names(), (std::vector<std::string>{"onError"}));
    EXPECT_EQ(listener.calls()[0].args["code"], 1);
    EXPECT_EQ(listener.calls()[0].args["message"].asString().compare(0, why.size(), why), 0)
        << listener.calls()[0].args["message"];
}

}  // namespace
