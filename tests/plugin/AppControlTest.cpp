#include "TestDevice.h"

#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "RetrieveImpl/DA/DAUtils/AppControlData.h"

#include <app_control.h>
#include <app_manager.h>
#include <dlfcn.h>

#include <fstream>
#include <sstream>

using Util::AppControl;
using Util::AppControlData;

namespace {

std::vector<Json::Value> journalOf(const std::string& event)
{
    std::vector<Json::Value> found;
    for (const auto& entry : vapp::readJournal())
        if (entry["event"].asString() == event)
            found.push_back(entry);
    return found;
}

std::string platformLog()
{
    std::ifstream in(vapp::devicePath("log/dlog.log"));
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

const char* const kApps = R"({"apps": {
    "installed": ["org.tizen.fridge-timer", "LAykghKXQw.FoodMinder", "org.tizen.WeblinkApps-Tesco",
                  "org.tizen.morningBrief"],
    "running": ["org.tizen.fridge-timer", "LAykghKXQw.FoodMinder"],
    "foreground": "LAykghKXQw.FoodMinder"}})";

int gHeldHandles = 0;

template <typename Function>
Function next(const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// The framework's handle calls, counted on their way to the appliance: a handle
// that is made and never destroyed stays counted.
extern "C" int app_control_create(app_control_h* app_control)
{
    static const auto create = next<int (*)(app_control_h*)>("app_control_create");
    const int code = create(app_control);
    if (code == APP_CONTROL_ERROR_NONE && app_control && *app_control)
        ++gHeldHandles;
    return code;
}

extern "C" int app_control_destroy(app_control_h app_control)
{
    static const auto destroy = next<int (*)(app_control_h)>("app_control_destroy");
    const int code = destroy(app_control);
    if (code == APP_CONTROL_ERROR_NONE)
        --gHeldHandles;
    return code;
}

TEST(AppControlRecord, SettersChainAndEmptyTextReadsAsNull)
{
    AppControlData data;
    EXPECT_EQ(data.getPackageName(), nullptr);
    EXPECT_EQ(data.getOperation(), nullptr);
    EXPECT_EQ(data.getUri(), nullptr);
    EXPECT_FALSE(data.getTerminateRequest());
    data.setPackageName("org.tizen.fridge-timer").setOperation("op").setUri("uri").addExtraData("k", "v").setTerminateRequest(true);
    EXPECT_STREQ(data.getPackageName(), "org.tizen.fridge-timer");
    EXPECT_STREQ(data.getOperation(), "op");
    EXPECT_STREQ(data.getUri(), "uri");
    EXPECT_TRUE(data.getTerminateRequest());
    ASSERT_EQ(data.getExtraDataList().size(), 1u);
    EXPECT_EQ(data.getExtraDataList().front()->first, "k");
    EXPECT_TRUE(data.clearExtraData().getExtraDataList().empty());
}

TEST(AppControlLaunch, ALaunchCarriesItsExtrasInOrder)
{
    marltest::TestDevice device(kApps);
    AppControlData data;
    data.setPackageName("org.tizen.fridge-timer")
        .setOperation("http://tizen.org/appcontrol/operation/default")
        .addExtraData("b", "2")
        .addExtraData("a", "1");
    EXPECT_EQ(AppControl::performAppControl(data), 0);
    const auto launches = journalOf("app_launch");
    ASSERT_EQ(launches.size(), 1u);
    EXPECT_EQ(launches[0]["app_id"].asString(), "org.tizen.fridge-timer");
    EXPECT_EQ(launches[0]["extras"]["a"].asString(), "1");
    ASSERT_EQ(launches[0]["extra_keys"].size(), 2u);
    EXPECT_EQ(launches[0]["extra_keys"][0].asString(), "b");
    EXPECT_TRUE(AppControl::isForeground("org.tizen.fridge-timer"));
}

TEST(AppControlLaunch, AnExtraWithAnEmptyValueIsDroppedSilently)
{
    marltest::TestDevice device(kApps);
    AppControlData data;
    data.setPackageName("org.tizen.fridge-timer").addExtraData("empty", "").addExtraData("", "x").addExtraData("kept", "1");
    EXPECT_EQ(AppControl::performAppControl(data), 0);
    const auto launches = journalOf("app_launch");
    ASSERT_EQ(launches.size(), 1u);
    EXPECT_EQ(launches[0]["extras"].size(), 1u);
    EXPECT_EQ(launches[0]["extras"]["kept"].asString(), "1");
    EXPECT_EQ(platformLog().find("Failed to add extra data"), std::string::npos);
}

TEST(AppControlLaunch, ARequestWithNothingSetStillReachesTheFramework)
{
    marltest::TestDevice device(kApps);
    AppControlData data;
    EXPECT_EQ(AppControl::performAppControl(data), APP_CONTROL_ERROR_APP_NOT_FOUND);
    EXPECT_EQ(journalOf("app_launch_refused").size(), 1u);
    EXPECT_NE(platformLog().find("Failed to launch request"), std::string::npos);
}

TEST(AppControlLaunch, AFailedStepReturnsThePlatformsCode)
{
    marltest::TestDevice device(R"({"errors": {"app_control_set_uri": -5}})");
    AppControlData data;
    data.setPackageName("org.tizen.fridge-timer").setUri("tizen://x");
    EXPECT_EQ(AppControl::performAppControl(data), -5);
    EXPECT_NE(platformLog().find("Failed to set uri"), std::string::npos);
    EXPECT_TRUE(journalOf("app_launch").empty());
}

// Kept on purpose: a launch that fails after the handle is made returns with
// the handle still held; only a launch that reaches its end destroys it.
TEST(AppControlLaunch, AFailedStepKeepsTheHandleAndALaunchReleasesIt)
{
    marltest::TestDevice device(kApps);
    AppControlData data;
    data.setPackageName("org.tizen.fridge-timer").setUri("tizen://x");
    const int held = gHeldHandles;
    EXPECT_EQ(AppControl::performAppControl(data), 0);
    EXPECT_EQ(gHeldHandles, held);
    device.apply(R"({"errors": {"app_control_set_uri": -5}})");
    EXPECT_EQ(AppControl::performAppControl(data), -5);
    EXPECT_EQ(gHeldHandles, held + 1);
}

TEST(AppControlLaunch, NoHandleAnswersMinusOne)
{
    marltest::TestDevice device(R"({"errors": {"app_control_create": "APP_CONTROL_ERROR_OUT_OF_MEMORY"}})");
    AppControlData data;
    data.setPackageName("org.tizen.fridge-timer");
    EXPECT_EQ(AppControl::performAppControl(data), -1);
    EXPECT_NE(platformLog().find("Failed to create app_control handle"), std::string::npos);
}

TEST(AppControlTerminate, AnAppThatIsNotRunningIsLeftAlone)
{
    marltest::TestDevice device(kApps);
    AppControlData data;
    data.setPackageName("org.tizen.morningBrief").setTerminateRequest(true);
    EXPECT_EQ(AppControl::performAppControl(data), 0);
    EXPECT_TRUE(journalOf("app_terminate").empty());
    EXPECT_EQ(platformLog().find("Terminate target app"), std::string::npos);
}

TEST(AppControlTerminate, ARunningAppIsTerminated)
{
    marltest::TestDevice device(kApps);
    AppControlData data;
    data.setPackageName("org.tizen.fridge-timer").setTerminateRequest(true);
    EXPECT_EQ(AppControl::performAppControl(data), 0);
    const auto terminations = journalOf("app_terminate");
    ASSERT_EQ(terminations.size(), 1u);
    EXPECT_EQ(terminations[0]["app_id"].asString(), "org.tizen.fridge-timer");
}

TEST(AppControlTerminate, FailuresAnswerTheCodeOrMinusOne)
{
    marltest::TestDevice device(kApps);
    AppControlData data;
    data.setPackageName("org.tizen.fridge-timer").setTerminateRequest(true);
    device.apply(R"({"errors": {"app_manager_terminate_app": -5}})");
    EXPECT_EQ(AppControl::performAppControl(data), -1);
    EXPECT_NE(platformLog().find("Failed to terminate bg app"), std::string::npos);
    device.apply(R"({"errors": {"app_manager_is_running": -7}})");
    EXPECT_EQ(AppControl::performAppControl(data), -7);
    device.apply(R"({"errors": {"app_manager_get_app_context": -9}})");
    EXPECT_EQ(AppControl::performAppControl(data), -1);
    EXPECT_NE(platformLog().find("Failed to get app_context handle"), std::string::npos);
}

TEST(AppControlForeground, OnlyTheAppInFrontIsForeground)
{
    marltest::TestDevice device(kApps);
    EXPECT_TRUE(AppControl::isForeground("LAykghKXQw.FoodMinder"));
    EXPECT_FALSE(AppControl::isForeground("org.tizen.fridge-timer"));  // in the background
    EXPECT_FALSE(AppControl::isForeground("org.tizen.morningBrief"));  // not running
    EXPECT_FALSE(AppControl::isForeground("unknown.app"));
    device.apply(R"({"errors": {"app_context_get_app_state": -5}})");
    EXPECT_FALSE(AppControl::isForeground("LAykghKXQw.FoodMinder"));
}

TEST(AppControlInstalled, TheUsAndKoreanRegionsAskThePlatform)
{
    marltest::TestDevice device(kApps);
    EXPECT_TRUE(AppControl::isInstalled("org.tizen.WeblinkApps-Tesco"));
    EXPECT_FALSE(AppControl::isInstalled("org.tizen.WeblinkApps-Chefkoch"));
    EXPECT_NE(platformLog().find("org.tizen.WeblinkApps-Chefkoch is not installed"), std::string::npos);
    device.apply(R"({"vconf": {"db/setting/region_code": "KR"}})");
    EXPECT_FALSE(AppControl::isInstalled("org.tizen.WeblinkApps-Chefkoch"));
}

TEST(AppControlInstalled, OnlyTheUnknownAppCodeMeansNotInstalled)
{
    marltest::TestDevice device(R"({"errors": {"app_info_create": -5}})");
    EXPECT_TRUE(AppControl::isInstalled("org.tizen.WeblinkApps-Chefkoch"));
}

TEST(AppControlInstalled, WithoutTheKeyStoreTheRegionIsTheUs)
{
    marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "DE"},
                                    "errors": {"vconf_get_str": -1}})");
    EXPECT_FALSE(AppControl::isInstalled("org.tizen.fridge-timer"));  // asked the platform: not installed here
}

TEST(AppControlInstalled, OtherRegionsUseTheMarketTablesByCountry)
{
    marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "DE", "db/setting/country_code": "NL"}})");
    EXPECT_TRUE(AppControl::isInstalled("org.tizen.fridge-timer"));
    EXPECT_FALSE(AppControl::isInstalled("org.tizen.morningBrief"));
    EXPECT_EQ(AppControl::gCommonAppSet.size(), 21u);
    EXPECT_EQ(AppControl::gAppMap.count("NL"), 1u);  // an unknown country gains an empty entry
}

TEST(AppControlInstalled, TheTablesWinOverThePlatformOutsideTheUsAndKorea)
{
    marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "FR", "db/setting/country_code": "FR"},
                                    "apps": {"installed": ["org.tizen.WeblinkApps-Tesco"]}})");
    EXPECT_FALSE(AppControl::isInstalled("org.tizen.WeblinkApps-Tesco"));
    EXPECT_TRUE(AppControl::isInstalled("org.tizen.WeblinkApps-LiDL"));
    EXPECT_TRUE(AppControl::isInstalled("org.tizen.WeblinkApps-LEquipe"));
}
