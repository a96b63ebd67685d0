#include "PluginFixture.h"

#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"

using marltest::TestDevice;

namespace {

std::string respond(const std::string& request)
{
    return DaCustomizedDriverResponseRetriever().getDriverResponse(request);
}

const char* const kProfilesRequest =
    R"({"Server Reqeust": {"agent": "Morning Brief", "action": {"name": "Morning Brief Profiles Request"}}})";

const char* const kOneProfile =
    "{\"userComposedDriverResponse\":{\"action\":\"Morning Brief Profiles Reply\",\"agent\":\"Morning Brief\","
    "\"data\":{\"id\":\"1\",\"status\":\"One Profile\",\"title\":\"Common\"}}}\n";

}  // namespace

TEST(MorningBriefReplies, ThereIsAlwaysOneCommonProfile)
{
    TestDevice device(R"({"datastore": {"Profile": [{"userId": "1", "userName": "Ann"},
                                                    {"userId": "2", "userName": "Bo"}]}})");
    EXPECT_EQ(respond(kProfilesRequest), kOneProfile);
    device.apply(R"({"datastore": {"Profile": []}})");
    EXPECT_EQ(respond(kProfilesRequest), kOneProfile);
}

TEST(MorningBriefReplies, TheProfileTableIsConnectedButNeverRead)
{
    TestDevice device(R"({"errors": {"odb_manager_create": "ODB_ERROR_IO",
                                     "odb_manager_foreach_table": "ODB_ERROR_IO"}})");
    EXPECT_EQ(respond(kProfilesRequest), kOneProfile);
    EXPECT_TRUE(marltest::logged("odb_manager_create failed : "));
    EXPECT_FALSE(marltest::logged("odb_manager_foreach_table failed"));
}

TEST(MorningBriefReplies, AnyOtherActionGivesTheEmptyResponse)
{
    TestDevice device;
    EXPECT_EQ(respond(R"({"Server Reqeust": {"agent": "Morning Brief", "action": {"name": "Morning Brief Request"}}})"),
              "");
    EXPECT_EQ(respond(R"({"Server Reqeust": {"agent": "Morning Brief", "action": "Morning Brief Profiles Request"}})"),
              "");
    EXPECT_EQ(respond(R"({"Server Reqeust": {"agent": "Morning Brief"}})"), "");
}
