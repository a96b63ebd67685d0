// The virtual apps change the device as the plug-in reads it: rows of the
// data store as the data store's readers walk them, the apps in front.
#include "TestDevice.h"

#include "apps/Apps.h"
#include "apps/DeviceClock.h"

#include <app_manager.h>
#include <orvane-da-db/odb_manager.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using Rows = std::map<int, std::map<std::string, std::string>>;

void collect(int row, int type, const char* column, const char* text, int number, void* data)
{
    (*static_cast<Rows*>(data))[row][column] = type == ODB_VALUE_TYPE_TEXT ? text : std::to_string(number);
}

// The table as the plug-in's data-store reader gets it.
Rows table(const char* name)
{
    Rows rows;
    odb_manager_h handle = nullptr;
    EXPECT_EQ(odb_manager_create(&handle, "test"), 0);
    odb_manager_foreach_table(handle, name, collect, &rows);
    odb_manager_destroy(handle);
    return rows;
}

std::string foreground()
{
    for (const char* id : {"9DZ9Lnbtx0.spotifylarder", "g5kOHeKOMQ.Pandora", "UNduJ5y0UH.ShoppingList",
                           "LAykghKXQw.FoodMinder", "Snr7si7XV1.AccuWeather", "9zWvGSYU8Z.calendar"}) {
        app_context_h context = nullptr;
        if (app_manager_get_app_context(id, &context) != APP_MANAGER_ERROR_NONE)
            continue;
        app_state_e state = APP_STATE_UNDEFINED;
        app_context_get_app_state(context, &state);
        app_context_destroy(context);
        if (state == APP_STATE_FOREGROUND)
            return id;
    }
    return "";
}

apps::Result action(const char* key, const std::string& raw)
{
    apps::Result result;
    result.commands = {key};
    result.text = "what was said";
    result.hasNlu = true;
    result.nlu = raw;
    return result;
}

const char* const kTimer = "org.tizen.fridge-timer";

class Apps : public ::testing::Test {
protected:
    void SetUp() override
    {
        apps::pinClock(int64_t(1740988800) * 1000000000);  // 2025-03-03T08:00:00Z
        device.apply(apps::kitchenDevice().toStyledString());
    }
    marltest::TestDevice device;
    apps::Apps kitchen;
};

TEST_F(Apps, ASetTimerRunsWithEveryColumnTheTimerRepliesRead)
{
    const apps::Report report = kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Set Timer","duration":600})"));
    EXPECT_FALSE(report.error) << report.text;
    const Rows rows = table("Timer");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows.at(0), (std::map<std::string, std::string>{{"id", "1"},
                                                              {"isrunning", "1"},
                                                              {"isringing", "0"},
                                                              {"delayTime", "600"},
                                                              {"expectedRingingTimeStamp", "1740989400"},
                                                              {"lastUpdateTimeStamp", "1740988800"}}));
}

TEST_F(Apps, TimersTakeTheSmallestFreeIdAndCancelRemovesTheOneNamed)
{
    for (int i = 0; i < 3; ++i)
        kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Set Timer","duration":60})"));
    EXPECT_FALSE(kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Cancel Timer","id":"2"})")).error);
    kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Set Timer","duration":90})"));
    const Rows rows = table("Timer");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows.at(0).at("id"), "1");
    EXPECT_EQ(rows.at(1).at("id"), "3");
    EXPECT_EQ(rows.at(2).at("id"), "2");
    EXPECT_EQ(rows.at(2).at("delayTime"), "90");
}

TEST_F(Apps, ExtendingARunningTimerMovesItsRingingTime)
{
    kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Set Timer","duration":600})"));
    apps::advanceClock(int64_t(100) * 1000000000);
    const apps::Report report =
        kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Extend Timer","id":"1","duration":300})"));
    EXPECT_FALSE(report.error) << report.text;
    const auto row = table("Timer").at(0);
    EXPECT_EQ(row.at("delayTime"), "900");
    EXPECT_EQ(row.at("expectedRingingTimeStamp"), "1740989700");
    EXPECT_EQ(row.at("lastUpdateTimeStamp"), "1740988900");
}

TEST_F(Apps, APausedTimerKeepsItsLastUpdateSoItsTimeLeftGrows)
{
    device.apply(R"({"datastore": {"Timer": [{"id": "4", "isrunning": "0", "isringing": "0", "delayTime": "600",
        "expectedRingingTimeStamp": "1740988870", "lastUpdateTimeStamp": "1740988600"}]}})");
    kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Extend Timer","id":"4","duration":60})"));
    const auto row = table("Timer").at(0);
    EXPECT_EQ(row.at("expectedRingingTimeStamp"), "1740988930");
    EXPECT_EQ(row.at("lastUpdateTimeStamp"), "1740988600");
    EXPECT_EQ(row.at("isrunning"), "0");
}

TEST_F(Apps, ARunningTimerRingsWhenTheClockReachesItsTime)
{
    kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Set Timer","duration":5})"));
    apps::advanceClock(int64_t(4) * 1000000000);
    EXPECT_TRUE(kitchen.tick().empty());
    EXPECT_EQ(table("Timer").at(0).at("isringing"), "0");
    apps::advanceClock(int64_t(1) * 1000000000);
    const std::vector<apps::Report> reports = kitchen.tick();
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports[0].text, "timer 1 rings");
    const auto row = table("Timer").at(0);
    EXPECT_EQ(row.at("isringing"), "1");
    EXPECT_EQ(row.at("isrunning"), "1");
    EXPECT_TRUE(kitchen.tick().empty()) << "a ringing timer rings once";
}

TEST_F(Apps, WhatATimerAppCannotActOnIsLoggedAndChangesNothing)
{
    kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Set Timer","duration":60})"));
    const Rows before = table("Timer");
    for (const char* raw : {R"({"action":"Set Timer","duration":0})", R"({"action":"Set Timer","duration":360000})",
                            R"({"action":"Set Timer","duration":"ten"})", R"({"action":"Launch Rocket"})",
                            R"({"action":"Set Timer")", R"(["Set Timer"])", R"({"duration":60})",
                            R"({"action":"Cancel Timer","id":"9"})",
                            R"({"action":"Extend Timer","id":"1","duration":359990})"}) {
        const apps::Report report = kitchen.deliver(kTimer, action("#org.tizen.Timer", raw));
        EXPECT_TRUE(report.error) << raw << ": " << report.text;
        EXPECT_EQ(report.app, kTimer);
    }
    apps::Result none = action("#org.tizen.Timer", "");
    none.hasNlu = false;
    EXPECT_TRUE(kitchen.deliver(kTimer, none).error);
    EXPECT_EQ(table("Timer"), before);
}

TEST_F(Apps, TwentyTimersAreTheMost)
{
    for (int i = 0; i < 20; ++i)
        EXPECT_FALSE(kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Set Timer","duration":60})")).error);
    EXPECT_TRUE(kitchen.deliver(kTimer, action("#org.tizen.Timer", R"({"action":"Set Timer","duration":60})")).error);
    EXPECT_EQ(table("Timer").size(), 20u);
}

TEST_F(Apps, PlayingMusicMarksTheOneAppPlayingAndBringsItToTheFront)
{
    const char* music = "org.tizen.music-control";
    const char* key = "#org.tizen.Music App Control";
    EXPECT_FALSE(kitchen.deliver(music, action(key, R"({"action":"Play Music","music_app":"Pandora"})")).error);
    EXPECT_EQ(foreground(), "g5kOHeKOMQ.Pandora");
    EXPECT_FALSE(kitchen.deliver(music, action(key, R"({"action":"Like Song"})")).error);
    Rows rows = table("Music");
    EXPECT_EQ(rows.at(1).at("appName"), "Pandora");
    EXPECT_EQ(rows.at(1).at("musicPlaying"), "1");
    EXPECT_EQ(rows.at(1).at("currentSongRating"), "1");

    EXPECT_FALSE(kitchen.deliver(music, action(key, R"({"action":"Play Music","music_app":"Spotify"})")).error);
    EXPECT_EQ(foreground(), "9DZ9Lnbtx0.spotifylarder");
    rows = table("Music");
    EXPECT_EQ(rows.at(0).at("musicPlaying"), "1");
    EXPECT_EQ(rows.at(1).at("musicPlaying"), "0");

    EXPECT_FALSE(kitchen.deliver(music, action(key, R"({"action":"Stop Music"})")).error);
    for (const auto& row : table("Music"))
        EXPECT_EQ(row.second.at("musicPlaying"), "0") << row.second.at("appName");
    EXPECT_TRUE(kitchen.deliver(music, action(key, R"({"action":"Like Song"})")).error) << "nothing plays";
    EXPECT_TRUE(kitchen.deliver(music, action(key, R"({"action":"Play Music","music_app":"Winamp"})")).error);
}

TEST_F(Apps, TheCommerceServiceSearchesWhenLaunchedAndKeepsTheCart)
{
    const char* shop = "org.tizen.e-commerce-card-service";
    Json::Value launch;
    launch["event"] = "app_launch";
    launch["app_id"] = shop;
    launch["operation"] = "http://tizen.org/appcontrol/operation/search";
    launch["extras"]["key_merchant"] = "Tesco";
    launch["extras"]["key_search_term"] = "bread";
    std::vector<apps::Report> reports = kitchen.launched(launch);
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_FALSE(reports[0].error) << reports[0].text;
    ASSERT_TRUE(reports[0].then) << "the search is answered";
    EXPECT_EQ(table("Commerce").at(0).at("totalCount"), "3");
    EXPECT_EQ(table("CommerceSearch").size(), 3u);

    EXPECT_FALSE(kitchen.deliver(shop, action("#org.tizen.Commerce", R"({"action":"Add To Cart","item":"milk"})")).error);
    EXPECT_FALSE(kitchen.deliver(shop, action("#org.tizen.Commerce", R"({"action":"Add To Cart","item":"eggs"})")).error);
    EXPECT_TRUE(kitchen.deliver(shop, action("#org.tizen.Commerce", R"({"action":"Add To Cart","item":"caviar"})")).error);
    EXPECT_EQ(table("CommerceCart").size(), 2u);
    EXPECT_EQ(table("Commerce").at(0).at("productCountInCart"), "2");
    kitchen.deliver(shop, action("#org.tizen.Commerce", R"({"action":"Open Cart"})"));
    EXPECT_EQ(table("Commerce").at(0).at("currentViewType"), "2");

    launch["extras"]["key_search_term"] = "caviar";
    kitchen.launched(launch);
    EXPECT_EQ(table("Commerce").at(0).at("totalCount"), "0");
}

TEST_F(Apps, TheShoppingListCountsItsItemsAndComesToTheFrontForItsCommand)
{
    const char* list = "UNduJ5y0UH.ShoppingList";
    kitchen.deliver(list, action("#org.tizen.ShoppingList", R"({"action":"Add To Shopping List","item":"eggs"})"));
    kitchen.deliver(list, action("#org.tizen.ShoppingList", R"({"action":"Add To Shopping List","item":"milk"})"));
    EXPECT_EQ(table("ShoppingListItems").size(), 2u);
    EXPECT_EQ(table("ShoppingList").at(0).at("currentShoppingListSize"), "2");
    apps::Result command;
    command.commands = {"show the shopping list"};
    EXPECT_FALSE(kitchen.deliver(list, command).error);
    EXPECT_EQ(foreground(), list);
}

TEST_F(Apps, LaunchingAppsBringsThemToTheFront)
{
    kitchen.deliver("org.tizen.app-launcher",
                    action("#org.tizen.Launch Apps", R"({"action":"Launch App","package":"9zWvGSYU8Z.calendar"})"));
    EXPECT_EQ(foreground(), "9zWvGSYU8Z.calendar");
    kitchen.deliver("LAykghKXQw.FoodMinder",
                    action("#org.tizen.View Inside App Control", R"({"action":"View Inside","locationName":"Freezer"})"));
    EXPECT_EQ(foreground(), "LAykghKXQw.FoodMinder");
    kitchen.deliver("Snr7si7XV1.AccuWeather",
                    action("#org.tizen.Weather", R"({"action":"Show Weather","currentLocationName":"London"})"));
    EXPECT_EQ(foreground(), "Snr7si7XV1.AccuWeather");
    EXPECT_TRUE(kitchen
                    .deliver("org.tizen.app-launcher",
                             action("#org.tizen.Launch Apps", R"({"action":"Launch App","package":"not.installed"})"))
                    .error);
    EXPECT_EQ(foreground(), "Snr7si7XV1.AccuWeather");
}

TEST(DeviceClock, PinnedItStandsStillUntilMovedOn)
{
    apps::pinClock(int64_t(1740988800) * 1000000000);
    EXPECT_EQ(apps::clockNowSeconds(), 1740988800);
    apps::advanceClock(int64_t(1500) * 1000000);
    EXPECT_EQ(apps::clockNowSeconds(), 1740988801);
    EXPECT_EQ(apps::clockNowNs(), int64_t(1740988801500) * 1000000);
    int64_t seconds = 0;
    std::string error;
    EXPECT_TRUE(apps::parseClockTime("2025-03-03T08:00:00Z", seconds, error));
    EXPECT_EQ(seconds, 1740988800);
    EXPECT_EQ(apps::clockTimeText(seconds), "2025-03-03T08:00:00Z");
    EXPECT_TRUE(apps::parseClockTime("1740988800", seconds, error));
    EXPECT_FALSE(apps::parseClockTime("2025-03-03 08:00", seconds, error));
    EXPECT_FALSE(apps::parseClockTime("2025-03-03T08:00:00+01:00", seconds, error));
}

}  // namespace
