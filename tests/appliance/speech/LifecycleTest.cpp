#include "SpeechFixture.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <set>

using namespace marltest;

namespace {

class SpeechLibraryLifecycleTest : public SpeechLibraryTest {};

TEST(SpeechLibraryLifecycle, InstanceExistsOnlyBetweenInitAndShutdown)
{
    TestDevice device;
    IEngineRetrieveDeviceData data;
    EXPECT_EQ(Tessel::getInstance(), nullptr);
    Tessel::init(Config(), &data);
    ASSERT_NE(Tessel::getInstance(), nullptr);
    EXPECT_NE(Tessel::getInstance()->getRecognitionManager(), nullptr);
    Tessel::shutdown();
    EXPECT_EQ(Tessel::getInstance(), nullptr);
}

TEST(SpeechLibraryLifecycle, WithoutManagerHookLeavesNoRecognitionManager)
{
    TestDevice device;
    IEngineRetrieveDeviceData data;
    speech_standin_set_without_manager(1);
    Tessel::init(Config(), &data);
    ASSERT_NE(Tessel::getInstance(), nullptr);
    EXPECT_EQ(Tessel::getInstance()->getRecognitionManager(), nullptr);
    Tessel::shutdown();

    // Shutdown returns the hook to its default.
    Tessel::init(Config(), &data);
    EXPECT_NE(Tessel::getInstance()->getRecognitionManager(), nullptr);
    Tessel::shutdown();
}

TEST(SpeechLibraryLifecycle, InitObservesEveryConfigField)
{
    TestDevice device;
    Observations observations;
    IEngineRetrieveDeviceData data;
    Config config;
    config.setLocale("en-US");
    config.setServerIP("qa.example");
    config.setRecognitionPath(RECOGNITION_PATH_HYBRID);
    config.configureDuringInit(false);
    Tessel::init(config, &data);
    Tessel::shutdown();

    const auto inits = observations.of("init");
    ASSERT_EQ(inits.size(), 1u);
    const Json::Value& c = inits[0]["config"];
    EXPECT_EQ(c["internalSpeechDetector"], true);
    EXPECT_EQ(c["internalRecorder"], false);
    EXPECT_EQ(c["reservedFlag"], true);
    EXPECT_EQ(c["rmsComputation"], false);
    EXPECT_EQ(c["configureDuringInit"], false);
    EXPECT_EQ(c["sampleRate"], 16000);
    EXPECT_EQ(c["serverPort"], 443);
    EXPECT_EQ(c["locale"], "en-US");
    EXPECT_EQ(c["serverIP"], "qa.example");
    EXPECT_EQ(c["reservedText"], "");
    EXPECT_EQ(c["audioBufferFormat"], 0);
    EXPECT_EQ(c["recognitionPath"], 3);
    EXPECT_EQ(c["epdThreshold"], 750);
    EXPECT_EQ(inits[0]["thread"], "caller");
    EXPECT_EQ(observations.sequence().back(), "shutdown");
}

TEST_F(SpeechLibraryLifecycleTest, SecondInitIsRefusedAndKeepsTheFirstInstance)
{
    Tessel* first = Tessel::getInstance();
    IEngineRetrieveDeviceData other;
    Tessel::init(Config(), &other);
    EXPECT_EQ(Tessel::getInstance(), first);
    EXPECT_EQ(Tessel::getInstance()->getRecognitionManager(), manager);
    EXPECT_EQ(observations.of("init").size(), 1u);
}

TEST_F(SpeechLibraryLifecycleTest, ShutdownWaitsForTheListenerCallInProgress)
{
    std::atomic<bool> entered{false};
    std::atomic<bool> finished{false};
    listener.parseHook = [&](RecognitionAgentResponse*) {
        entered = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        finished = true;
    };
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"action","agent":"Timer"},
                                             {"type":"partial","text":"never"}])"),
              0);
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    manager->stopRecognition();
    for (int i = 0; i < 500 && !entered; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    ASSERT_TRUE(entered);

    Tessel::shutdown();
    EXPECT_TRUE(finished) << "shutdown returned while the library's thread was still in a listener";
    EXPECT_EQ(Tessel::getInstance(), nullptr);

    // The event after the one in progress is dropped with the thread.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(listener.names(), std::vector<std::string>{"onParseAction"});
}

TEST_F(SpeechLibraryLifecycleTest, ShutdownFromAListenerIsRefused)
{
    listener.parseHook = [&](RecognitionAgentResponse*) { Tessel::shutdown(); };
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"action"},{"type":"partial","text":"still here"}])"), 0);
    testing::internal::CaptureStderr();
    voiceTurn();
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(Tessel::getInstance(), nullptr);
    EXPECT_EQ(listener.names(), (std::vector<std::string>{"onParseAction", "onPartialResult"}));
    EXPECT_NE(err.find("refused on the library's own thread"), std::string::npos) << err;
}

TEST_F(SpeechLibraryLifecycleTest, ShutdownCutsAWaitShortAndDropsTheRest)
{
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"wait","ms":5000},{"type":"partial","text":"late"}])"), 0);
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    manager->stopRecognition();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const auto before = std::chrono::steady_clock::now();
    Tessel::shutdown();
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
    EXPECT_TRUE(listener.calls().empty());
}

TEST_F(SpeechLibraryLifecycleTest, ShutdownForgetsScriptsNotYetDelivered)
{
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"partial","text":"stale"}])"), 0);
    Tessel::shutdown();
    start(Config());
    voiceTurn();
    EXPECT_TRUE(listener.calls().empty());
}

TEST_F(SpeechLibraryLifecycleTest, ControlOperationsAreObservedOnTheCallerThread)
{
    Tessel* tessel = Tessel::getInstance();
    tessel->changeLocale("ko-KR");
    tessel->setCommandList(R"({"cmds":[]})");
    tessel->syncUserData();
    manager->processDriverResponse(R"({"userComposedDriverResponse":{}})");
    unsigned char text[] = "hello";
    manager->processText(text, 5);
    manager->processListEvent("list");
    manager->processHepticEvent("haptic");
    manager->cancelRecognition();

    const auto all = observations.all();
    auto find = [&](const std::string& what) {
        for (const Json::Value& item : all)
            if (item["what"] == what)
                return item;
        return Json::Value();
    };
    EXPECT_EQ(find("setRecognitionListener")["thread"], "caller");
    EXPECT_EQ(find("setSpeechDetectionListener")["option"], 0);
    EXPECT_EQ(find("changeLocale")["locale"], "ko-KR");
    EXPECT_EQ(find("setCommandList")["document"], R"({"cmds":[]})");
    EXPECT_EQ(find("syncUserData")["thread"], "caller");
    EXPECT_EQ(find("processDriverResponse")["text"], R"({"userComposedDriverResponse":{}})");
    EXPECT_EQ(find("processText")["length"], 5);
    EXPECT_EQ(find("processListEvent")["text"], "list");
    EXPECT_EQ(find("processHepticEvent")["text"], "haptic");
    EXPECT_EQ(find("cancelRecognition")["thread"], "caller");
}

TEST_F(SpeechLibraryLifecycleTest, StartResultHookRefusesTheNextStartOnly)
{
    speech_standin_set_start_result(0);
    EXPECT_FALSE(manager->startRecognition(false, true, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    waitIdle();
    EXPECT_TRUE(observations.of("deviceData").empty()) << "a refused start pulls no device data";
    EXPECT_TRUE(manager->startRecognition(false, true, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));

    const auto starts = observations.of("startRecognition");
    ASSERT_EQ(starts.size(), 2u);
    EXPECT_EQ(starts[0]["accepted"], false);
    EXPECT_EQ(starts[1]["accepted"], true);
    EXPECT_EQ(starts[1]["flag"], false);
    EXPECT_EQ(starts[1]["keepContext"], true);
    EXPECT_EQ(starts[1]["type"], 2);
    EXPECT_EQ(starts[1]["mode"], 0);
}

TEST_F(SpeechLibraryLifecycleTest, StateHookAnswersGetState)
{
    EXPECT_EQ(manager->getState(), 0);
    speech_standin_set_state(3);
    EXPECT_EQ(manager->getState(), 3);
}

TEST_F(SpeechLibraryLifecycleTest, ListenersAreCalledOnTheLibraryThreadOnly)
{
    ASSERT_EQ(speech_standin_script_turn(R"([
        {"type":"partial","text":"set a"},
        {"type":"asr","text":"set a timer","engineType":"CLOUD","confidence":1},
        {"type":"nlu","text":"{}","speechBytes":480,"pieces":2,"last":true},
        {"type":"action","agent":"Timer"},
        {"type":"error","code":2,"message":"network"}])"),
              0);
    listener.parseHook = [&](RecognitionAgentResponse*) {
        // A control operation made from inside a listener is queued, not
        // answered by a nested listener call.
        manager->startRecognition(false, false, RECOG_TYPE_DRIVER_RESPONSE, DEVICE_MODE_NORMAL);
        manager->stopRecognition();
    };
    voiceTurn();

    const auto calls = listener.calls();
    ASSERT_EQ(calls.size(), 6u);
    std::set<std::thread::id> threads;
    for (const auto& call : calls) {
        EXPECT_NE(call.thread, std::this_thread::get_id()) << call.name << " ran on the caller's thread";
        threads.insert(call.thread);
    }
    EXPECT_EQ(threads.size(), 1u) << "all listener calls come from the one library thread";
    for (const Json::Value& item : observations.of("deliver"))
        EXPECT_EQ(item["thread"], "library");
    for (const Json::Value& item : observations.of("deviceData"))
        EXPECT_EQ(item["thread"], "library");
}

TEST_F(SpeechLibraryLifecycleTest, StopReturnsBeforeTheEventsAreDelivered)
{
    ASSERT_EQ(speech_standin_script_turn(R"([{"type":"wait","ms":300},{"type":"partial","text":"later"}])"), 0);
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    const auto before = std::chrono::steady_clock::now();
    manager->stopRecognition();
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(200));
    EXPECT_TRUE(listener.calls().empty());
    waitIdle();
    EXPECT_EQ(listener.names(), std::vector<std::string>{"onPartialResult"});
}

}  // namespace

namespace {

TEST(SpeechLibraryLifecycleDeathTest, AProcessEndingWithoutShutdownExitsCleanly)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            alarm(10);   // a hang at exit fails by SIGALRM instead of blocking the test
            static IEngineRetrieveDeviceData data;
            Tessel::init(Config(), &data);
            Tessel::getInstance()->getRecognitionManager()->startRecognition(false, false, RECOG_TYPE_VOICE,
                                                                              DEVICE_MODE_NORMAL);
            std::exit(7);
        },
        ::testing::ExitedWithCode(7), "");
}

}  // namespace
