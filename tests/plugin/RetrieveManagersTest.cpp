#include "PluginFixture.h"

#include "RetrieveImpl/Common/CustomizedDataRetrieverImpl.h"
#include "RetrieveImpl/Common/DeviceDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaCustomizedDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"
#include "RetrieveImpl/DA/DaDeviceDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenFactory.h"
#include "RetrieveManager/CustomizedDataRetrieveManager.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/ICustomizedDriverResponse.h"
#include "RetrieveManager/ICustomizedNluParams.h"
#include "RetrieveManager/ICustomizedRecognitionMode.h"
#include "RetrieveManager/ICustomizedServerDefines.h"
#include "RetrieveManager/IDeviceMusicDataRetrieve.h"
#include "RetrieveManager/IDeviceStatusDataRetrieve.h"
#include "RetrieveManager/IDeviceTimerDataRetrieve.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <memory>

using marltest::EngineTest;

namespace {

int gDeletedSets = 0;

class CountedSet : public ICustomizedDataRetrieve {
public:
    ~CountedSet() override { ++gDeletedSets; }
};

class SetWithoutTimer : public IDeviceDataRetrieve {
public:
    ~SetWithoutTimer() override { ++gDeletedSets; }
    IDeviceMusicDataRetrieve* getDeviceMusicDataRetriever() override { return &mMusic; }

private:
    IDeviceMusicDataRetrieve mMusic;
};

std::string respond(const std::string& request)
{
    std::unique_ptr<DaDriverResponseGen> generator(DaDriverResponseGenFactory::CreateInstance(request));
    return generator->getDriverResponse();
}

}  // namespace

TEST(CustomizedRetrievers, TheFallbackSetComposesNothing)
{
    CustomizedDataRetrieverImpl fallback;
    EXPECT_EQ(fallback.getDriverResponseRetriever()->getDriverResponse("{\"Server Reqeust\":{}}"), "");
    std::map<std::string, _JsonObject*> map;
    map["kept"] = nullptr;
    EXPECT_FALSE(fallback.getNluParamsRetriever()->getNluParams(&map));
    EXPECT_EQ(map.size(), 1u);
    EXPECT_EQ(fallback.getRecognitionModeRetriever()->getRecognitionMode(), nullptr);
}

TEST(CustomizedRetrievers, ServerIndicesAndTellersDifferPerSet)
{
    marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "KR"}})");
    ICustomizedServerDefines bare;
    CustomizedDataRetrieverImpl fallback;
    DaCustomizedDataRetrieverImpl appliance;
    EXPECT_EQ(bare.getTargetServerIndex(), 0);
    EXPECT_EQ(fallback.getServerDefineRetriever()->getTargetServerIndex(), 50);
    EXPECT_EQ(appliance.getServerDefineRetriever()->getTargetServerIndex(), 200);
    EXPECT_EQ(bare.getServerTtsTeller(), 0);
    EXPECT_EQ(fallback.getServerDefineRetriever()->getServerTtsTeller(), 1);
    EXPECT_EQ(appliance.getServerDefineRetriever()->getServerTtsTeller(), 0);
    EXPECT_TRUE(fallback.getServerDefineRetriever()->useServerTts());
    EXPECT_FALSE(fallback.getServerDefineRetriever()->userPlayServerTts());
    EXPECT_EQ(bare.getServerTtsAudioPath(), "/opt/usr/home/owner/media/Sounds/ServerTTS.pcm");
}

TEST(ApplianceServerDefines, WithoutALanguageServerSpeechIsOnAndUserPlayed)
{
    marltest::TestDevice device;
    DaCustomizedServerDefineRetriever defines;
    EXPECT_TRUE(defines.useServerTts());
    EXPECT_TRUE(defines.userPlayServerTts());
    EXPECT_EQ(defines.getServerTtsAudioPath(), "/home/owner/share/ServerTTS.pcm");
    EXPECT_EQ(defines.getAsrRampcode(), "dash_da");
    EXPECT_EQ(defines.getNluRampcode(), "vbt_da");
}

TEST(ApplianceServerDefines, LanguagesFiveAndSixTurnServerSpeechOff)
{
    for (int language : {5, 6}) {
        marltest::TestDevice device(R"({"vconf": {"db/orvane/setting/lang": )" + std::to_string(language) + "}}");
        DaCustomizedServerDefineRetriever defines;
        EXPECT_FALSE(defines.useServerTts()) << language;
        EXPECT_FALSE(defines.userPlayServerTts()) << language;
    }
    marltest::TestDevice device(R"({"vconf": {"db/orvane/setting/lang": 4}})");
    EXPECT_TRUE(DaCustomizedServerDefineRetriever().useServerTts());
}

TEST(ApplianceServerDefines, OnlyTheRegionKrSelectsTheKoreanServer)
{
    {
        marltest::TestDevice device;
        EXPECT_EQ(DaCustomizedServerDefineRetriever().getTargetServerIndex(), 100);
    }
    {
        marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "kr"}})");
        EXPECT_EQ(DaCustomizedServerDefineRetriever().getTargetServerIndex(), 100);
        EXPECT_TRUE(marltest::logged("Region (kr)"));
    }
    {
        marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "KR"}})");
        EXPECT_EQ(DaCustomizedServerDefineRetriever().getTargetServerIndex(), 200);
    }
}

TEST(DeviceRetrievers, TheFallbackSetAnswersWithFixedValues)
{
    DeviceDataRetrieverImpl fallback;
    IDeviceTimerDataRetrieve* timer = fallback.getDeviceTimerDataRetriever();
    EXPECT_EQ(timer->getTimerTime(), "00:00:00");
    EXPECT_EQ(timer->getCurrentTimerId(), "0");
    EXPECT_EQ(timer->getCreatableTimerId(), "0");
    EXPECT_TRUE(fallback.getDeviceStatusDataRetriever()->useCustomizedDriverResponse());
    EXPECT_FALSE(fallback.getDeviceStatusDataRetriever()->useCustomizedNluParams());
    IDeviceMusicDataRetrieve* music = fallback.getDeviceMusicDataRetriever();
    EXPECT_EQ(music->getCurrentMusicPlayerName(), "None");
    EXPECT_EQ(music->getCurrentMusicPlayerVolumeLevel(), 5);
    EXPECT_EQ(music->getCurrentMusicPlayerVolumeMaxLevel(), 15);
    EXPECT_TRUE(music->currentMusicAppLoggedIn());
    EXPECT_FALSE(music->getCurrentRadioFavoriteMark());
    IDeviceMusicDataRetrieve bare;
    EXPECT_EQ(bare.getCurrentMusicPlayerName(), "");
    EXPECT_EQ(bare.getCurrentMusicPlayerVolumeLevel(), 0);
}

TEST(DeviceRetrievers, TheApplianceStatusSwitchesOnEveryCustomization)
{
    DaDeviceDataRetrieverImpl appliance;
    IDeviceStatusDataRetrieve* status = appliance.getDeviceStatusDataRetriever();
    EXPECT_TRUE(status->useCustomizedRecognitionMode());
    EXPECT_TRUE(status->useCustomizedNluParams());
    EXPECT_TRUE(status->useCustomizedDriverResponse());
    EXPECT_FALSE(status->useChineseContentsProvider());
    EXPECT_EQ(appliance.getDeviceShoppingListDataRetriever()->currentShoppingListSize(), 0);
    EXPECT_FALSE(appliance.getDeviceMorningBriefDataRetriever()->appInstalled());
}

class RetrieveManagers : public EngineTest {};

TEST_F(RetrieveManagers, TheApplianceSetIsPreferredPerFacet)
{
    DeviceDataRetrieveManager* manager = wrapper()->getDeviceDataRetrieveManager();
    EXPECT_NE(manager->getUserDeviceDataRetriever(), nullptr);
    EXPECT_EQ(manager->getStatusRetriever(),
              manager->getUserDeviceDataRetriever()->getDeviceStatusDataRetriever());
    EXPECT_EQ(manager->getTimerRetriever(), manager->getUserDeviceDataRetriever()->getDeviceTimerDataRetriever());
    EXPECT_TRUE(marltest::logged("retTimerRetriever["));
}

TEST_F(RetrieveManagers, ASetWithoutATimerFacetFallsBackForTimersAlone)
{
    DeviceDataRetrieveManager* manager = wrapper()->getDeviceDataRetrieveManager();
    SetWithoutTimer* set = new SetWithoutTimer();
    manager->setUserDeviceDataRetriever(set);
    EXPECT_EQ(manager->getMusicRetriever(), set->getDeviceMusicDataRetriever());
    EXPECT_EQ(manager->getTimerRetriever(), manager->getInternalDeviceDataRetriever()->getDeviceTimerDataRetriever());
}

TEST_F(RetrieveManagers, ANullSetKeepsTheApplianceSet)
{
    CustomizedDataRetrieveManager* customized = wrapper()->getCustomizedDataRetrieveManager();
    ICustomizedDataRetrieve* appliance = customized->getUserRetriever();
    customized->setUserRetriever(nullptr);
    EXPECT_EQ(customized->getUserRetriever(), appliance);
    DeviceDataRetrieveManager* device = wrapper()->getDeviceDataRetrieveManager();
    IDeviceDataRetrieve* applianceDevice = device->getUserDeviceDataRetriever();
    device->setUserDeviceDataRetriever(nullptr);
    EXPECT_EQ(device->getUserDeviceDataRetriever(), applianceDevice);
    EXPECT_TRUE(marltest::logged("parameter is empty"));
}

TEST_F(RetrieveManagers, AReplacedSetIsDeletedOnceAndTheNewOneWithTheManager)
{
    gDeletedSets = 0;
    CustomizedDataRetrieveManager* customized = wrapper()->getCustomizedDataRetrieveManager();
    customized->setUserRetriever(new CountedSet());
    customized->setUserRetriever(new CountedSet());
    EXPECT_EQ(gDeletedSets, 1);
    // With no retrievers in the user set, the fallback's answer.
    EXPECT_EQ(customized->getServerDefineRetriever()->getTargetServerIndex(), 50);
    ASSERT_EQ(MarlEngine_deinitialize(), 0);
    EXPECT_EQ(gDeletedSets, 2);
    ASSERT_EQ(MarlEngine_initialize(), 0);
}

TEST_F(RetrieveManagers, TheApplianceDriverResponseGoesThroughTheFrame)
{
    ICustomizedDriverResponse* retriever = wrapper()->getCustomizedDataRetrieveManager()->getDriverResponseRetriever();
    EXPECT_EQ(retriever->getDriverResponse("not json"), "");
    EXPECT_TRUE(marltest::logged("Json Parse Fail"));
    EXPECT_TRUE(marltest::logged("driverRequest[not json]"));
}

TEST(DriverResponseFrame, AnythingThatIsNoKnownRequestGetsTheEmptyResponse)
{
    marltest::TestDevice device;
    EXPECT_EQ(respond(""), "");
    EXPECT_EQ(respond("{\"Server Reqeust\": {\"agent\": \"Timer\"}}"), "");
    EXPECT_EQ(respond("{\"other\": 1}"), "");
    // JsonCpp's type errors leave the frame; the retriever answers them empty.
    EXPECT_THROW(respond("[1,2]"), Json::Exception);
    EXPECT_THROW(respond("{\"Server Reqeust\": \"text\"}"), Json::Exception);
    EXPECT_THROW(respond("{\"Server Reqeust\": {\"agent\": {}, \"action\": []}}"), Json::Exception);
    DaCustomizedDriverResponseRetriever retriever;
    EXPECT_EQ(retriever.getDriverResponse("[1,2]"), "");
    EXPECT_EQ(retriever.getDriverResponse("{\"Server Reqeust\": \"text\"}"), "");
    EXPECT_EQ(retriever.getDriverResponse("{\"Server Reqeust\": {\"agent\": {}, \"action\": []}}"), "");
}

namespace {

// A generator that composes data, to see the envelope around it.
class EchoGen : public DaDriverResponseGen {
public:
    explicit EchoGen(Json::Value request) : DaDriverResponseGen(request) { dataNode["status"] = "Found"; }
};

}  // namespace

TEST(DriverResponseFrame, TheEnvelopeNamesTheReplyAfterTheRequest)
{
    marltest::TestDevice device;
    Json::Value request;
    request["agent"] = "Timer";
    request["action"]["name"] = "Cancel Timer Request";
    EXPECT_EQ(EchoGen(request).getDriverResponse(),
              "{\"userComposedDriverResponse\":{\"action\":\"Cancel Timer Reply\",\"agent\":\"Timer\","
              "\"data\":{\"status\":\"Found\"}}}\n");
    request["action"]["name"] = "Status";
    EXPECT_EQ(EchoGen(request).getDriverResponse(),
              "{\"userComposedDriverResponse\":{\"action\":\"Status\",\"agent\":\"Timer\","
              "\"data\":{\"status\":\"Found\"}}}\n");
    request["action"]["name"] = "Request a Request";
    EXPECT_NE(EchoGen(request).getDriverResponse().find("\"action\":\"Reply a Request\""), std::string::npos);
}
