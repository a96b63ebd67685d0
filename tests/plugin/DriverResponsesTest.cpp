#include "TestDevice.h"

#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"

#include <json/json.h>
#include <sqlite3.h>

#include <fstream>
#include <sstream>

namespace {

std::string respond(const std::string& request)
{
    return DaCustomizedDriverResponseRetriever().getDriverResponse(request);
}

std::string request(const std::string& agent, const std::string& action, const std::string& data = "{}")
{
    return "{\"Server Reqeust\": {\"agent\": \"" + agent + "\", \"action\": {\"name\": \"" + action +
           "\"}, \"data\": " + data + "}}";
}

std::string platformLog()
{
    std::ifstream in(vapp::devicePath("log/dlog.log"));
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// The recipe app's database with `rows` items.
void makeRecipeDatabase(int rows)
{
    const std::string folder = vapp::hostPath("/home/owner/apps_rw/org.tizen.webdatabaseserviceapp/shared/trusted");
    ASSERT_TRUE(vapp::makeDirs(folder));
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open((folder + "/Recipe.db").c_str(), &db), SQLITE_OK);
    std::string sql = "CREATE TABLE foodMinderTable (name TEXT); BEGIN;";
    for (int i = 0; i < rows; ++i)
        sql += "INSERT INTO foodMinderTable VALUES ('item');";
    sql += "COMMIT;";
    ASSERT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
}

const std::string kRecipes = R"({"package": {"value": "1K3CsGDv16.Recipes"}})";

}  // namespace

TEST(LaunchAppsReply, TheRecipeAppInTheUsIsAnsweredByWhetherItIsInFront)
{
    marltest::TestDevice device(R"({"apps": {"installed": ["1K3CsGDv16.Recipes"], "running": ["1K3CsGDv16.Recipes"]}})");
    EXPECT_EQ(respond(request("Launch Apps", "App Request", kRecipes)),
              "{\"userComposedDriverResponse\":{\"action\":\"App Reply\",\"agent\":\"Launch Apps\","
              "\"data\":{\"launched\":\"False\"}}}\n");
    device.apply(R"({"apps": {"installed": ["1K3CsGDv16.Recipes"], "foreground": "1K3CsGDv16.Recipes"}})");
    EXPECT_NE(respond(request("Launch Apps", "App Request", kRecipes)).find("\"launched\":\"True\""), std::string::npos);
}

TEST(LaunchAppsReply, TheRecipeAppIsTheMarketsOwnInKorea)
{
    marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "KR"},
        "apps": {"installed": ["Pt0hRTNBBa.RecipeDeliCook"], "foreground": "Pt0hRTNBBa.RecipeDeliCook"}})");
    EXPECT_NE(respond(request("Launch Apps", "App Request", kRecipes)).find("\"launched\":\"True\""), std::string::npos);
}

TEST(LaunchAppsReply, AnotherAppInKoreaIsAnsweredForItself)
{
    marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "KR"},
        "apps": {"installed": ["org.tizen.fridge-timer"], "running": ["org.tizen.fridge-timer"]}})");
    EXPECT_NE(respond(request("Launch Apps", "App Request", R"({"package": {"value": "org.tizen.fridge-timer"}})"))
                  .find("\"launched\":\"False\""),
              std::string::npos);
    EXPECT_NE(respond(request("Launch Apps", "App Request", R"({"package": {"value": "unknown.app"}})"))
                  .find("\"launched\":\"OtherCountry\""),
              std::string::npos);
}

TEST(LaunchAppsReply, RecipesAreNotSupportedInNorwayOfTheEu)
{
    marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "EU", "db/setting/country_code": "NO"}})");
    EXPECT_NE(respond(request("Launch Apps", "App Request", kRecipes)).find("\"launched\":\"OtherCountry\""),
              std::string::npos);
}

TEST(LaunchAppsReply, TheEuMapsTheRecipeAppToAllrecipes)
{
    marltest::TestDevice device(R"({"vconf": {"db/setting/region_code": "EU", "db/setting/country_code": "GB"}})");
    EXPECT_NE(respond(request("Launch Apps", "App Request", kRecipes)).find("\"launched\":\"False\""),
              std::string::npos);
    EXPECT_NE(platformLog().find("package[1K3CsGDv16.Recipes], region[EU], country[GB]"), std::string::npos);
}

TEST(LaunchAppsReply, AnUnknownActionGivesTheEmptyResponse)
{
    marltest::TestDevice device;
    EXPECT_EQ(respond(request("Launch Apps", "Launch Request", kRecipes)), "");
}

TEST(ViewInsideReply, TheStatusSaysWhetherTheAppIsAlreadyInFront)
{
    marltest::TestDevice device(R"({"apps": {"installed": ["LAykghKXQw.FoodMinder"], "foreground": "LAykghKXQw.FoodMinder"}})");
    EXPECT_EQ(respond(request("View Inside App Control", "View Inside Status Check Request")),
              "{\"userComposedDriverResponse\":{\"action\":\"View Inside Status Check Reply\","
              "\"agent\":\"View Inside App Control\",\"data\":{\"status\":\"Already Launched\"}}}\n");
    device.apply(R"({"apps": {"installed": ["LAykghKXQw.FoodMinder"]}})");
    EXPECT_NE(respond(request("View Inside App Control", "View Inside Status Check Request"))
                  .find("\"status\":\"Success\""),
              std::string::npos);
}

TEST(ViewInsideReply, HundredAndFortyNineItemsLeaveRoomAndHundredAndFiftyDoNot)
{
    marltest::TestDevice device(R"({"vconf": {"db/orvane/ref_room": 15}})");
    makeRecipeDatabase(149);
    const std::string fridge = R"({"locationName": {"value": "Freezer"}})";
    EXPECT_EQ(respond(request("View Inside App Control", "View Inside Item Check Request", fridge)),
              "{\"userComposedDriverResponse\":{\"action\":\"View Inside Item Check Reply\","
              "\"agent\":\"View Inside App Control\",\"data\":{\"isExistence\":\"True\",\"viewinsidecheck\":\"True\"}}}\n");
    EXPECT_NE(platformLog().find("View Inside Item Count : 149"), std::string::npos);
    marltest::TestDevice full(R"({"vconf": {"db/orvane/ref_room": 15}})");
    makeRecipeDatabase(150);
    EXPECT_NE(respond(request("View Inside App Control", "View Inside Item Check Request", fridge))
                  .find("\"viewinsidecheck\":\"False\""),
              std::string::npos);
}

TEST(ViewInsideReply, AMissingDatabaseCountsAsEmpty)
{
    marltest::TestDevice device(R"({"vconf": {"db/orvane/ref_room": 1}})");
    const std::string reply = respond(request("View Inside App Control", "View Inside Item Check Request",
                                              R"({"locationName": {"value": "Fridge"}})"));
    EXPECT_NE(reply.find("\"viewinsidecheck\":\"True\""), std::string::npos);
    EXPECT_NE(platformLog().find("Can't open database: "), std::string::npos);
}

// Kept on purpose: when the recipe database cannot be opened, the handle that
// sqlite3_open made is not closed, so every such request leaves one behind.
TEST(ViewInsideReply, AFailedOpenLeavesItsDatabaseHandleOpen)
{
    marltest::TestDevice device(R"({"vconf": {"db/orvane/ref_room": 1}})");
    const std::string fridge = R"({"locationName": {"value": "Fridge"}})";
    respond(request("View Inside App Control", "View Inside Item Check Request", fridge));
    const sqlite3_int64 before = sqlite3_memory_used();
    respond(request("View Inside App Control", "View Inside Item Check Request", fridge));
    EXPECT_GT(sqlite3_memory_used(), before);

    // An opened database is closed again: nothing stays behind.
    makeRecipeDatabase(3);
    respond(request("View Inside App Control", "View Inside Item Check Request", fridge));
    const sqlite3_int64 opened = sqlite3_memory_used();
    respond(request("View Inside App Control", "View Inside Item Check Request", fridge));
    EXPECT_EQ(sqlite3_memory_used(), opened);
}

TEST(ViewInsideReply, AFileThatIsNoDatabaseCountsAsEmpty)
{
    marltest::TestDevice device(R"({"files": [{"path": "/home/owner/apps_rw/org.tizen.webdatabaseserviceapp/shared/trusted/Recipe.db",
                                              "text": "not a database, only text that is long enough to be read"}]})");
    const std::string reply = respond(request("View Inside App Control", "View Inside Item Check Request",
                                              R"({"locationName": {"value": "Fridge"}})"));
    EXPECT_NE(reply.find("\"viewinsidecheck\":\"True\""), std::string::npos);
    EXPECT_NE(platformLog().find("Can't prepare stmt: "), std::string::npos);
}

TEST(ViewInsideReply, TheRoomMaskNamesTheCompartments)
{
    marltest::TestDevice device(R"({"vconf": {"db/orvane/ref_room": 9}})");
    auto exists = [](const std::string& room) {
        return respond(request("View Inside App Control", "View Inside Item Check Request",
                               "{\"locationName\": {\"value\": \"" + room + "\"}}"))
                   .find("\"isExistence\":\"True\"") != std::string::npos;
    };
    EXPECT_TRUE(exists("Fridge"));
    EXPECT_TRUE(exists("Pantry"));
    EXPECT_FALSE(exists("Freezer"));
    EXPECT_FALSE(exists("Flex Zone"));
    EXPECT_FALSE(exists("fridge"));
}

TEST(ViewInsideReply, AnUnreadableMaskMakesEveryCompartmentExist)
{
    marltest::TestDevice device;
    auto exists = [](const std::string& room) {
        return respond(request("View Inside App Control", "View Inside Item Check Request",
                               "{\"locationName\": {\"value\": \"" + room + "\"}}"))
                   .find("\"isExistence\":\"True\"") != std::string::npos;
    };
    for (const char* room : {"Fridge", "Freezer", "Flex Zone", "Pantry"})
        EXPECT_TRUE(exists(room)) << room;
    EXPECT_FALSE(exists(""));
    EXPECT_NE(platformLog().find("vconf read fail db/orvane/ref_room"), std::string::npos);
}

TEST(ViewInsideReply, AnUnknownActionGivesTheEmptyResponse)
{
    marltest::TestDevice device;
    EXPECT_EQ(respond(request("View Inside App Control", "Open Request")), "");
}

TEST(WeatherReply, TheSavedCityIsReported)
{
    marltest::TestDevice device(R"({"files": [{"tzplatform": 59, "name": "AccInfoPrev.txt",
        "json": {"data": {"simple": {"cityName": "Paris", "cityId": "615702"}}}}]})");
    EXPECT_EQ(respond(request("Weather", "Location Request")),
              "{\"userComposedDriverResponse\":{\"action\":\"Location Reply\",\"agent\":\"Weather\","
              "\"data\":{\"currentLocationName\":\"Paris\",\"locationID\":\"615702\"}}}\n");
}

TEST(WeatherReply, WithoutAFileBothKeysGoOutAsNull)
{
    marltest::TestDevice device;
    EXPECT_EQ(respond(request("Weather", "Location Request")),
              "{\"userComposedDriverResponse\":{\"action\":\"Location Reply\",\"agent\":\"Weather\","
              "\"data\":{\"currentLocationName\":null,\"locationID\":null}}}\n");
    device.apply(R"({"files": [{"tzplatform": 59, "name": "AccInfoPrev.txt", "text": "{broken"}]})");
    EXPECT_NE(respond(request("Weather", "Location Request")).find("\"locationID\":null"), std::string::npos);
}

TEST(WeatherReply, AFileNestedDeeperThanTheReaderGoesGivesTheNullsOfABrokenFile)
{
    const std::string deep = std::string(5000, '[') + std::string(5000, ']');
    Json::Value description;
    description["files"][0]["tzplatform"] = 59;
    description["files"][0]["name"] = "AccInfoPrev.txt";
    description["files"][0]["text"] = deep;
    marltest::TestDevice device(Json::FastWriter().write(description));
    EXPECT_EQ(respond(request("Weather", "Location Request")),
              "{\"userComposedDriverResponse\":{\"action\":\"Location Reply\",\"agent\":\"Weather\","
              "\"data\":{\"currentLocationName\":null,\"locationID\":null}}}\n");
}

TEST(WeatherReply, AFileWithoutTheCityGivesEmptyTexts)
{
    marltest::TestDevice device(R"({"files": [{"tzplatform": 59, "name": "AccInfoPrev.txt", "json": {"data": {}}}]})");
    EXPECT_NE(respond(request("Weather", "Location Request")).find("{\"currentLocationName\":\"\",\"locationID\":\"\"}"),
              std::string::npos);
    device.apply(R"({"files": [{"tzplatform": 59, "name": "AccInfoPrev.txt", "json": null}]})");
    EXPECT_NE(respond(request("Weather", "Location Request")).find("{\"currentLocationName\":\"\",\"locationID\":\"\"}"),
              std::string::npos);
}

// JsonCpp throws on a root that is no object, and on a city that is no text.
TEST(WeatherReply, AFileOfTheWrongShapeGivesTheEmptyResponse)
{
    marltest::TestDevice device(R"({"files": [{"tzplatform": 59, "name": "AccInfoPrev.txt", "json": [1, 2]}]})");
    EXPECT_EQ(respond(request("Weather", "Location Request")), "");
    device.apply(R"({"files": [{"tzplatform": 59, "name": "AccInfoPrev.txt", "json": "Paris"}]})");
    EXPECT_EQ(respond(request("Weather", "Location Request")), "");
    device.apply(R"({"files": [{"tzplatform": 59, "name": "AccInfoPrev.txt",
        "json": {"data": {"simple": {"cityName": {"en": "Paris"}, "cityId": "615702"}}}}]})");
    EXPECT_EQ(respond(request("Weather", "Location Request")), "");
}

TEST(WeatherReply, NullTrueAndNumbersReadAsJsonCppConvertsThem)
{
    marltest::TestDevice device(R"({"files": [{"tzplatform": 59, "name": "AccInfoPrev.txt",
        "json": {"data": {"simple": {"cityName": true, "cityId": 615702}}}}]})");
    EXPECT_NE(respond(request("Weather", "Location Request")).find("{\"currentLocationName\":\"true\",\"locationID\":\"615702\"}"),
              std::string::npos);
    device.apply(R"({"files": [{"tzplatform": 59, "name": "AccInfoPrev.txt",
        "json": {"data": {"simple": {"cityName": null}}}}]})");
    EXPECT_NE(respond(request("Weather", "Location Request")).find("{\"currentLocationName\":\"\",\"locationID\":\"\"}"),
              std::string::npos);
}

TEST(WeatherReply, AnyOtherActionGivesTheEmptyResponse)
{
    marltest::TestDevice device;
    EXPECT_EQ(respond(request("Weather", "Forecast Request")), "");
}

// Where JsonCpp throws on a member of the wrong type, the answer is empty.
TEST(DriverResponseFrame, MembersOfTheWrongTypeGiveTheEmptyResponse)
{
    marltest::TestDevice device(R"({"apps": {"installed": ["1K3CsGDv16.Recipes"], "running": ["1K3CsGDv16.Recipes"]}})");
    ASSERT_NE(respond(request("Launch Apps", "App Request", kRecipes)), "");
    EXPECT_EQ(respond(request("Launch Apps", "App Request", R"({"package": "1K3CsGDv16.Recipes"})")), "");
    EXPECT_EQ(respond(request("Launch Apps", "App Request", R"({"package": {"value": {"id": 1}}})")), "");
    EXPECT_EQ(respond(request("View Inside App Control", "View Inside Item Check Request", "[1]")), "");
    EXPECT_EQ(respond("{\"Server Reqeust\": {\"agent\": \"Weather\", \"action\": \"Location Request\"}}"), "");
    EXPECT_EQ(respond("{\"Server Reqeust\": {\"agent\": {\"name\": \"Weather\"}}}"), "");
    EXPECT_EQ(respond("{\"Server Reqeust\": [1]}"), "");
    EXPECT_EQ(respond("[\"Weather\"]"), "");
    EXPECT_TRUE(platformLog().find("driver request refused: ") != std::string::npos);
}

// Where JsonCpp converts without throwing, the answer is built on its text.
TEST(DriverResponseFrame, MembersJsonCppConvertsAreAnsweredWithItsText)
{
    marltest::TestDevice device;
    EXPECT_EQ(respond("{\"Server Reqeust\": {\"agent\": \"Weather\", \"action\": {\"name\": null}}}"), "");
    const std::string reply = respond(
        "{\"Server Reqeust\": {\"agent\": \"Weather\", \"action\": {\"name\": \"Location Request\"}, \"data\": null}}");
    EXPECT_NE(reply.find("\"action\":\"Location Reply\""), std::string::npos);
}
