#include "PluginFixture.h"

#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImpl.h"
#include "ParserManager/OrvaneCloudParserHandle.h"
#include "ParserManager/OrvaneParserManager.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceStatusDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <json/json.h>
#include <locations.h>
#include <orvane-parser/MusicData.h>
#include <orvane-parser/TimerData.h>

#include <functional>

using marltest::EngineTest;
using marltest::TestDevice;

namespace {

size_t journalCount(const std::string& event)
{
    size_t count = 0;
    for (const auto& entry : vapp::readJournal())
        if (entry["event"].asString() == event)
            ++count;
    return count;
}

std::string locationFile(const std::string& content)
{
    return R"({"location": {"methods": {"LOCATIONS_METHOD_HYBRID": true}},
               "files": [{"tzplatform": 59, "name": "AccInfoData.txt", )" + content + "}]}";
}

const char* const kHybridOn = R"({"location": {"methods": {"LOCATIONS_METHOD_HYBRID": true}}})";

}  // namespace

// --- the facade --------------------------------------------------------------------

TEST(ParserFacade, FacetsAreHeldInConstructionOrder)
{
    TestDevice device(kHybridOn);
    RetrieveDeviceDataParserImpl facade;
    const std::vector<const void*> facets = {
        facade.getParserRetrieveUserCustomizedData(),  facade.getParserRetrieveDeviceAlarmData(),
        facade.getParserRetrieveDeviceCalendarData(),  facade.getParserRetrieveDeviceCallData(),
        facade.getParserRetrieveDeviceClockData(),     facade.getParserRetrieveDeviceContextualData(),
        facade.getParserRetrieveDeviceExerciseData(),  facade.getParserRetrieveDeviceLocationData(),
        facade.getParserRetrieveDeviceMessageData(),   facade.getParserRetrieveDeviceMusicData(),
        facade.getParserRetrieveDeviceStatusData(),    facade.getParserRetrieveDeviceTimerData()};
    std::less<const void*> before;
    for (size_t i = 1; i < facets.size(); ++i)
        EXPECT_TRUE(before(facets[i - 1], facets[i])) << i;
    const char* begin = reinterpret_cast<const char*>(&facade);
    for (const void* facet : facets) {
        EXPECT_GE(static_cast<const char*>(facet), begin);
        EXPECT_LT(static_cast<const char*>(facet), begin + sizeof(facade));
    }
}

TEST(ParserFacade, DomainsWithoutAFacetAnswerNull)
{
    TestDevice device(kHybridOn);
    RetrieveDeviceDataParserImpl facade;
    IParserRetrieveDeviceData& root = facade;
    EXPECT_EQ(root.getParserRetrieveDeviceSystemData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceHfdData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceLocaleData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceSettingsData(), nullptr);
    EXPECT_EQ(root.getParserRetrieveDeviceTimerData(), root.getParserRetrieveDeviceTimerData());
    EXPECT_NE(root.getParserRetrieveDeviceTimerData(), nullptr);
}

TEST(ParserFacade, TheCloudHandleHandsTheFacadeToTheParser)
{
    TestDevice device(kHybridOn);
    OrvaneCloudParserHandle handle;
    IParserRetrieveDeviceData* facade = handle.getParserDataRetriever();
    EXPECT_NE(dynamic_cast<RetrieveDeviceDataParserImpl*>(facade), nullptr);
    EXPECT_EQ(handle.getParserDataRetriever(), facade);
    EXPECT_EQ(journalCount("location_start"), 1u);
}

// --- the domains this appliance doesn't have --------------------------------------

TEST(ParserEmptyFacets, AlarmCalendarCallClockExerciseAndMessageAnswerFalseAfterTheirOwnLog)
{
    TestDevice device(kHybridOn);
    RetrieveDeviceDataParserImpl facade;
    IParserRetrieveDeviceAlarmData* alarm = facade.getParserRetrieveDeviceAlarmData();
    EXPECT_FALSE(alarm->getAlarmList(nullptr, nullptr));
    EXPECT_FALSE(alarm->getSingleAlarm(nullptr, nullptr));
    EXPECT_EQ(alarm->getAllAlarmsStatus(), 0);
    IParserRetrieveDeviceCalendarData* calendar = facade.getParserRetrieveDeviceCalendarData();
    EXPECT_FALSE(calendar->getCalendarItemOrganizer(nullptr, "1"));
    EXPECT_FALSE(calendar->getCalendarItemParticipants(nullptr, "1"));
    EXPECT_FALSE(calendar->getSingleCalendarItem(nullptr, nullptr));
    EXPECT_FALSE(calendar->getMultipleCalendarItems(nullptr, nullptr));
    EXPECT_FALSE(calendar->removeCalendarItemParticipant(nullptr));
    EXPECT_FALSE(calendar->getFreeTime(nullptr, nullptr));
    EXPECT_FALSE(facade.getParserRetrieveDeviceCallData()->getLastCallLog(nullptr));
    EXPECT_FALSE(facade.getParserRetrieveDeviceClockData()->getAllUserSetClockData(nullptr));
    EXPECT_FALSE(facade.getParserRetrieveDeviceExerciseData()->getStartExerciseStatus(nullptr, "run"));
    EXPECT_FALSE(facade.getParserRetrieveDeviceExerciseData()->getFinishExerciseStatus(nullptr));
    EXPECT_FALSE(facade.getParserRetrieveDeviceMessageData()->getNewMessages(nullptr, nullptr));

    for (const char* line :
         {"RetrieveDeviceDataParserImplAlarm.cpp: getAlarmList(", "RetrieveDeviceDataParserImplAlarm.cpp: getSingleAlarm(",
          "RetrieveDeviceDataParserImplAlarm.cpp: getAllAlarmsStatus(",
          "RetrieveDeviceDataParserImplCalendar.cpp: getCalendarItemOrganizer(",
          "RetrieveDeviceDataParserImplCalendar.cpp: getCalendarItemParticipants(",
          "RetrieveDeviceDataParserImplCalendar.cpp: getSingleCalendarItem(",
          "RetrieveDeviceDataParserImplCalendar.cpp: getMultipleCalendarItems(",
          "RetrieveDeviceDataParserImplCalendar.cpp: removeCalendarItemParticipant(",
          "RetrieveDeviceDataParserImplCalendar.cpp: getFreeTime(",
          "RetrieveDeviceDataParserImplCall.cpp: getLastCallLog(",
          "RetrieveDeviceDataParserImplClock.cpp: getAllUserSetClockData(",
          "RetrieveDeviceDataParserImplExercise.cpp: getStartExerciseStatus(",
          "RetrieveDeviceDataParserImplExercise.cpp: getFinishExerciseStatus(",
          "RetrieveDeviceDataParserImplMessage.cpp: getNewMessages("})
        EXPECT_TRUE(marltest::logged(line)) << line;
}

TEST(ParserEmptyFacets, NumbersAreEmptyAndTheRestKeepsTheInterfaceAnswers)
{
    TestDevice device(kHybridOn);
    RetrieveDeviceDataParserImpl facade;
    EXPECT_EQ(facade.getParserRetrieveDeviceContextualData()->getContextualSinglePhoneNumber(), "");
    EXPECT_EQ(facade.getParserRetrieveDeviceMessageData()->getPhoneNumberFromMessageId("3"), "");
    EXPECT_EQ(facade.getParserRetrieveDeviceMusicData()->getPlayDevice(), 100);
    EXPECT_EQ(facade.getParserRetrieveDeviceStatusData()->getOneWordCallMode(), "False");
    EXPECT_TRUE(facade.getParserRetrieveDeviceStatusData()->isContactPlmSyncDone());
}

// --- location ----------------------------------------------------------------------

TEST(ParserLocation, TheHybridMethodRunsWhileTheFacetLives)
{
    TestDevice device(kHybridOn);
    {
        RetrieveDeviceDataParserImplLocation location;
        EXPECT_EQ(journalCount("location_start"), 1u);
        EXPECT_EQ(journalCount("location_stop"), 0u);
    }
    EXPECT_EQ(journalCount("location_stop"), 1u);
    EXPECT_FALSE(marltest::logged("[ERROR] Fail to location manager"));
}

TEST(ParserLocation, ASwitchedOffMethodIsNotStarted)
{
    TestDevice device(R"({"location": {"methods": {"LOCATIONS_METHOD_HYBRID": false}}})");
    { RetrieveDeviceDataParserImplLocation location; }
    EXPECT_EQ(journalCount("location_start"), 0u);
    EXPECT_FALSE(marltest::logged("[ERROR] Fail to location manager"));
}

TEST(ParserLocation, AFailedMethodQueryIsLoggedAndNothingStarts)
{
    TestDevice device(R"({"location": {"methods": {"LOCATIONS_METHOD_GPS": true}}})");
    { RetrieveDeviceDataParserImplLocation location; }
    EXPECT_TRUE(marltest::logged("[ERROR] Fail to location manager is enabled method(" +
                                 std::to_string(LOCATIONS_ERROR_NOT_SUPPORTED) + ")"));
    EXPECT_EQ(journalCount("location_start"), 0u);
}

TEST(ParserLocation, AFailedCreateIsLoggedAndNothingStarts)
{
    TestDevice device(R"({"location": {"methods": {"LOCATIONS_METHOD_HYBRID": true}},
                          "errors": {"location_manager_create": "LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE"}})");
    { RetrieveDeviceDataParserImplLocation location; }
    EXPECT_TRUE(marltest::logged("[ERROR] Fail to location manager create(" +
                                 std::to_string(LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE) + ")"));
    EXPECT_EQ(journalCount("location_start"), 0u);
}

TEST(ParserLocation, AFailedStartIsLoggedAndTheFileIsStillRead)
{
    TestDevice device(R"({"location": {"methods": {"LOCATIONS_METHOD_HYBRID": true}},
                          "errors": {"location_manager_start": "LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE"},
                          "files": [{"tzplatform": 59, "name": "AccInfoData.txt", "json": [{"geo_la": 1.5}]}]})");
    RetrieveDeviceDataParserImplLocation location;
    EXPECT_TRUE(marltest::logged("[ERROR] Fail to location manager start(" +
                                 std::to_string(LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE) + ")"));
    EXPECT_EQ(location.getLatitude(), "1.5");
}

TEST(ParserLocation, ThePositionComesFromTheFirstElementOfTheFile)
{
    TestDevice device(locationFile(R"("json": [{"geo_la": 51.5074, "geo_lo": -0.1278}, {"geo_la": 1, "geo_lo": 2}])"));
    RetrieveDeviceDataParserImplLocation location;
    EXPECT_EQ(location.getLatitude(), "51.5074");
    EXPECT_EQ(location.getLongitude(), "-0.1278");
    EXPECT_TRUE(marltest::logged("latitude: \"51.5074\""));
    EXPECT_TRUE(marltest::logged("longitude: \"-0.1278\""));
}

TEST(ParserLocation, AMissingMemberGivesTheDefaultInSixDigits)
{
    TestDevice device(locationFile(R"("json": [{"city": "Suwon"}])"));
    RetrieveDeviceDataParserImplLocation location;
    EXPECT_EQ(location.getLatitude(), "37.2539");
    EXPECT_EQ(location.getLongitude(), "127.046");
}

TEST(ParserLocation, MoreThanSixSignificantDigitsAreRounded)
{
    TestDevice device(locationFile(R"("json": [{"geo_la": 37.123456789, "geo_lo": 127}])"));
    RetrieveDeviceDataParserImplLocation location;
    EXPECT_EQ(location.getLatitude(), "37.1235");
    EXPECT_EQ(location.getLongitude(), "127");
}

TEST(ParserLocation, AnEmptyMissingOrBrokenFileGivesEmptyText)
{
    {
        TestDevice device(locationFile(R"("text": "")"));
        RetrieveDeviceDataParserImplLocation location;
        EXPECT_EQ(location.getLatitude(), "");
        EXPECT_EQ(location.getLongitude(), "");
        EXPECT_TRUE(marltest::logged("latitude: \"\""));
    }
    {
        TestDevice device(kHybridOn);
        RetrieveDeviceDataParserImplLocation location;
        EXPECT_EQ(location.getLatitude(), "");
        EXPECT_EQ(location.getLongitude(), "");
    }
    {
        TestDevice device(locationFile(R"("text": "[{\"geo_la\": 51.5")"));
        RetrieveDeviceDataParserImplLocation location;
        EXPECT_EQ(location.getLatitude(), "");
    }
}

TEST(ParserLocation, AFileOfTheWrongShapeGivesEmptyText)
{
    for (const char* content : {R"("json": {"geo_la": 51.5})", R"("json": [5])", R"("json": [{"geo_la": "north"}])",
                                R"("json": "text")"}) {
        TestDevice device(locationFile(content));
        RetrieveDeviceDataParserImplLocation location;
        EXPECT_EQ(location.getLatitude(), "") << content;
    }
}

TEST(ParserLocation, AFileNestedDeeperThanTheReaderGoesGivesEmptyText)
{
    Json::Value description;
    description["files"][0]["tzplatform"] = 59;
    description["files"][0]["name"] = "AccInfoData.txt";
    description["files"][0]["text"] = std::string(5000, '[') + std::string(5000, ']');
    TestDevice device(Json::FastWriter().write(description));
    RetrieveDeviceDataParserImplLocation location;
    EXPECT_EQ(location.getLatitude(), "");
    EXPECT_EQ(location.getLongitude(), "");
    EXPECT_TRUE(marltest::logged("location file not usable ("));
}

// A file of null is an empty array to JsonCpp; null and true members read as 0 and 1.
TEST(ParserLocation, NullAndTrueReadAsJsonCppConvertsThem)
{
    {
        TestDevice device(locationFile(R"("json": null)"));
        RetrieveDeviceDataParserImplLocation location;
        EXPECT_EQ(location.getLatitude(), "37.2539");
        EXPECT_EQ(location.getLongitude(), "127.046");
    }
    {
        TestDevice device(locationFile(R"("json": [{"geo_la": null, "geo_lo": true}])"));
        RetrieveDeviceDataParserImplLocation location;
        EXPECT_EQ(location.getLatitude(), "0");
        EXPECT_EQ(location.getLongitude(), "1");
    }
}

TEST(ParserLocation, AnEmptyArrayGivesTheDefaults)
{
    TestDevice device(locationFile(R"("json": [])"));
    RetrieveDeviceDataParserImplLocation location;
    EXPECT_EQ(location.getLatitude(), "37.2539");
    EXPECT_EQ(location.getLongitude(), "127.046");
}

TEST(ParserLocation, TheFileIsReadAnewOnEveryCall)
{
    TestDevice device(locationFile(R"("json": [{"geo_la": 10}])"));
    RetrieveDeviceDataParserImplLocation location;
    EXPECT_EQ(location.getLatitude(), "10");
    device.apply(R"({"files": [{"tzplatform": 59, "name": "AccInfoData.txt", "json": [{"geo_la": 20}]}]})");
    EXPECT_EQ(location.getLatitude(), "20");
}

// --- the facets that ask the device's retrievers -----------------------------------------

class ParserDeviceFacets : public EngineTest {
protected:
    explicit ParserDeviceFacets(const std::string& description = "{}") : EngineTest(description) {}
    IParserRetrieveDeviceData* facade()
    {
        return wrapper()->getParserManager()->getCloudParserHandle()->getParserDataRetriever();
    }
};

class ParserMusic : public ParserDeviceFacets {
protected:
    ParserMusic()
        : ParserDeviceFacets(R"({"datastore": {"Music": [
              {"appName": "Pandora", "musicPlaying": "0", "stationName": "Jazz"},
              {"appName": "Spotify", "musicPlaying": "1"}]}})")
    {
    }
};

TEST_F(ParserMusic, ANullRecordIsRefused)
{
    EXPECT_FALSE(facade()->getParserRetrieveDeviceMusicData()->getMusicAppStatus(nullptr));
    EXPECT_TRUE(marltest::logged("musicData is NULL"));
}

TEST_F(ParserMusic, TheRecordTakesTheStationsAndThePlayer)
{
    MusicData music;
    EXPECT_TRUE(facade()->getParserRetrieveDeviceMusicData()->getMusicAppStatus(&music));
    EXPECT_EQ(music.getCurrentStation(), "Jazz");
    EXPECT_EQ(music.getLastStation(), "Found");
    EXPECT_EQ(music.getMusicAppName(), "Spotify");
    EXPECT_TRUE(marltest::logged("retrieve succedded"));
}

class ParserTimer : public ParserDeviceFacets {
protected:
    ParserTimer()
        : ParserDeviceFacets(R"({"datastore": {"Timer": [
              {"id": "1", "isrunning": "1", "isringing": "0", "delayTime": "3661"},
              {"id": "2", "isrunning": "0", "isringing": "1", "delayTime": "30"}]}})")
    {
    }
};

TEST_F(ParserTimer, TheListHoldsEveryTimerOfTheRetriever)
{
    std::vector<TimerData*> timers;
    EXPECT_TRUE(facade()->getParserRetrieveDeviceTimerData()->getActivatedTimerList(&timers));
    ASSERT_EQ(timers.size(), 2u);
    EXPECT_EQ(timers[0]->getId(), "1");
    EXPECT_EQ(timers[0]->getTimerTime(), "01:01:01");
    EXPECT_EQ(timers[1]->getId(), "2");
    EXPECT_EQ(timers[1]->getIsRunning(), "False");
    EXPECT_TRUE(marltest::logged("Retrieved timer count[2]"));
    for (TimerData* timer : timers)
        delete timer;
}

TEST_F(ParserTimer, ANullListGivesFalse)
{
    EXPECT_FALSE(facade()->getParserRetrieveDeviceTimerData()->getActivatedTimerList(nullptr));
    EXPECT_TRUE(marltest::logged("Retrieved timer count[0]"));
}

class ParserTimerWithoutRows : public ParserDeviceFacets {
protected:
    ParserTimerWithoutRows() : ParserDeviceFacets(R"({"datastore": {"Timer": []}})") {}
};

TEST_F(ParserTimerWithoutRows, TheListIsFalseAndUntouched)
{
    std::vector<TimerData*> timers;
    EXPECT_FALSE(facade()->getParserRetrieveDeviceTimerData()->getActivatedTimerList(&timers));
    EXPECT_TRUE(timers.empty());
    EXPECT_TRUE(marltest::logged("Retrieved timer count[0]"));
}

namespace {

class ChineseStatus : public IDeviceStatusDataRetrieve {
public:
    bool useChineseContentsProvider() override { return true; }
};

class ChineseSet : public IDeviceDataRetrieve {
public:
    IDeviceStatusDataRetrieve* getDeviceStatusDataRetriever() override { return &mStatus; }

private:
    ChineseStatus mStatus;
};

}  // namespace

class ParserStatus : public ParserDeviceFacets {};

TEST_F(ParserStatus, TheApplianceSwitchesReachTheParser)
{
    IParserRetrieveDeviceStatusData* status = facade()->getParserRetrieveDeviceStatusData();
    EXPECT_FALSE(status->isChineseCustomer());
    EXPECT_TRUE(status->useCustomDriverReply());
    EXPECT_TRUE(status->isContactPlmSyncDone());
}

TEST_F(ParserStatus, TheSwitchesFollowTheChosenStatusRetriever)
{
    wrapper()->getDeviceDataRetrieveManager()->setUserDeviceDataRetriever(new ChineseSet());
    IParserRetrieveDeviceStatusData* status = facade()->getParserRetrieveDeviceStatusData();
    EXPECT_TRUE(status->isChineseCustomer());
    EXPECT_FALSE(status->useCustomDriverReply());
}

class ParserCustomized : public ParserDeviceFacets {};

TEST_F(ParserCustomized, ADriverRequestGoesToTheApplianceRetriever)
{
    IParserRetrieveUserCustomizedData* customized = facade()->getParserRetrieveUserCustomizedData();
    EXPECT_EQ(customized->getDriverResponse("not json"), "");
    EXPECT_TRUE(marltest::logged("driverRequest[not json]"));
    EXPECT_TRUE(marltest::logged("driverResponse[]"));
}
