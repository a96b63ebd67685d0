#include "../speech/StandInTestSupport.h"
#include "TestDevice.h"

#include <asr-nlu/AgentActionDataFrame.h>
#include <asr-nlu/Config.h>
#include <asr-nlu/IEngineRetrieveDeviceData.h>
#include <asr-nlu/OVActionData.h>
#include <asr-nlu/RecognitionManager.h>
#include <asr-nlu/ResponseData.h>
#include <asr-nlu/Tessel.h>
#include <gtest/gtest.h>
#include <orvane-parser/IParserRetrieveDeviceData.h>
#include <orvane-parser/MusicData.h>
#include <orvane-parser/OrvaneEmbeddedParser.h>
#include <orvane-parser/OrvaneParser.h>
#include <orvane-parser/OrvaneParserListener.h>
#include <orvane-parser/TimerData.h>

#include <new>

using namespace marltest;

namespace {

class RecordingParserListener : public OrvaneParserListener {
public:
    struct Action {
        std::string agent, actionType, commandName, actionName, spokenText, rawJson;
        std::thread::id thread;
    };

    void executeOVAction(ResponseData* data) override
    {
        Action action;
        action.thread = std::this_thread::get_id();
        OVActionData* ov = data ? data->getOvActionData() : nullptr;
        AgentActionDataFrame* frame = ov ? ov->getActionData() : nullptr;
        if (frame) {
            action.agent = ov->getActionAgent();
            action.actionType = frame->getActionType();
            action.commandName = frame->getCommandName();
            action.actionName = frame->getActionName();
            action.rawJson = frame->getRawJson();
            action.spokenText = data->getSpokenText();
        }
        std::lock_guard<std::mutex> lock(mutex);
        actions.push_back(action);
    }

    void executeDriverResponse(std::string driverResponse) override
    {
        std::lock_guard<std::mutex> lock(mutex);
        driverResponses.push_back(driverResponse);
        if (onDriverResponse)
            onDriverResponse(driverResponse);
    }

    std::function<void(const std::string&)> onDriverResponse;
    std::mutex mutex;
    std::vector<Action> actions;
    std::vector<std::string> driverResponses;
};

class AnsweringCustomizedData : public IParserRetrieveUserCustomizedData {
public:
    std::string getDriverResponse(std::string request) override
    {
        requests.push_back(request);
        return answer;
    }
    std::string answer;
    std::vector<std::string> requests;
};

class TestParserData : public IParserRetrieveDeviceData {
public:
    IParserRetrieveUserCustomizedData* getParserRetrieveUserCustomizedData() override
    {
        return withCustomized ? &customized : nullptr;
    }
    bool withCustomized = true;
    AnsweringCustomizedData customized;
};

const char* const kRequest =
    R"({"Server Reqeust":{"agent":"Timer","action":{"name":"Information Timer Request"},"data":{}}})";

std::string actionData()
{
    return R"({"action":{"agent":"Timer","actionType":"Follow-Up","commandName":"timer.set",
               "actionName":"Set Timer","spokenText":"For how long?","rawJson":"{\"t\":1}"}})";
}

std::string requestData()
{
    return std::string(R"({"driverRequest":)") + kRequest + "}";
}

class ParserTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        parser.setParserListener(&listener);
        parser.setParserDataRetriever(&data);
    }

    TestDevice device;
    Observations observations;
    RecordingParserListener listener;
    TestParserData data;
    OrvaneParser parser;
};

TEST_F(ParserTest, ActionReachesExecuteOVActionWithItsFieldsOnTheCallersThread)
{
    parser.parse(actionData(), 1, true);
    ASSERT_EQ(listener.actions.size(), 1u);
    const auto& action = listener.actions[0];
    EXPECT_EQ(action.agent, "Timer");
    EXPECT_EQ(action.actionType, "Follow-Up");
    EXPECT_EQ(action.commandName, "timer.set");
    EXPECT_EQ(action.actionName, "Set Timer");
    EXPECT_EQ(action.spokenText, "For how long?");
    EXPECT_EQ(action.rawJson, "{\"t\":1}");
    EXPECT_EQ(action.thread, std::this_thread::get_id());
    EXPECT_TRUE(listener.driverResponses.empty());

    const auto parses = observations.of("parse");
    ASSERT_EQ(parses.size(), 1u);
    EXPECT_EQ(parses[0]["data"], actionData());
    EXPECT_EQ(parses[0]["responseType"], 1);
    EXPECT_EQ(parses[0]["isLast"], true);
    const auto executed = observations.of("executeOVAction");
    ASSERT_EQ(executed.size(), 1u);
    EXPECT_EQ(executed[0]["agent"], "Timer");
    EXPECT_EQ(executed[0]["actionType"], "Follow-Up");
    EXPECT_EQ(executed[0]["rawJson"], "{\"t\":1}");
}

TEST_F(ParserTest, MissingActionMembersReadAsEmptyText)
{
    parser.parse(R"({"action":{"agent":"Music"}})", 1, true);
    ASSERT_EQ(listener.actions.size(), 1u);
    EXPECT_EQ(listener.actions[0].agent, "Music");
    EXPECT_EQ(listener.actions[0].actionType, "");
    EXPECT_EQ(listener.actions[0].spokenText, "");
}

TEST_F(ParserTest, DriverRequestIsAnsweredThroughTheCustomizedFacet)
{
    data.customized.answer = R"({"userComposedDriverResponse":{"agent":"Timer"}})";
    parser.parse(requestData(), 1, true);
    ASSERT_EQ(data.customized.requests.size(), 1u);
    EXPECT_EQ(parseJson(data.customized.requests[0]), parseJson(kRequest));
    EXPECT_EQ(listener.driverResponses, std::vector<std::string>{data.customized.answer});
    EXPECT_TRUE(listener.actions.empty());

    const auto asked = observations.of("driverRequest");
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked[0]["request"], data.customized.requests[0]);
    EXPECT_EQ(asked[0]["response"], data.customized.answer);
}

TEST_F(ParserTest, AnEmptyAnswerGivesNoDriverResponse)
{
    data.customized.answer = "";
    parser.parse(requestData(), 1, true);
    EXPECT_EQ(data.customized.requests.size(), 1u);
    EXPECT_TRUE(listener.driverResponses.empty());
    ASSERT_EQ(observations.of("driverRequest").size(), 1u);
    EXPECT_EQ(observations.of("driverRequest")[0]["response"], "");
}

TEST_F(ParserTest, WithoutACustomizedFacetThereIsNoAnswer)
{
    data.withCustomized = false;
    data.customized.answer = "unused";
    parser.parse(requestData(), 1, true);
    EXPECT_TRUE(data.customized.requests.empty());
    EXPECT_TRUE(listener.driverResponses.empty());
}

TEST(ParserWiring, WithoutADataRetrieverThereIsNoAnswer)
{
    TestDevice device;
    RecordingParserListener listener;
    OrvaneParser parser;
    parser.setParserListener(&listener);
    parser.parse(requestData(), 1, true);
    EXPECT_TRUE(listener.driverResponses.empty());
}

TEST_F(ParserTest, DataThatIsNeitherAnActionNorADriverRequestIsIgnored)
{
    data.customized.answer = "would be sent";
    const char* ignored[] = {"not json", "", "[1]", "{}", R"({"action":"text"})", R"({"driverRequest":[1]})",
                             R"({"other":{}})"};
    for (const char* text : ignored)
        parser.parse(text, 1, true);
    EXPECT_TRUE(listener.actions.empty());
    EXPECT_TRUE(listener.driverResponses.empty());
    EXPECT_TRUE(data.customized.requests.empty());
    EXPECT_EQ(observations.of("parse").size(), sizeof ignored / sizeof ignored[0]);
}

TEST(ParserWiring, EachParserCallsItsOwnListener)
{
    TestDevice device;
    RecordingParserListener first, second;
    OrvaneParser a, b;
    a.setParserListener(&first);
    b.setParserListener(&second);
    b.parse(actionData(), 1, true);
    EXPECT_TRUE(first.actions.empty());
    EXPECT_EQ(second.actions.size(), 1u);

    // A parser made where a deleted one lived starts unwired.
    alignas(OrvaneParser) unsigned char place[sizeof(OrvaneParser)];
    OrvaneParser* old = new (place) OrvaneParser();
    old->setParserListener(&first);
    old->~OrvaneParser();
    OrvaneParser* fresh = new (place) OrvaneParser();
    fresh->parse(actionData(), 1, true);
    fresh->~OrvaneParser();
    EXPECT_TRUE(first.actions.empty());
}

TEST(ParserWiring, EmbeddedParserAnswersLikeTheCloudParser)
{
    TestDevice device;
    RecordingParserListener listener;
    TestParserData data;
    data.customized.answer = "answer";
    OrvaneEmbeddedParser parser;
    parser.setParserListener(&listener);
    parser.setParserDataRetriever(&data);
    parser.parse(actionData(), 1, true);
    parser.parse(requestData(), 1, true);
    EXPECT_EQ(listener.actions.size(), 1u);
    EXPECT_EQ(listener.driverResponses, std::vector<std::string>{"answer"});
}

TEST(ParserRecords, TimerDataAndMusicDataKeepWhatIsSet)
{
    TimerData timer;
    EXPECT_EQ(timer.getId(), "");
    timer.setId("3");
    timer.setIsRunning("True");
    timer.setTimerTime("00:05:00");
    EXPECT_EQ(timer.getId(), "3");
    EXPECT_EQ(timer.getIsRunning(), "True");
    EXPECT_EQ(timer.getTimerTime(), "00:05:00");

    MusicData music;
    EXPECT_EQ(music.getMusicAppName(), "");
    music.setCurrentStation("Jazz");
    music.setLastStation("Rock");
    music.setMusicAppName("Player");
    EXPECT_EQ(music.getCurrentStation(), "Jazz");
    EXPECT_EQ(music.getLastStation(), "Rock");
    EXPECT_EQ(music.getMusicAppName(), "Player");
}

// The two stand-ins together, wired as the plug-in wires them: the speech
// library's onParseAction goes to the parser, and a driver response goes back
// as a driver-response turn from inside the parse call.
class SpeechToParser : public RecordingListener, public RecordingParserListener {
public:
    void onParseAction(RecognitionAgentResponse* response) override
    {
        RecordingListener::onParseAction(response);
        parser->parse(response->getData(), response->getResponseType(), response->getIsLast());
    }

    void executeDriverResponse(std::string driverResponse) override
    {
        RecordingParserListener::executeDriverResponse(driverResponse);
        RecognitionManager* manager = Tessel::getInstance()->getRecognitionManager();
        manager->startRecognition(false, false, RECOG_TYPE_DRIVER_RESPONSE, DEVICE_MODE_NORMAL);
        manager->processDriverResponse(driverResponse);
        manager->stopRecognition();
    }

    OrvaneParser* parser = nullptr;
};

TEST(ParserWithSpeechLibrary, ScriptedServerAnswersReachTheParserListenerOnTheLibraryThread)
{
    TestDevice device;
    Observations observations;
    IEngineRetrieveDeviceData engineData;
    TestParserData parserData;
    parserData.customized.answer = R"({"userComposedDriverResponse":{"agent":"Timer"}})";
    SpeechToParser bridge;
    OrvaneParser parser;
    parser.setParserListener(&bridge);
    parser.setParserDataRetriever(&parserData);
    bridge.parser = &parser;

    Tessel::init(Config(), &engineData);
    RecognitionManager* manager = Tessel::getInstance()->getRecognitionManager();
    manager->setRecognitionListener(&bridge);
    ASSERT_EQ(speech_standin_script_turn((std::string(R"([{"type":"driverRequest","request":)") + kRequest +
                                          R"(},{"type":"action","agent":"Timer","actionType":"Task Complete"}])")
                                             .c_str()),
              0);
    ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
    manager->stopRecognition();
    ASSERT_EQ(speech_standin_wait_idle(5000), 0);
    Tessel::shutdown();

    EXPECT_EQ(parseJson(parserData.customized.requests.at(0)), parseJson(kRequest));
    const auto sent = observations.of("processDriverResponse");
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0]["text"], parserData.customized.answer);
    EXPECT_EQ(sent[0]["thread"], "library");
    ASSERT_EQ(bridge.actions.size(), 1u);
    EXPECT_EQ(bridge.actions[0].actionType, "Task Complete");
    EXPECT_NE(bridge.actions[0].thread, std::this_thread::get_id());
    for (const Json::Value& item : observations.of("parse"))
        EXPECT_EQ(item["thread"], "library");
}

}  // namespace
