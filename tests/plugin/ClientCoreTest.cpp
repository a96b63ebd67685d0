#include "PluginFixture.h"

#include "ClientManager/OrvaneMaster.h"
#include "SessionManager/SessionManager.h"
#include "fwWrapper/MarlEnginePlugin.h"
#include "utils/VcEngineJsonConverter.h"

TEST(SessionState, ANewSessionHasNoContext)
{
    marltest::TestDevice device;
    SessionManager session;
    EXPECT_EQ(session.getContextType(), VOICE_CONTEXT_NONE);
    EXPECT_FALSE(session.getOnDriverResponse());
    EXPECT_EQ(session.getContextId(), "");
    EXPECT_EQ(session.getPlmId(), "");
    session.setContextType(VOICE_CONTEXT_FOLLOW_UP);
    EXPECT_EQ(session.getContextType(), VOICE_CONTEXT_FOLLOW_UP);
}

class MasterRegistry : public marltest::EngineTest {};

TEST_F(MasterRegistry, TheWrapperPointerOutlivesTheWrapper)
{
    MarlEngineWrapper* old = wrapper();
    EXPECT_EQ(OrvaneMaster::getWrapper(), old);
    ASSERT_EQ(MarlEngine_deinitialize(), 0);
    EXPECT_EQ(marlEngineWrapper, nullptr);
    EXPECT_EQ(OrvaneMaster::getWrapper(), old);
    ASSERT_EQ(MarlEngine_initialize(), 0);
    EXPECT_EQ(OrvaneMaster::getWrapper(), marlEngineWrapper);
}

TEST(JsonConversion, AnArrayAtTheTopIsRefused)
{
    marltest::TestDevice device;
    VcEngineJsonConverter converter;
    EXPECT_EQ(converter.stringToJson("[1, 2]"), nullptr);
    EXPECT_TRUE(marltest::logged("rootNode is not JSON_NODE_OBJECT"));
}

TEST(JsonConversion, MalformedTextIsRefused)
{
    marltest::TestDevice device;
    VcEngineJsonConverter converter;
    EXPECT_EQ(converter.stringToJson("{\"a\": "), nullptr);
    EXPECT_TRUE(marltest::logged("Failed to json_parser_load_from_data"));
}

TEST(JsonConversion, EmptyTextMakesNoParser)
{
    marltest::TestDevice device;
    VcEngineJsonConverter converter;
    EXPECT_EQ(converter.stringToJson(""), nullptr);
    EXPECT_TRUE(marltest::logged("There is no string to convert"));
    EXPECT_FALSE(marltest::logged("There is no json parser allocated"));
}

TEST(JsonConversion, ANullObjectGivesEmptyText)
{
    marltest::TestDevice device;
    VcEngineJsonConverter converter;
    EXPECT_EQ(converter.jsonToString(nullptr), "");
    EXPECT_TRUE(marltest::logged("There is no json to convert"));
}

TEST(JsonConversion, AnObjectKeepsItsMembersThereAndBack)
{
    marltest::TestDevice device;
    VcEngineJsonConverter converter;
    JsonObject* object = converter.stringToJson("{\"isRecipeOpen\":\"False\",\"count\":\"3\"}");
    ASSERT_NE(object, nullptr);
    const std::string text = converter.jsonToString(object);
    EXPECT_EQ(json_object_get_size(object), 2u);  // not consumed
    JsonObject* again = converter.stringToJson(text);
    ASSERT_NE(again, nullptr);
    EXPECT_STREQ(json_object_get_string_member(again, "isRecipeOpen"), "False");
    EXPECT_STREQ(json_object_get_string_member(again, "count"), "3");
    json_object_unref(object);
    json_object_unref(again);
}

#include "ClientManager/OrvaneVocabulary.h"

TEST(SharedVocabulary, OddSpellingsAreTheWireWords)
{
    EXPECT_STREQ(ActionTypes::SERVER_REQUEST, "Server Reqeust");
    EXPECT_STREQ(ActionTypes::FOLLOW_UP, "Follow-Up");
    EXPECT_STREQ(ActionTypes::KEEP_CONTEXT, "Keep Context");
    EXPECT_STREQ(AgentNames::DRIVING_MODE, "Drivingmode");
    EXPECT_STREQ(AgentNames::VIDEO_PLAYER, "Video player");
    EXPECT_STREQ(AgentNames::LAUNCH_ALL, "LaunchAll");
    EXPECT_STREQ(AgentNames::LAUNCH_APPS, "Launch Apps");
    EXPECT_STREQ(PageKeys::RESERVED_1, "  ");
    EXPECT_STREQ(ResponseKeys::USER_COMPOSED_DRIVER_RESPONSE, "userComposedDriverResponse");
    EXPECT_STREQ(ServerNames::ASR_RAMPCODE_DA, "dash_da");
    EXPECT_STREQ(ServerNames::NLU_RAMPCODE_DA, "vbt_da");
    EXPECT_STREQ(DeviceProfileNames::REFRIGERATOR, "Halden Refrigerator Smart Home Version 1.0 - Tizen SDK 3.0.0");
    EXPECT_STREQ(RecognitionStateNames::ONE_WORD_CALL, "One Word Call");
}
