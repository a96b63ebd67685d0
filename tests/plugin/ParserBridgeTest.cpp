#include "PluginFixture.h"

#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImpl.h"
#include "ParserManager/OrvaneCloudParserHandle.h"
#include "ParserManager/OrvaneEmbeddedParserHandle.h"
#include "ParserManager/OrvaneParserManager.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <asr-nlu/AgentActionDataFrame.h>
#include <asr-nlu/OVActionData.h>
#include <asr-nlu/RecognitionAgentResponse.h>
#include <asr-nlu/ResponseData.h>

#include <memory>

using marltest::EngineTest;
using marltest::daemon;

namespace {

std::unique_ptr<ResponseData> responseData(const std::string& actionType, const std::string& spokenText)
{
    AgentActionDataFrame* frame = new AgentActionDataFrame();
    frame->setActionType(actionType);
    frame->setRawJson("{\"raw\":\"" + actionType + "\"}");
    frame->setCommandName("Set Timer");
    frame->setActionName("Set Timer Action");
    OVActionData* ovAction = new OVActionData();
    ovAction->setActionData(frame);
    ovAction->setActionAgent("Timer");
    std::unique_ptr<ResponseData> data(new ResponseData());
    data->setOvActionData(ovAction);
    data->setSpokenText(spokenText);
    return data;
}

}  // namespace

class ParserBridge : public EngineTest {
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        ASSERT_EQ(setCommands({{4, 1, 5, "#org.tizen.Timer"}}), 0);
        daemon().results.clear();
    }
    OrvaneCloudParserHandle* cloud() { return wrapper()->getParserManager()->getCloudParserHandle(); }
};

TEST_F(ParserBridge, TheCloudHandleMakesOneWiredParser)
{
    OrvaneParser* parser = cloud()->getParser();
    ASSERT_NE(parser, nullptr);
    PluginTestAccess::createParser(cloud());
    EXPECT_TRUE(marltest::logged("there is already alive parser"));
    EXPECT_EQ(cloud()->getParser(), parser);
    EXPECT_EQ(wrapper()->getParserManager()->getCloudParserHandle(), cloud());
}

TEST_F(ParserBridge, TheActionTypeSetsTheVoiceContext)
{
    cloud()->executeOVAction(responseData("Follow-Up", "").get());
    EXPECT_EQ(wrapper()->getCurrentVoiceContext(), VOICE_CONTEXT_FOLLOW_UP);
    cloud()->executeOVAction(responseData("Keep Context", "").get());
    EXPECT_EQ(wrapper()->getCurrentVoiceContext(), VOICE_CONTEXT_KEEP);
    cloud()->executeOVAction(responseData("Task Complete", "").get());
    EXPECT_EQ(wrapper()->getCurrentVoiceContext(), VOICE_CONTEXT_NONE);
    EXPECT_EQ(daemon().results.size(), 3u);
}

TEST_F(ParserBridge, AnActionWithoutSpokenTextGoesAtOnceEvenWithServerSpeech)
{
    cloud()->executeOVAction(responseData("Agent Response", "").get());
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].nlu, "{\"raw\":\"Agent Response\"}");
    EXPECT_EQ(daemon().results[0].ids, std::vector<int>{4});
    EXPECT_TRUE(marltest::logged("agentName[Timer], commandName[Set Timer], actionName[Set Timer Action], spokenText[]"));
}

TEST_F(ParserBridge, AnActionWithSpokenTextWaitsForTheOutsidePlayersSpeech)
{
    cloud()->executeOVAction(responseData("Agent Response", "Timer set").get());
    EXPECT_TRUE(daemon().results.empty());
    EXPECT_TRUE(marltest::logged("Wait for server TTS"));
}

TEST_F(ParserBridge, MissingActionPartsDropTheAction)
{
    cloud()->executeOVAction(nullptr);
    EXPECT_TRUE(marltest::logged("data is NULL"));
    ResponseData empty;
    cloud()->executeOVAction(&empty);
    EXPECT_TRUE(marltest::logged("ovActionData is NULL"));
    ResponseData noFrame;
    noFrame.setOvActionData(new OVActionData());
    cloud()->executeOVAction(&noFrame);
    EXPECT_TRUE(marltest::logged("agentActionData is NULL"));
    EXPECT_TRUE(daemon().results.empty());
}

TEST_F(ParserBridge, TheEmbeddedHandleIsInert)
{
    OrvaneEmbeddedParserHandle* embedded = wrapper()->getParserManager()->getEmbeddedParserHandle();
    embedded->executeDriverResponse("{\"x\":1}");
    embedded->executeOVAction(responseData("Keep Context", "").get());
    EXPECT_NE(embedded->getParser(), nullptr);
    EXPECT_EQ(wrapper()->getCurrentVoiceContext(), VOICE_CONTEXT_NONE);
    EXPECT_TRUE(daemon().results.empty());
}

TEST_F(ParserBridge, AResponseThatIsNoNluResultIsNotParsed)
{
    RecognitionAgentResponse response;
    response.setResponseType(2);
    response.setEngineType("CLOUD");
    response.setData("{}");
    marltest::clearObservations();
    wrapper()->onParseAction(&response);
    EXPECT_TRUE(marltest::logged("Not Nlu result"));
    EXPECT_FALSE(marltest::observed("parse"));
}

TEST_F(ParserBridge, TheParsersFacadeCarriesDriverRequestsToTheAppliance)
{
    IParserRetrieveDeviceData* facade = cloud()->getParserDataRetriever();
    ASSERT_NE(facade, nullptr);
    EXPECT_EQ(facade->getParserRetrieveDeviceSystemData(), nullptr);
    IParserRetrieveUserCustomizedData* customized = facade->getParserRetrieveUserCustomizedData();
    ASSERT_NE(customized, nullptr);
    EXPECT_EQ(customized->getDriverResponse("{\"Server Reqeust\": {\"agent\": \"Nobody\"}}"), "");
    EXPECT_TRUE(marltest::logged("driverResponse[]"));
}
