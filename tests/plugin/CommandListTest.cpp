#include "PluginFixture.h"

#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <json/json.h>

using marltest::Command;
using marltest::EngineTest;

namespace {

Json::Value parse(const std::string& text)
{
    Json::Value value;
    Json::Reader().parse(text, value);
    return value;
}

// The document given to the speech library by the last setCommandList.
Json::Value lastDocument()
{
    Json::Value document;
    for (const auto& o : marltest::observations()) {
        Json::Value observation = parse(o);
        if (observation["what"].asString() == "setCommandList")
            document = parse(observation["document"].asString());
    }
    return document;
}

}  // namespace

class CommandList : public EngineTest {};

TEST_F(CommandList, CommandsBecomeOneDocumentForTheLibrary)
{
    ASSERT_EQ(setCommands({{7, 1, 0, "open the fridge"}, {12, 1, 5, "#org.tizen.Timer"}}), 0);
    const Json::Value docs = lastDocument()["docs"];
    ASSERT_EQ(docs.size(), 2u);
    EXPECT_EQ(docs[0]["version"].asString(), "0.01");
    EXPECT_EQ(docs[0]["_id"].asString(), "7");
    EXPECT_EQ(docs[0]["doc_number"].asString(), "7");
    EXPECT_EQ(docs[0]["type"].asString(), "VoiceControl");
    EXPECT_EQ(docs[0]["device"].asString(), "QuoinA");
    EXPECT_TRUE(docs[0]["meta_data"]["format"].isInt());
    EXPECT_EQ(docs[0]["meta_data"]["format"].asInt(), 0);
    EXPECT_EQ(docs[0]["meta_data"]["command"].asString(), "open the fridge");
    EXPECT_EQ(docs[0]["meta_data"]["domain"].asString(), "Domain String");
    EXPECT_EQ(docs[1]["meta_data"]["format"].asInt(), 5);
    EXPECT_TRUE(marltest::observed("syncUserData"));
    EXPECT_EQ(json_array_get_length(wrapper()->commandArray), 2u);
}

TEST_F(CommandList, TheDocumentKeepsTheMembersInTheirOrder)
{
    ASSERT_EQ(setCommands({{3, 1, 2, "stop"}}), 0);
    std::string text;
    for (const auto& o : marltest::observations()) {
        Json::Value observation = parse(o);
        if (observation["what"].asString() == "setCommandList")
            text = observation["document"].asString();
    }
    EXPECT_EQ(text, "{\"docs\":[{\"version\":\"0.01\",\"_id\":\"3\",\"type\":\"VoiceControl\",\"doc_number\":\"3\","
                    "\"device\":\"QuoinA\",\"meta_data\":{\"format\":2,\"command\":\"stop\","
                    "\"domain\":\"Domain String\"}}]}");
}

TEST_F(CommandList, ACommandWithoutTextGetsOneOfTheFallbacks)
{
    ASSERT_EQ(setCommands({{1, 1, 0, ""}, {2, 1, 0, "<null>"}}), 0);
    const Json::Value docs = lastDocument()["docs"];
    ASSERT_EQ(docs.size(), 2u);
    for (const auto& doc : docs) {
        const std::string command = doc["meta_data"]["command"].asString();
        EXPECT_TRUE(command == "Bluetooth Off" || command == "Navigate to" || command == "Play Music") << command;
    }
}

TEST_F(CommandList, MoreCommandsThanAnnouncedAreDroppedAndTheCountersReset)
{
    ASSERT_EQ(setCommands({{1, 1, 0, "one"}, {2, 1, 0, "two"}, {3, 1, 0, "three"}}, 2), 0);
    EXPECT_EQ(json_array_get_length(wrapper()->commandArray), 2u);
    EXPECT_EQ(commandCount, 0);
    EXPECT_EQ(current_count, 0);
    EXPECT_TRUE(marltest::logged("vcpd_foreach_command_cb_local completed all commands in list"));
}

TEST_F(CommandList, AnEmptyHandleFailsAndTheOldListIsGone)
{
    ASSERT_EQ(setCommands({{1, 1, 0, "one"}}), 0);
    EXPECT_EQ(setCommands({}), VCP_ERROR_OPERATION_FAILED);
    EXPECT_EQ(wrapper()->commandArray, nullptr);
    EXPECT_TRUE(marltest::logged("MarlEngine_set_commands some issue with JSON composition"));
    wrapper()->determineResult("", "", "");
    EXPECT_TRUE(marltest::logged("No command list"));
    EXPECT_TRUE(marltest::daemon().results.empty());
}
