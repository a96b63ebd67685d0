#include "PluginFixture.h"

#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"

#include <json/json.h>

using marltest::TestDevice;

namespace {

std::string respond(const std::string& request)
{
    return DaCustomizedDriverResponseRetriever().getDriverResponse(request);
}

std::string calendarRequest(const std::string& action, const std::string& data = "{}")
{
    return R"({"Server Reqeust": {"agent": "Calendar", "action": {"name": ")" + action + R"("}, "data": )" + data +
           "}}";
}

std::string user(const std::string& key, const std::string& name, const std::string& id = "")
{
    std::string data = R"({")" + key + R"(": {"value": ")" + name + R"("})";
    if (!id.empty())
        data += R"(, "userId": {"value": ")" + id + R"("})";
    return data + "}";
}

std::string profile(const std::string& id, const std::string& name)
{
    return R"({"userId": ")" + id + R"(", "userName": ")" + name + R"("})";
}

std::string task(const std::string& id, const std::string& name, const std::string& count, const std::string& limit,
                 const std::string& active)
{
    return R"({"userId": ")" + id + R"(", "userName": ")" + name + R"(", "itemCounts": ")" + count +
           R"(", "maxItemCounts": ")" + limit + R"(", "activatedItemCounts": ")" + active + R"("})";
}

std::string tables(const std::string& profiles, const std::string& tasks)
{
    return R"({"datastore": {"Profile": [)" + profiles + R"(], "Task": [)" + tasks + "]}}";
}

std::string envelope(const std::string& action, const std::string& data)
{
    return R"({"userComposedDriverResponse":{"action":")" + action + R"(","agent":"Calendar","data":)" + data +
           "}}\n";
}

// The "data" of a response.
Json::Value dataOf(const std::string& response)
{
    Json::Value root;
    Json::Reader().parse(response, root);
    return root["userComposedDriverResponse"]["data"];
}

const char* const kEmptyItemMembers[] = {
    "month", "priority", "day", "dueYear", "location", "time24", "recurrenceOrdinals", "reminderDay", "subject",
    "id", "dueMonthNum", "recurrenceMonthList", "duration", "dueDay", "dueMonth", "monthNum", "isOrganizer",
    "reminderYear", "year", "taskStatus", "time12", "recurrence", "recurrenceWeekDayList", "reminderMonth",
    "reminderTime12", "reminderTime24", "reminderMonthNum"};

void expectDefaultItem(const Json::Value& item, const std::string& userId, const std::string& username)
{
    ASSERT_TRUE(item.isObject());
    EXPECT_EQ(item.size(), 29u);
    EXPECT_EQ(item["userId"], userId);
    EXPECT_EQ(item["username"], username);
    for (const char* member : kEmptyItemMembers) {
        EXPECT_TRUE(item.isMember(member)) << member;
        EXPECT_EQ(item[member], "") << member;
    }
}

}  // namespace

// --- profiles ---------------------------------------------------------------------------

TEST(CalendarReplies, AProfileNamedInAnotherCaseIsOneFoundWithTheTablesSpelling)
{
    TestDevice device(tables(profile("1", "Ann") + "," + profile("2", "Naisakpe"), ""));
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Request", user("userName", "NAISAKPE"))),
              envelope("Calendar Profile Reply", R"({"items":[{"userId":"2","username":"Naisakpe"}],)"
                                                 R"("status":"OneFound"})"));
}

TEST(CalendarReplies, TheFirstMatchingProfileWinsAndTheRowsAfterItAreNotLookedAt)
{
    TestDevice device(tables(profile("1", "Bo") + "," + profile("2", "ann") + "," + profile("3", "Ann"), ""));
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Request", user("userName", "Ann"))),
              envelope("Calendar Profile Reply", R"({"items":[{"userId":"2","username":"ann"}],"status":"OneFound"})"));
}

TEST(CalendarReplies, NoMatchingProfileListsEveryProfileAsManyFound)
{
    TestDevice device(tables(profile("1", "Ann") + "," + profile("2", "Bo"), ""));
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Request", user("userName", "Cy"))),
              envelope("Calendar Profile Reply", R"({"items":[{"userId":"1","username":"Ann"},)"
                                                 R"({"userId":"2","username":"Bo"}],"status":"ManyFound"})"));
}

TEST(CalendarReplies, OneProfileThatDoesNotMatchIsStillManyFound)
{
    TestDevice device(tables(profile("1", "Ann"), ""));
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Request", user("userName", "Bo"))),
              envelope("Calendar Profile Reply", R"({"items":[{"userId":"1","username":"Ann"}],"status":"ManyFound"})"));
}

TEST(CalendarReplies, AnEmptyNameMatchesOnlyAnEmptyProfileName)
{
    TestDevice device(tables(profile("1", "Ann") + "," + profile("2", ""), ""));
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Request")),
              envelope("Calendar Profile Reply", R"({"items":[{"userId":"2","username":""}],"status":"OneFound"})"));
    device.apply(tables(profile("1", "Ann"), ""));
    EXPECT_NE(respond(calendarRequest("Calendar Profile Request")).find("ManyFound"), std::string::npos);
}

TEST(CalendarReplies, TheProfileRequestReadsUserNameWithACapitalN)
{
    TestDevice device(tables(profile("1", "Ann") + "," + profile("2", "Bo"), ""));
    EXPECT_NE(respond(calendarRequest("Calendar Profile Request", user("username", "Bo"))).find("ManyFound"),
              std::string::npos);
    EXPECT_TRUE(marltest::logged("userName[]"));
}

TEST(CalendarReplies, NoProfilesIsNoFound)
{
    TestDevice device(tables("", ""));
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Request", user("userName", "Ann"))),
              envelope("Calendar Profile Reply", R"({"status":"NoFound"})"));
    EXPECT_TRUE(marltest::logged("profile count[0]"));
}

TEST(CalendarReplies, AStoreThatCannotBeReadHasNoProfilesAndNoTasks)
{
    TestDevice device(tables(profile("1", "Ann"), task("1", "Ann", "3", "10", "3")));
    device.apply(R"({"errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"}})");
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Request", user("userName", "Ann"))),
              envelope("Calendar Profile Reply", R"({"status":"NoFound"})"));
    EXPECT_EQ(respond(calendarRequest("Profile Task Full Check Request", user("username", "Ann"))),
              envelope("Profile Task Full Check Reply", R"({"status":"Not Found"})"));
}

// --- task list room -------------------------------------------------------------------

TEST(CalendarReplies, ATaskListBelowItsLimitIsNotFull)
{
    TestDevice device(tables("", task("1", "Naisakpe", "3", "10", "1")));
    EXPECT_EQ(respond(calendarRequest("Profile Task Full Check Request", user("username", "Naisakpe"))),
              "{\"userComposedDriverResponse\":{\"action\":\"Profile Task Full Check Reply\",\"agent\":\"Calendar\","
              "\"data\":{\"status\":\"Not Full\"}}}\n");
    EXPECT_TRUE(marltest::logged("itemCounts[3], maxItemCounts[10]"));
}

TEST(CalendarReplies, ACountEqualToTheLimitIsFull)
{
    TestDevice device(tables("", task("1", "Ann", "10", "10", "10")));
    EXPECT_EQ(respond(calendarRequest("Profile Task Full Check Request", user("username", "Ann"))),
              envelope("Profile Task Full Check Reply", R"({"status":"Full"})"));
}

TEST(CalendarReplies, TheTaskListCheckFoldsCase)
{
    TestDevice device(tables("", task("1", "Ann", "12", "12", "1")));
    EXPECT_EQ(respond(calendarRequest("Profile Task Full Check Request", user("username", "aNN"))),
              envelope("Profile Task Full Check Reply", R"({"status":"Full"})"));
}

TEST(CalendarReplies, TheLimitIsTheFirstRowsNotTheMatchingRows)
{
    TestDevice device(tables("", task("1", "Ann", "2", "10", "1") + "," + task("2", "Bo", "5", "3", "1")));
    EXPECT_EQ(respond(calendarRequest("Profile Task Full Check Request", user("username", "Bo"))),
              envelope("Profile Task Full Check Reply", R"({"status":"Not Full"})"));
    device.apply(tables("", task("1", "Ann", "2", "4", "1") + "," + task("2", "Bo", "5", "30", "1")));
    EXPECT_EQ(respond(calendarRequest("Profile Task Full Check Request", user("username", "Bo"))),
              envelope("Profile Task Full Check Reply", R"({"status":"Full"})"));
}

TEST(CalendarReplies, ANameWithoutATaskRowIsNotFullByTheDefaults)
{
    TestDevice device(tables("", task("1", "Ann", "80", "10", "1")));
    EXPECT_EQ(respond(calendarRequest("Profile Task Full Check Request", user("username", "Cy"))),
              envelope("Profile Task Full Check Reply", R"({"status":"Not Full"})"));
}

TEST(CalendarReplies, WithoutAFirstRowTheLimitIsZeroAndTheListFull)
{
    // Row 0 holds no value at all, so it never reaches the rows.
    TestDevice device(R"({"datastore": {"Task": [{"userId": null}, )" + task("2", "Bo", "0", "10", "0") + "]}}");
    EXPECT_EQ(respond(calendarRequest("Profile Task Full Check Request", user("username", "Bo"))),
              envelope("Profile Task Full Check Reply", R"({"status":"Full"})"));
    EXPECT_TRUE(marltest::logged("itemCounts[0], maxItemCounts[0]"));
}

TEST(CalendarReplies, NonNumericCountsReadAsZero)
{
    TestDevice device(tables("", task("1", "Ann", "many", "ten", "1")));
    EXPECT_EQ(respond(calendarRequest("Profile Task Full Check Request", user("username", "Ann"))),
              envelope("Profile Task Full Check Reply", R"({"status":"Full"})"));
}

TEST(CalendarReplies, NoTaskRowsIsNotFoundForTheFullCheck)
{
    TestDevice device(tables(profile("1", "Ann"), ""));
    EXPECT_EQ(respond(calendarRequest("Profile Task Full Check Request", user("username", "Ann"))),
              envelope("Profile Task Full Check Reply", R"({"status":"Not Found"})"));
    EXPECT_TRUE(marltest::logged("task row count[0]"));
}

// --- task lookup ----------------------------------------------------------------------

TEST(CalendarReplies, AUserWithActiveTasksHasMultipleTasksAndOneDefaultItem)
{
    TestDevice device(tables("", task("7", "Ann", "5", "50", "2")));
    const Json::Value data =
        dataOf(respond(calendarRequest("Calendar Profile Task Lookup Request", user("username", "Ann", "7"))));
    EXPECT_EQ(data["status"], "Multiple Tasks");
    ASSERT_EQ(data["items"].size(), 1u);
    expectDefaultItem(data["items"][0], "7", "Ann");
    EXPECT_EQ(data.size(), 2u);
}

TEST(CalendarReplies, NoActiveTasksAmongFiveIsNoTasks)
{
    TestDevice device(tables("", task("7", "Ann", "5", "50", "0")));
    const Json::Value data =
        dataOf(respond(calendarRequest("Calendar Profile Task Lookup Request", user("username", "Ann", "7"))));
    EXPECT_EQ(data["status"], "No Tasks");
    EXPECT_EQ(data["items"].size(), 1u);
    device.apply(tables("", task("7", "Ann", "0", "50", "3")));
    EXPECT_EQ(dataOf(respond(calendarRequest("Calendar Profile Task Lookup Request", user("username", "Ann", "7"))))
                  ["status"],
              "No Tasks");
}

TEST(CalendarReplies, TheTaskLookupDoesNotFoldCaseAndWithoutAMatchHasNoStatus)
{
    TestDevice device(tables("", task("7", "Ann", "5", "50", "2")));
    const Json::Value data =
        dataOf(respond(calendarRequest("Calendar Profile Task Lookup Request", user("username", "ann", "7"))));
    EXPECT_FALSE(data.isMember("status"));
    ASSERT_EQ(data["items"].size(), 1u);
    expectDefaultItem(data["items"][0], "7", "ann");
}

TEST(CalendarReplies, TheTaskLookupNeedsTheUserIdToo)
{
    TestDevice device(tables("", task("7", "Ann", "5", "50", "2")));
    EXPECT_FALSE(dataOf(respond(calendarRequest("Calendar Profile Task Lookup Request", user("username", "Ann", "8"))))
                     .isMember("status"));
    EXPECT_FALSE(dataOf(respond(calendarRequest("Calendar Profile Task Lookup Request", user("username", "Ann"))))
                     .isMember("status"));
}

TEST(CalendarReplies, TheLastMatchingTaskRowDecides)
{
    TestDevice device(tables("", task("7", "Ann", "5", "50", "2") + "," + task("7", "Ann", "5", "50", "0")));
    EXPECT_EQ(dataOf(respond(calendarRequest("Calendar Profile Task Lookup Request", user("username", "Ann", "7"))))
                  ["status"],
              "No Tasks");
    device.apply(tables("", task("7", "Ann", "5", "50", "0") + "," + task("7", "Ann", "5", "50", "2")));
    EXPECT_EQ(dataOf(respond(calendarRequest("Calendar Profile Task Lookup Request", user("username", "Ann", "7"))))
                  ["status"],
              "Multiple Tasks");
}

TEST(CalendarReplies, NoTaskRowsIsNoTasksWithoutItems)
{
    TestDevice device(tables(profile("1", "Ann"), ""));
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Task Lookup Request", user("username", "Ann", "1"))),
              envelope("Calendar Profile Task Lookup Reply", R"({"status":"No Tasks"})"));
}

// --- item lookup ------------------------------------------------------------------------

TEST(CalendarReplies, TheItemLookupAnswersTwoDefaultItemsWithoutReadingATable)
{
    TestDevice device(R"({"errors": {"odb_manager_foreach_table": "ODB_ERROR_IO"}})");
    const std::string response =
        respond(calendarRequest("Calendar Profile Item Lookup Request", user("username", "Ann", "7")));
    const Json::Value data = dataOf(response);
    EXPECT_EQ(data["status"], "Multiple Items");
    ASSERT_EQ(data["items"].size(), 2u);
    expectDefaultItem(data["items"][0], "7", "Ann");
    expectDefaultItem(data["items"][1], "7", "Ann");
    EXPECT_NE(response.find(R"("action":"Calendar Profile Item Lookup Reply","agent":"Calendar")"), std::string::npos);
    EXPECT_FALSE(marltest::logged("odb_manager_foreach_table failed"));
}

// --- the request ---------------------------------------------------------------------------

TEST(CalendarReplies, AnUnknownActionGivesTheEmptyResponse)
{
    TestDevice device(tables(profile("1", "Ann"), task("1", "Ann", "3", "10", "3")));
    EXPECT_EQ(respond(calendarRequest("Calendar Request", user("userName", "Ann"))), "");
    EXPECT_EQ(respond(R"({"Server Reqeust": {"agent": "Calendar"}})"), "");
}

// A parameter or value that JsonCpp can't read as text: the empty response.
TEST(CalendarReplies, ParametersOfTheWrongTypeGiveTheEmptyResponse)
{
    TestDevice device(tables(profile("1", "Ann") + "," + profile("2", ""), task("7", "Ann", "5", "50", "2")));
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Request", R"({"userName": "Ann"})")), "");
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Task Lookup Request",
                                      R"({"username": {"value": 7}, "userId": [7]})")),
              "");
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Item Lookup Request",
                                      R"({"username": {"value": {"first": "Ann"}}})")),
              "");
    EXPECT_EQ(respond(calendarRequest("Calendar Profile Item Lookup Request", "[1]")), "");
    EXPECT_TRUE(marltest::logged("driver request refused: "));
}

// Null, true and numbers read as JsonCpp converts them to text.
TEST(CalendarReplies, ValuesJsonCppConvertsAreAnsweredWithItsText)
{
    TestDevice device;
    Json::Value data = dataOf(respond(calendarRequest("Calendar Profile Item Lookup Request",
                                                      R"({"username": {"value": true}, "userId": {"value": 7}})")));
    expectDefaultItem(data["items"][0], "7", "true");
    data = dataOf(respond(calendarRequest("Calendar Profile Item Lookup Request",
                                          R"({"username": {"value": null}, "userId": {"value": false}})")));
    expectDefaultItem(data["items"][0], "false", "");
    data = dataOf(respond(calendarRequest("Calendar Profile Item Lookup Request", R"({"username": null})")));
    expectDefaultItem(data["items"][0], "", "");
}
