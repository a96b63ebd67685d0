// The NLU parameter set: the four groups that go with every request, each
// composed afresh from the key store, the data store, the foreground app and
// the engine's facets.
#include "PluginFixture.h"

#include "ClientManager/OrvaneMaster.h"
#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImpl.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGen.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenMornigBrief.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenRecipe.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenShoppingList.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenSystem.h"
#include "RetrieveImpl/DA/DaCustomizedNluParamsRetriever.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/VcEngineJsonConverter.h"

#include <json/json.h>

#include <map>
#include <regex>
#include <set>
#include <string>

using marltest::TestDevice;

namespace {

typedef std::map<std::string, _JsonObject*> ParamMap;

Json::Value parse(const std::string& text)
{
    Json::Value value;
    Json::Reader().parse(text, value);
    return value;
}

// Releases the objects of a map filled by the retriever.
void release(ParamMap& params)
{
    for (auto& entry : params)
        if (entry.second)
            json_object_unref(entry.second);
    params.clear();
}

Json::Value groupOf(const ParamMap& params, const std::string& name)
{
    const auto found = params.find(name);
    if (found == params.end() || !found->second)
        return Json::Value();
    return parse(VcEngineJsonConverter().jsonToString(found->second));
}

// Hides the engine wrapper from the generators while it lives.
class NoWrapper {
public:
    NoWrapper() : mSaved(OrvaneMaster::smWrapper) { OrvaneMaster::smWrapper = nullptr; }
    ~NoWrapper() { OrvaneMaster::smWrapper = mSaved; }

private:
    MarlEngineWrapper* mSaved;
};

std::string recipe()
{
    return DANluParamsGenRecipe().getNluParams();
}

Json::Value recipeGroup()
{
    return parse(recipe());
}

std::string morningBrief()
{
    return DANluParamsGenMorningBrief().getNluParams();
}

std::string shoppingList()
{
    return DANluParamsGenShoppingList().getNluParams();
}

const char* const kRecipeDefaults =
    "{\"currentStep\":\"First\",\"isLoggedIn\":\"False\",\"isRecipeOpen\":\"False\","
    "\"isRecipeOpenStartReadOutReadOutPlaying\":\"False,False,False\",\"recipeSearchEnabled\":\"False\"}\n";

const char* const kJournal = R"({"files": [{"tzplatform": 50,
    "name": "org.tizen.webdatabaseserviceapp/shared/trusted/Recipe.db-journal", "text": ""}]})";

}  // namespace

// ---------------------------------------------------------------- the frame

TEST(NluParamsFrame, TheBaseGeneratorComposesNothingAndGivesEmptyText)
{
    DANluParamsGen generator("Anything");
    EXPECT_EQ(generator.getNluParams(), "");
    EXPECT_EQ(generator.getAgentName(), "Anything");
}

TEST(NluParamsFrame, EachGeneratorCarriesItsGroupName)
{
    TestDevice device;
    EXPECT_EQ(DANluParamsGenRecipe().getAgentName(), "Recipe");
    EXPECT_EQ(DANluParamsGenMorningBrief().getAgentName(), "Morning Brief");
    EXPECT_EQ(DANluParamsGenSystem().getAgentName(), "System");
    EXPECT_EQ(DANluParamsGenShoppingList().getAgentName(), "ShoppingList");
}

TEST(NluParamsFrame, AGroupThatComposedNothingGoesOutNullAndTheOthersAreUnharmed)
{
    TestDevice device(R"({"datastore": {"ShoppingList": [{"currentShoppingListSize": "3",
                                                          "isDefaultListExisted": "1"}]}})");
    NoWrapper noWrapper;
    ParamMap params;
    EXPECT_TRUE(DaCustomizedNluParamsRetriever().getNluParams(&params));
    ASSERT_EQ(params.size(), 4u);
    ASSERT_EQ(params.count("System"), 1u);
    EXPECT_EQ(params["System"], nullptr);
    EXPECT_TRUE(marltest::logged("There is no string to convert"));
    // The generator after the empty one still ran.
    EXPECT_EQ(groupOf(params, "ShoppingList")["currentShoppingListSize"], "2");
    EXPECT_EQ(groupOf(params, "Recipe"), parse(kRecipeDefaults));
    EXPECT_EQ(groupOf(params, "Morning Brief")["isMorningBriefInstalled"], "True");
    release(params);
}

TEST(NluParamsFrame, WithoutAMapEveryGroupIsComposedAndTheNullMapIsLoggedAfterwards)
{
    TestDevice device;
    NoWrapper noWrapper;
    EXPECT_TRUE(DaCustomizedNluParamsRetriever().getNluParams(nullptr));
    const std::string log = marltest::platformLog();
    const size_t morningBrief = log.find("DANluParamsGenMornigBrief.cpp: makeParams(");
    const size_t shoppingList = log.find("DANluParamsGenShoppingList.cpp: makeParams(");
    const size_t nullMap = log.find("list is NULL");
    ASSERT_NE(morningBrief, std::string::npos);
    ASSERT_NE(shoppingList, std::string::npos);
    ASSERT_NE(nullMap, std::string::npos);
    EXPECT_LT(morningBrief, nullMap);
    EXPECT_LT(shoppingList, nullMap);
}

class NluParamsSet : public marltest::EngineTest {
};

TEST_F(NluParamsSet, WithNoDeviceDataAtAllTheMapStillHasFourGroups)
{
    ParamMap params;
    EXPECT_TRUE(DaCustomizedNluParamsRetriever().getNluParams(&params));
    ASSERT_EQ(params.size(), 4u);
    for (const char* name : {"Morning Brief", "Recipe", "ShoppingList", "System"}) {
        ASSERT_EQ(params.count(name), 1u) << name;
        EXPECT_NE(params[name], nullptr) << name;
    }
    EXPECT_FALSE(marltest::logged("list is NULL"));
    EXPECT_EQ(groupOf(params, "Recipe"), parse(kRecipeDefaults));
    EXPECT_EQ(groupOf(params, "Morning Brief"),
              parse(R"({"isMorningBriefInstalled":"True","isMorningBriefPlaying":"False"})"));
    EXPECT_EQ(groupOf(params, "ShoppingList"), parse(R"({"currentShoppingListSize":"0","existDefaultList":"True"})"));
    EXPECT_EQ(groupOf(params, "System")["ProductType"], "REF");
    release(params);
}

TEST_F(NluParamsSet, TheCustomDataFacetHandsTheFourGroupsToTheSpeechLibrary)
{
    device.apply(R"({"vconf": {"db/setting/region_code": "AU"}})");
    ParamMap* params = wrapper()->getEngineDeviceDataRetriever()->getDeviceCustomData()->getCustomDomainData();
    ASSERT_NE(params, nullptr);
    EXPECT_EQ(params->size(), 4u);
    EXPECT_EQ(groupOf(*params, "Morning Brief")["isMorningBriefInstalled"], "False");
    EXPECT_EQ(groupOf(*params, "System")["ModelName"], "LD2.0");
    release(*params);
    delete params;
}

TEST_F(NluParamsSet, GroupsAreComposedAfreshOnEveryCall)
{
    ParamMap params;
    DaCustomizedNluParamsRetriever retriever;
    retriever.getNluParams(&params);
    EXPECT_EQ(groupOf(params, "Morning Brief")["isMorningBriefInstalled"], "True");
    EXPECT_EQ(groupOf(params, "System")["24HourFormat"], "True");
    release(params);

    device.apply(R"({"vconf": {"db/setting/region_code": "AU", "db/menu_widget/regionformat_time1224": 1}})");
    retriever.getNluParams(&params);
    EXPECT_EQ(groupOf(params, "Morning Brief")["isMorningBriefInstalled"], "False");
    EXPECT_EQ(groupOf(params, "System")["24HourFormat"], "False");
    release(params);
}

TEST_F(NluParamsSet, EveryMemberOfEveryGroupIsText)
{
    device.apply(R"({"datastore": {"Recipe": [{"appName": "Unknown", "isLoggedIn": 1, "currentStep": 4}],
                                   "ShoppingList": [{"currentShoppingListSize": 6, "isDefaultListExisted": 0}],
                                   "MorningBrief": [{"isMorningBriefPlaying": 1}]},
                     "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"}})");
    ParamMap params;
    DaCustomizedNluParamsRetriever().getNluParams(&params);
    for (const auto& entry : params) {
        const Json::Value group = groupOf(params, entry.first);
        ASSERT_TRUE(group.isObject()) << entry.first;
        for (const auto& key : group.getMemberNames())
            EXPECT_TRUE(group[key].isString()) << entry.first << "." << key;
    }
    EXPECT_EQ(groupOf(params, "Recipe")["currentStep"], "4");
    EXPECT_EQ(groupOf(params, "ShoppingList")["currentShoppingListSize"], "5");
    release(params);
}

// ---------------------------------------------------------------- "System"

class SystemParams : public marltest::EngineTest {
protected:
    Json::Value system() { return parse(DANluParamsGenSystem().getNluParams()); }
};

TEST(SystemClockFormat, TwoIsTwentyFourHours)
{
    TestDevice device(R"({"vconf": {"db/menu_widget/regionformat_time1224": 2}})");
    EXPECT_EQ(is24HourFormat(), "True");
}

TEST(SystemClockFormat, OneIsTwelveHours)
{
    TestDevice device(R"({"vconf": {"db/menu_widget/regionformat_time1224": 1}})");
    EXPECT_EQ(is24HourFormat(), "False");
}

TEST(SystemClockFormat, AnyOtherReadableValueIsTwelveHours)
{
    TestDevice device(R"({"vconf": {"db/menu_widget/regionformat_time1224": 0}})");
    EXPECT_EQ(is24HourFormat(), "False");
    device.apply(R"({"vconf": {"db/menu_widget/regionformat_time1224": 24}})");
    EXPECT_EQ(is24HourFormat(), "False");
}

TEST(SystemClockFormat, AnUnsetKeyIsTwentyFourHours)
{
    TestDevice device;
    EXPECT_EQ(is24HourFormat(), "True");
    EXPECT_TRUE(marltest::logged("Vconf Read Fail"));
}

TEST(SystemClockFormat, AKeyOfAnotherTypeIsTwentyFourHours)
{
    TestDevice device(R"({"vconf": {"db/menu_widget/regionformat_time1224": "1"}})");
    EXPECT_EQ(is24HourFormat(), "True");
}

TEST(SystemClockFormat, AFailingKeyStoreIsTwentyFourHours)
{
    TestDevice device(R"({"vconf": {"db/menu_widget/regionformat_time1224": 1},
                          "errors": {"vconf_get_int": "VCONF_ERROR_FILE_BUSY"}})");
    EXPECT_EQ(is24HourFormat(), "True");
    EXPECT_TRUE(marltest::logged("Vconf Read Fail"));
}

TEST(SystemParamsAlone, WithoutTheEngineTheGroupComposesNothing)
{
    TestDevice device;
    NoWrapper noWrapper;
    EXPECT_EQ(DANluParamsGenSystem().getNluParams(), "");
}

TEST(SystemParamsAlone, InitDataNodeWritesEveryDefault)
{
    class Defaults : public DANluParamsGenSystem {
    public:
        Json::Value defaults()
        {
            initDataNode();
            return dataNode;
        }
    };
    const Json::Value expected = parse(R"({
        "24HourFormat": "True", "AirplaneMode": "", "SMSSupported": "", "VideoAllowed": "",
        "VideoSupported": "", "VoiceSupported": "", "albumName": "", "ampmRight": "", "artistName": "",
        "clientVersion": "", "contactsEnabled": "", "currentLocationAvailable": "True",
        "driveModeOnOff": "Off", "enableServerTTS": "False", "genreName": "", "getGeoLocationFromClient": "True",
        "hideOffensiveWords": "", "isOneShotMode": "", "isTimerWithinLimit": "True", "latitude": "",
        "longitude": "", "maxGroupSMSSize": "", "tuneCoveAvailable": "", "musicPlaying": "",
        "moodGridCataloged": "", "navigationEnabled": "", "newVoicemail": "", "nextTimerNum": "", "now": "",
        "pageSize": "", "somethingPausable": "False", "songName": "", "temp_units": "metric",
        "timerLimit": "", "timerRunning": "", "usePLM": "", "userDeviceCategory": "", "isFollowing": "",
        "currentApp": ""})");
    EXPECT_EQ(Defaults().defaults(), expected);
}

TEST_F(SystemParams, TheGroupHoldsTheDefaultKeysAndTheSevenWrittenOnlyBySources)
{
    const Json::Value group = system();
    const std::vector<std::string> names = group.getMemberNames();
    const std::set<std::string> keys(names.begin(), names.end());
    EXPECT_EQ(keys.size(), 46u);
    for (const char* key : {"volumeLevel", "volumePercent", "VolumeOnOff", "parentalAppList", "OTNDate",
                            "ProductType", "ModelName", "VideoAllowed", "newVoicemail", "driveModeOnOff"})
        EXPECT_EQ(keys.count(key), 1u) << key;
}

TEST_F(SystemParams, KeysThatNoSourceWritesKeepTheirDefaults)
{
    const Json::Value group = system();
    EXPECT_EQ(group["VideoAllowed"], "");
    EXPECT_EQ(group["newVoicemail"], "");
    EXPECT_EQ(group["driveModeOnOff"], "Off");
    EXPECT_EQ(group["getGeoLocationFromClient"], "True");
    EXPECT_EQ(group["somethingPausable"], "False");
}

TEST_F(SystemParams, TheStaticSystemTableWritesOverTheDefaults)
{
    const Json::Value group = system();
    EXPECT_EQ(group["isOneShotMode"], "FALSE");
    EXPECT_EQ(group["usePLM"], "False");
    EXPECT_EQ(group["maxGroupSMSSize"], "25");
    EXPECT_EQ(group["hideOffensiveWords"], "true");
    EXPECT_EQ(group["ampmRight"], "True");
    EXPECT_EQ(group["pageSize"], "6");
    EXPECT_EQ(group["userDeviceCategory"], "Sorrel");
    EXPECT_EQ(group["clientVersion"], "2");
}

TEST_F(SystemParams, ClockFormatFollowsTheKeyStore)
{
    device.apply(R"({"vconf": {"db/menu_widget/regionformat_time1224": 1}})");
    EXPECT_EQ(system()["24HourFormat"], "False");
    device.apply(R"({"vconf": {"db/menu_widget/regionformat_time1224": 2}})");
    EXPECT_EQ(system()["24HourFormat"], "True");
}

TEST_F(SystemParams, EnableServerTtsIsTheServerDefinesAnswerOverTheStaticTable)
{
    // No language set: server speech is used, though the static table says "False".
    EXPECT_EQ(system()["enableServerTTS"], "True");
    device.apply(R"({"vconf": {"db/orvane/setting/lang": 5}})");
    EXPECT_EQ(system()["enableServerTTS"], "False");
    device.apply(R"({"vconf": {"db/orvane/setting/lang": 1}})");
    EXPECT_EQ(system()["enableServerTTS"], "True");
}

TEST_F(SystemParams, MusicKeysWithNoMusicRows)
{
    const Json::Value group = system();
    EXPECT_EQ(group["musicPlaying"], "False");
    EXPECT_EQ(group["isFollowing"], "False");
    EXPECT_EQ(group["tuneCoveAvailable"], "True");
    EXPECT_EQ(group["moodGridCataloged"], "True");
    EXPECT_EQ(group["albumName"], "");
    EXPECT_EQ(group["artistName"], "");
    EXPECT_EQ(group["genreName"], "");
    EXPECT_EQ(group["songName"], "");
    EXPECT_EQ(group["currentApp"], "");
}

TEST_F(SystemParams, MusicKeysFollowThePlayingAndFollowedRows)
{
    device.apply(R"({"datastore": {"Music": [{"appName": "TuneIn", "musicPlaying": "1", "isFollowing": "1"}]}})");
    const Json::Value group = system();
    EXPECT_EQ(group["musicPlaying"], "True");
    EXPECT_EQ(group["isFollowing"], "True");
}

TEST_F(SystemParams, CurrentAppNamesTheMusicAppInFront)
{
    const char* const apps[][2] = {{"nn7Wgp14c8.LarderTuneIn", "TuneIn"},
                                   {"g5kOHeKOMQ.Pandora", "Pandora"},
                                   {"9DZ9Lnbtx0.spotifylarder", "Spotify"},
                                   {"4GKFs7KtEh.iHeartLarder", "iHeartRadio"}};
    for (const auto& app : apps) {
        device.apply(std::string(R"({"apps": {"installed": [], "foreground": ")") + app[0] + "\"}}");
        EXPECT_EQ(system()["currentApp"], app[1]) << app[0];
    }
}

TEST_F(SystemParams, AMusicAppRunningBehindIsNoCurrentApp)
{
    device.apply(R"({"apps": {"installed": ["g5kOHeKOMQ.Pandora", "org.tizen.fridge-timer"],
                              "running": ["g5kOHeKOMQ.Pandora"], "foreground": "org.tizen.fridge-timer"}})");
    EXPECT_EQ(system()["currentApp"], "");
}

TEST_F(SystemParams, TimerKeysWithNoTimerRows)
{
    const Json::Value group = system();
    EXPECT_EQ(group["timerLimit"], "20");
    EXPECT_EQ(group["timerRunning"], "False");
    EXPECT_EQ(group["isTimerWithinLimit"], "True");
    EXPECT_EQ(group["nextTimerNum"], "1");
}

TEST_F(SystemParams, TimerKeysFollowTheTimerRows)
{
    device.apply(R"({"datastore": {"Timer": [
        {"id": "1", "isrunning": "1", "isringing": "0", "delayTime": "300"},
        {"id": "2", "isrunning": "1", "isringing": "1", "delayTime": "60"},
        {"id": "3", "isrunning": "0", "isringing": "0", "delayTime": "60"}]}})");
    const Json::Value group = system();
    EXPECT_EQ(group["timerRunning"], "True");
    EXPECT_EQ(group["isTimerWithinLimit"], "True");
    EXPECT_EQ(group["nextTimerNum"], "4");
}

TEST_F(SystemParams, ARingingTimerIsNotRunning)
{
    device.apply(R"({"datastore": {"Timer": [{"id": "2", "isrunning": "1", "isringing": "1"}]}})");
    const Json::Value group = system();
    EXPECT_EQ(group["timerRunning"], "False");
    EXPECT_EQ(group["nextTimerNum"], "1");
}

TEST_F(SystemParams, TwentyTimersAreNotWithinTheLimit)
{
    std::string rows;
    for (int id = 1; id <= 20; ++id)
        rows += std::string(rows.empty() ? "" : ",") + "{\"id\": \"" + std::to_string(id) + "\", \"isrunning\": \"0\"}";
    device.apply(R"({"datastore": {"Timer": [)" + rows + "]}}");
    const Json::Value group = system();
    EXPECT_EQ(group["isTimerWithinLimit"], "False");
    EXPECT_EQ(group["nextTimerNum"], "21");
    EXPECT_EQ(group["timerLimit"], "20");
}

TEST_F(SystemParams, AirplaneModeFollowsFlightMode)
{
    device.apply(R"({"system_settings": {"SYSTEM_SETTINGS_KEY_NETWORK_FLIGHT_MODE": true}})");
    EXPECT_EQ(system()["AirplaneMode"], "On");
    device.apply(R"({"system_settings": {"SYSTEM_SETTINGS_KEY_NETWORK_FLIGHT_MODE": false}})");
    EXPECT_EQ(system()["AirplaneMode"], "Off");
}

TEST_F(SystemParams, AMusicLevelOfZeroIsVolumeOff)
{
    const Json::Value group = system();
    EXPECT_EQ(group["volumeLevel"], "0");
    EXPECT_EQ(group["volumePercent"], "0");
    EXPECT_EQ(group["VolumeOnOff"], "Off");
}

TEST_F(SystemParams, VolumePercentIsTheLevelOverFifteenRoundedDown)
{
    ASSERT_EQ(MarlEngine_set_private_data("MediaVolume", "7"), 0);
    Json::Value group = system();
    EXPECT_EQ(group["volumeLevel"], "7");
    EXPECT_EQ(group["volumePercent"], "46");
    EXPECT_EQ(group["VolumeOnOff"], "On");

    ASSERT_EQ(MarlEngine_set_private_data("MediaVolume", "15"), 0);
    group = system();
    EXPECT_EQ(group["volumeLevel"], "15");
    EXPECT_EQ(group["volumePercent"], "100");
}

TEST_F(SystemParams, VolumePercentOfTheExtremeLevelsIsExact)
{
    ASSERT_EQ(MarlEngine_set_private_data("MediaVolume", "2147483647"), 0);
    Json::Value group = system();
    EXPECT_EQ(group["volumeLevel"], "2147483647");
    EXPECT_EQ(group["volumePercent"], "14316557646");
    EXPECT_EQ(group["VolumeOnOff"], "On");

    ASSERT_EQ(MarlEngine_set_private_data("MediaVolume", "-2147483648"), 0);
    group = system();
    EXPECT_EQ(group["volumeLevel"], "-2147483648");
    EXPECT_EQ(group["volumePercent"], "-14316557653");
    EXPECT_EQ(group["VolumeOnOff"], "On");

    ASSERT_EQ(MarlEngine_set_private_data("MediaVolume", "-7"), 0);
    EXPECT_EQ(system()["volumePercent"], "-46");
}

TEST_F(SystemParams, TelephonyKeysComeFromTheSystemFacet)
{
    device.apply(R"({"system_info": {"tizen.org/feature/network.telephony.sms": true,
                                     "tizen.org/feature/network.telephony": false}})");
    Json::Value group = system();
    EXPECT_EQ(group["SMSSupported"], "True");
    EXPECT_EQ(group["VoiceSupported"], "False");
    EXPECT_EQ(group["VideoSupported"], "");

    device.apply(R"({"system_info": {"tizen.org/feature/network.telephony.sms": false,
                                     "tizen.org/feature/network.telephony": true}})");
    group = system();
    EXPECT_EQ(group["SMSSupported"], "False");
    EXPECT_EQ(group["VoiceSupported"], "True");
}

TEST_F(SystemParams, TemperatureUnitsAreImperialOnlyInTheUS)
{
    device.apply(R"({"vconf": {"db/setting/country_code": "US"}})");
    EXPECT_EQ(system()["temp_units"], "imperial");
    device.apply(R"({"vconf": {"db/setting/country_code": "GB"}})");
    EXPECT_EQ(system()["temp_units"], "metric");
    device.apply(R"({"vconf": {"db/setting/country_code": "us"}})");
    EXPECT_EQ(system()["temp_units"], "metric");
    device.apply(R"({"vconf": {"db/setting/country_code": null}})");
    EXPECT_EQ(system()["temp_units"], "metric");
}

TEST_F(SystemParams, ContactsAndNavigationComeFromTheirFacets)
{
    const Json::Value group = system();
    EXPECT_EQ(group["contactsEnabled"], "True");
    EXPECT_EQ(group["navigationEnabled"], "False");
}

TEST_F(SystemParams, APositionFromTheLocationFileIsAvailable)
{
    device.apply(R"({"files": [{"tzplatform": 59, "name": "AccInfoData.txt",
                                "json": [{"geo_la": 51.5074, "geo_lo": -0.1278}]}]})");
    const Json::Value group = system();
    EXPECT_EQ(group["latitude"], "51.5074");
    EXPECT_EQ(group["longitude"], "-0.1278");
    EXPECT_EQ(group["currentLocationAvailable"], "True");
}

TEST_F(SystemParams, NoLocationFileMeansNoCurrentLocation)
{
    const Json::Value group = system();
    EXPECT_EQ(group["latitude"], "");
    EXPECT_EQ(group["longitude"], "");
    EXPECT_EQ(group["currentLocationAvailable"], "False");
}

TEST_F(SystemParams, ABrokenLocationFileMeansNoCurrentLocation)
{
    device.apply(R"({"files": [{"tzplatform": 59, "name": "AccInfoData.txt", "text": "not json"}]})");
    const Json::Value group = system();
    EXPECT_EQ(group["latitude"], "");
    EXPECT_EQ(group["currentLocationAvailable"], "False");
}

TEST_F(SystemParams, NowIsTheLocalTime)
{
    EXPECT_TRUE(std::regex_match(system()["now"].asString(),
                                 std::regex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}")));
}

TEST_F(SystemParams, ParentalAppListJoinsTheAliasNames)
{
    device.apply(R"({"aul": {"aliases": [{"alias": "org.example.music", "appid": "nn7Wgp14c8.LarderTuneIn"},
                                         {"alias": "org.example.radio", "appid": "4GKFs7KtEh.iHeartLarder"},
                                         {"alias": "org.example.news", "appid": "org.tizen.browser"}]}})");
    EXPECT_EQ(system()["parentalAppList"], "org.example.music,org.example.radio,org.example.news");
}

TEST_F(SystemParams, OneAliasHasNoComma)
{
    device.apply(R"({"aul": {"aliases": [{"alias": "org.example.music", "appid": "nn7Wgp14c8.LarderTuneIn"}]}})");
    EXPECT_EQ(system()["parentalAppList"], "org.example.music");
}

TEST_F(SystemParams, NoAliasesOrAFailingAliasListGiveAnEmptyList)
{
    EXPECT_EQ(system()["parentalAppList"], "");
    device.apply(R"({"aul": {"aliases": [{"alias": "org.example.music", "appid": "nn7Wgp14c8.LarderTuneIn"}]},
                     "errors": {"aul_svc_foreach_alias_info": "AUL_SVC_RET_EILLACC"}})");
    EXPECT_EQ(system()["parentalAppList"], "");
}

TEST_F(SystemParams, ProductKeysAreFixed)
{
    const Json::Value group = system();
    EXPECT_EQ(group["OTNDate"], "20170815");
    EXPECT_EQ(group["ProductType"], "REF");
    EXPECT_EQ(group["ModelName"], "LD2.0");
}

TEST_F(SystemParams, AFailingDataStoreGivesTheEmptyTableAnswers)
{
    device.apply(R"({"datastore": {"Timer": [{"id": "1", "isrunning": "1", "isringing": "0"}],
                                   "Music": [{"appName": "TuneIn", "musicPlaying": "1"}]},
                     "errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"}})");
    const Json::Value group = system();
    EXPECT_EQ(group["timerRunning"], "False");
    EXPECT_EQ(group["nextTimerNum"], "1");
    EXPECT_EQ(group["musicPlaying"], "False");
}

// ---------------------------------------------------------------- "Recipe"

TEST(RecipeParams, WithNoRowsInTheUSTheFiveDefaultsGoOutWhicheverAppIsInFront)
{
    TestDevice device(R"({"vconf": {"db/setting/region_code": "US"},
                          "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"}})");
    EXPECT_EQ(recipe(), kRecipeDefaults);
}

TEST(RecipeParams, AnUnreadableKeyStoreCountsAsTheUS)
{
    TestDevice device(R"({"datastore": {"Recipe": [{"appName": "Unknown", "currentStep": "2"}]},
                          "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"},
                          "errors": {"vconf_get_str": -1}})");
    const Json::Value group = recipeGroup();
    EXPECT_EQ(group["recipeForegroundPkg"], "1K3CsGDv16.Recipes");
    EXPECT_EQ(group["currentStep"], "2");
}

TEST(RecipeParams, AnUnknownAppIsTheRecipesAppInTheUSAndAustralia)
{
    for (const char* region : {"US", "AU"}) {
        TestDevice device(std::string(R"({"vconf": {"db/setting/region_code": ")") + region + R"("},
            "datastore": {"Recipe": [{"appName": "Unknown", "isLoggedIn": "True", "isRecipeOpen": "True",
                                      "StartReadOut": "True", "ReadOutPlaying": "False", "currentStep": "3"}]},
            "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"}})");
        EXPECT_EQ(recipe(), "{\"currentStep\":\"3\",\"isLoggedIn\":\"True\",\"isRecipeOpen\":\"True\","
                            "\"isRecipeOpenStartReadOutReadOutPlaying\":\"True,True,False\","
                            "\"recipeForegroundPkg\":\"1K3CsGDv16.Recipes\",\"recipeSearchEnabled\":\"False\"}\n")
            << region;
    }
}

TEST(RecipeParams, AnUnknownAppIsTheDeliCookAppInKorea)
{
    TestDevice device(R"({"vconf": {"db/setting/region_code": "KR"},
        "datastore": {"Recipe": [{"appName": "Unknown", "isRecipeOpen": "True", "currentStep": "5"}]},
        "apps": {"installed": ["Pt0hRTNBBa.RecipeDeliCook"], "foreground": "Pt0hRTNBBa.RecipeDeliCook"}})");
    const Json::Value group = recipeGroup();
    EXPECT_EQ(group["recipeForegroundPkg"], "Pt0hRTNBBa.RecipeDeliCook");
    EXPECT_EQ(group["isRecipeOpen"], "True");
    EXPECT_EQ(group["currentStep"], "5");
}

TEST(RecipeParams, AnUnknownAppMatchesNothingInOtherRegions)
{
    TestDevice device(R"({"vconf": {"db/setting/region_code": "GB"},
        "datastore": {"Recipe": [{"appName": "Unknown", "isLoggedIn": "True"}]},
        "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"}})");
    const Json::Value group = recipeGroup();
    EXPECT_EQ(group["isRecipeOpen"], "False");
    EXPECT_FALSE(group.isMember("recipeForegroundPkg"));
    EXPECT_EQ(group["isLoggedIn"], "True");
}

TEST(RecipeParams, InKoreaTheUserIsAlwaysLoggedIn)
{
    TestDevice device(R"({"vconf": {"db/setting/region_code": "KR"},
        "datastore": {"Recipe": [{"appName": "Pt0hRTNBBa.RecipeDeliCook", "isLoggedIn": "False"}]}})");
    const Json::Value group = recipeGroup();
    EXPECT_EQ(group["isLoggedIn"], "True");
    EXPECT_EQ(group["isRecipeOpen"], "False");
}

TEST(RecipeParams, LoggedInIsTheRowsValueEvenWhenTheAppIsNotInFront)
{
    TestDevice device(R"({"datastore": {"Recipe": [{"appName": "1K3CsGDv16.Recipes", "isLoggedIn": "1"}]}})");
    const Json::Value group = recipeGroup();
    EXPECT_EQ(group["isLoggedIn"], "1");
    EXPECT_EQ(group["isRecipeOpen"], "False");
    EXPECT_EQ(group["currentStep"], "First");
}

TEST(RecipeParams, TheLastRowVisitedDecidesLoggedIn)
{
    TestDevice device(R"({"datastore": {"Recipe": [{"appName": "a.one", "isLoggedIn": "True"},
                                                   {"appName": "a.two"}]}})");
    EXPECT_EQ(recipeGroup()["isLoggedIn"], "False");
}

TEST(RecipeParams, ARowInFrontWithEmptyFieldsGivesTheWordDefaultsAndAnOpenRecipe)
{
    TestDevice device(R"({"datastore": {"Recipe": [{"appName": "1K3CsGDv16.Recipes"}]},
        "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"}})");
    EXPECT_EQ(recipe(), "{\"currentStep\":\"First\",\"isLoggedIn\":\"False\",\"isRecipeOpen\":\"True\","
                        "\"isRecipeOpenStartReadOutReadOutPlaying\":\"False,False,False\","
                        "\"recipeForegroundPkg\":\"1K3CsGDv16.Recipes\",\"recipeSearchEnabled\":\"False\"}\n");
}

TEST(RecipeParams, TheRecipeIsOpenInTheGroupEvenWhenTheRowSaysItIsNot)
{
    TestDevice device(R"({"datastore": {"Recipe": [{"appName": "1K3CsGDv16.Recipes", "isRecipeOpen": "False",
                                                    "StartReadOut": "True", "ReadOutPlaying": "True"}]},
        "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"}})");
    const Json::Value group = recipeGroup();
    EXPECT_EQ(group["isRecipeOpen"], "True");
    EXPECT_EQ(group["isRecipeOpenStartReadOutReadOutPlaying"], "False,True,True");
}

TEST(RecipeParams, TheFirstRowInFrontWinsAndLoggedInComesFromTheRowsUpToIt)
{
    TestDevice device(R"({"datastore": {"Recipe": [
            {"appName": "a.behind", "isLoggedIn": "1"},
            {"appName": "1K3CsGDv16.Recipes", "isLoggedIn": "0", "currentStep": "2"},
            {"appName": "1K3CsGDv16.Recipes", "isLoggedIn": "1", "currentStep": "7"}]},
        "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"}})");
    const Json::Value group = recipeGroup();
    EXPECT_EQ(group["currentStep"], "2");
    EXPECT_EQ(group["isLoggedIn"], "0");
}

TEST(RecipeParams, AnAppRunningBehindIsNotInFront)
{
    TestDevice device(R"({"datastore": {"Recipe": [{"appName": "1K3CsGDv16.Recipes", "currentStep": "2"}]},
        "apps": {"installed": ["1K3CsGDv16.Recipes", "org.tizen.fridge-timer"],
                 "running": ["1K3CsGDv16.Recipes"], "foreground": "org.tizen.fridge-timer"}})");
    const Json::Value group = recipeGroup();
    EXPECT_EQ(group["isRecipeOpen"], "False");
    EXPECT_EQ(group["currentStep"], "First");
}

TEST(RecipeParams, ARowWithoutAnAppNameIsNeverInFront)
{
    TestDevice device(R"({"datastore": {"Recipe": [{"isRecipeOpen": "True", "currentStep": "2"}]},
        "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"}})");
    EXPECT_EQ(recipe(), kRecipeDefaults);
}

TEST(RecipeParams, AFailingDataStoreGivesTheDefaults)
{
    TestDevice device(R"({"datastore": {"Recipe": [{"appName": "1K3CsGDv16.Recipes", "isLoggedIn": "1"}]},
        "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"},
        "errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"}})");
    EXPECT_EQ(recipe(), kRecipeDefaults);
}

TEST(RecipeParams, AFailingAppManagerMeansNoRecipeIsInFront)
{
    TestDevice device(R"({"datastore": {"Recipe": [{"appName": "1K3CsGDv16.Recipes", "currentStep": "2"}]},
        "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"},
        "errors": {"app_manager_is_running": "APP_MANAGER_ERROR_IO_ERROR"}})");
    EXPECT_EQ(recipe(), kRecipeDefaults);
}

TEST(RecipeParams, InEuropeTheWebLinkAppInFrontOpensTheRecipeAndNothingElse)
{
    TestDevice device(R"({"vconf": {"db/setting/region_code": "EU", "db/setting/country_code": "GB"},
        "datastore": {"Recipe": [{"appName": "org.tizen.WeblinkApps-Allrecipes", "isLoggedIn": "1",
                                  "currentStep": "4", "isRecipeOpen": "True"}]},
        "apps": {"installed": ["org.tizen.WeblinkApps-Allrecipes"],
                 "foreground": "org.tizen.WeblinkApps-Allrecipes"}})");
    EXPECT_EQ(recipe(), "{\"currentStep\":\"First\",\"isLoggedIn\":\"False\",\"isRecipeOpen\":\"True\","
                        "\"isRecipeOpenStartReadOutReadOutPlaying\":\"False,False,False\","
                        "\"recipeSearchEnabled\":\"False\"}\n");
}

TEST(RecipeParams, InEuropeWithoutTheWebLinkAppInFrontTheDefaultsGoOut)
{
    TestDevice device(R"({"vconf": {"db/setting/region_code": "EU", "db/setting/country_code": "DE"},
        "apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"}})");
    EXPECT_EQ(recipe(), kRecipeDefaults);
}

TEST(RecipeParams, InFranceTheWebLinkAppIsMarmiton)
{
    TestDevice device(R"({"vconf": {"db/setting/region_code": "EU", "db/setting/country_code": "FR"},
        "apps": {"installed": ["org.tizen.WeblinkApps-Marmiton", "org.tizen.WeblinkApps-Allrecipes"],
                 "foreground": "org.tizen.WeblinkApps-Marmiton"}})");
    Json::Value group = recipeGroup();
    EXPECT_EQ(group["isRecipeOpen"], "True");
    EXPECT_EQ(group["currentStep"], "First");
    EXPECT_EQ(group["isRecipeOpenStartReadOutReadOutPlaying"], "False,False,False");

    device.apply(R"({"apps": {"installed": ["org.tizen.WeblinkApps-Allrecipes"],
                              "foreground": "org.tizen.WeblinkApps-Allrecipes"}})");
    EXPECT_EQ(recipeGroup()["isRecipeOpen"], "False");
}

TEST(RecipeParams, SwedenAndNorwayInEuropeHaveNoRecipeApp)
{
    for (const char* country : {"SE", "NO"}) {
        TestDevice device(std::string(R"({"vconf": {"db/setting/region_code": "EU", "db/setting/country_code": ")") +
                          country + R"("}, "apps": {"installed": ["org.tizen.WeblinkApps-Allrecipes"],
                                                   "foreground": "org.tizen.WeblinkApps-Allrecipes"}})");
        const Json::Value group = recipeGroup();
        EXPECT_EQ(group["isRecipeOpen"], "NotSupported") << country;
        EXPECT_EQ(group["currentStep"], "First") << country;
    }
}

TEST(RecipeParams, SwedenOutsideEuropeIsAnOrdinaryCountry)
{
    TestDevice device(R"({"vconf": {"db/setting/region_code": "US", "db/setting/country_code": "SE"}})");
    EXPECT_EQ(recipeGroup()["isRecipeOpen"], "False");
}

// ---------------------------------------------------------------- "Morning Brief"

TEST(MorningBriefParams, NoRowsMeansInstalledAndNotPlaying)
{
    TestDevice device;
    EXPECT_EQ(morningBrief(), "{\"isMorningBriefInstalled\":\"True\",\"isMorningBriefPlaying\":\"False\"}\n");
}

TEST(MorningBriefParams, TheMorningBriefIsInstalledInKoreaEuropeAndTheUS)
{
    for (const char* region : {"KR", "EU", "US"}) {
        TestDevice device(std::string(R"({"vconf": {"db/setting/region_code": ")") + region + "\"}}");
        EXPECT_EQ(parse(morningBrief())["isMorningBriefInstalled"], "True") << region;
    }
}

TEST(MorningBriefParams, TheMorningBriefIsNotInstalledInOtherRegions)
{
    for (const char* region : {"AU", "GB", "us", ""}) {
        TestDevice device(std::string(R"({"vconf": {"db/setting/region_code": ")") + region + "\"}}");
        EXPECT_EQ(parse(morningBrief())["isMorningBriefInstalled"], "False") << region;
    }
}

TEST(MorningBriefParams, AFailingKeyStoreCountsAsTheUS)
{
    TestDevice device(R"({"vconf": {"db/setting/region_code": "AU"}, "errors": {"vconf_get_str": -1}})");
    EXPECT_EQ(parse(morningBrief())["isMorningBriefInstalled"], "True");
}

TEST(MorningBriefParams, PlayMeansPlaying)
{
    TestDevice device(R"({"datastore": {"MorningBrief": [{"isMorningBriefPlaying": "Play"}]}})");
    EXPECT_EQ(parse(morningBrief())["isMorningBriefPlaying"], "True");
}

TEST(MorningBriefParams, AnyOtherWordIsNotPlaying)
{
    for (const char* word : {"True", "play", "1", "Pause", ""}) {
        TestDevice device(std::string(R"({"datastore": {"MorningBrief": [{"isMorningBriefPlaying": ")") + word +
                          "\"}]}}");
        EXPECT_EQ(parse(morningBrief())["isMorningBriefPlaying"], "False") << word;
    }
}

TEST(MorningBriefParams, OnlyTheFirstRowCounts)
{
    TestDevice device(R"({"datastore": {"MorningBrief": [{"other": "x"}, {"isMorningBriefPlaying": "Play"}]}})");
    EXPECT_EQ(parse(morningBrief())["isMorningBriefPlaying"], "False");
}

TEST(MorningBriefParams, AFailingDataStoreIsNotPlaying)
{
    TestDevice device(R"({"datastore": {"MorningBrief": [{"isMorningBriefPlaying": "Play"}]},
                          "errors": {"odb_manager_create": "ODB_ERROR_IO"}})");
    EXPECT_EQ(parse(morningBrief())["isMorningBriefPlaying"], "False");
}

// ---------------------------------------------------------------- "ShoppingList"

TEST(ShoppingListParams, NoRowsSendAnEmptyListAndADefaultList)
{
    TestDevice device;
    EXPECT_EQ(shoppingList(), "{\"currentShoppingListSize\":\"0\",\"existDefaultList\":\"True\"}\n");
}

TEST(ShoppingListParams, TheSizeSentIsOneLessThanTheStoredCount)
{
    const char* const cases[][2] = {{"0", "0"}, {"1", "0"}, {"5", "4"}, {"-3", "0"}, {"abc", "0"}, {"12x", "11"}};
    for (const auto& c : cases) {
        TestDevice device(std::string(R"({"datastore": {"ShoppingList": [{"currentShoppingListSize": ")") + c[0] +
                          "\"}]}}");
        EXPECT_EQ(parse(shoppingList())["currentShoppingListSize"], c[1]) << c[0];
    }
}

TEST(ShoppingListParams, AnIntegerCountIsReadToo)
{
    TestDevice device(R"({"datastore": {"ShoppingList": [{"currentShoppingListSize": 5}]}})");
    EXPECT_EQ(parse(shoppingList())["currentShoppingListSize"], "4");
}

TEST(ShoppingListParams, NoDefaultListWithoutTheJournalFileSendsTrue)
{
    TestDevice device(R"({"datastore": {"ShoppingList": [{"isDefaultListExisted": "0"}]}})");
    EXPECT_EQ(parse(shoppingList())["existDefaultList"], "True");
}

TEST(ShoppingListParams, NoDefaultListWithTheJournalFileSendsFalse)
{
    TestDevice device(R"({"datastore": {"ShoppingList": [{"isDefaultListExisted": "0"}]}})");
    device.apply(kJournal);
    EXPECT_EQ(parse(shoppingList())["existDefaultList"], "False");
}

TEST(ShoppingListParams, AnyOtherDefaultListValueSendsTrue)
{
    for (const char* value : {"1", "", "no", "00"}) {
        TestDevice device(std::string(R"({"datastore": {"ShoppingList": [{"isDefaultListExisted": ")") + value +
                          "\"}]}}");
        device.apply(kJournal);
        EXPECT_EQ(parse(shoppingList())["existDefaultList"], "True") << value;
    }
}

TEST(ShoppingListParams, AnIntegerZeroMeansNoDefaultList)
{
    TestDevice device(R"({"datastore": {"ShoppingList": [{"isDefaultListExisted": 0}]}})");
    device.apply(kJournal);
    EXPECT_EQ(parse(shoppingList())["existDefaultList"], "False");
}

TEST(ShoppingListParams, AFailingDataStoreSendsAnEmptyListAndADefaultList)
{
    TestDevice device(R"({"datastore": {"ShoppingList": [{"currentShoppingListSize": "5",
                                                          "isDefaultListExisted": "0"}]},
                          "errors": {"odb_manager_foreach_table": "ODB_ERROR_NO_SUCH_TABLE"}})");
    device.apply(kJournal);
    EXPECT_EQ(shoppingList(), "{\"currentShoppingListSize\":\"0\",\"existDefaultList\":\"True\"}\n");
}
