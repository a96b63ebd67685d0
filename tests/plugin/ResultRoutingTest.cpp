#include "PluginFixture.h"

#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

using marltest::EngineTest;
using marltest::daemon;

class ResultRouting : public EngineTest {
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        ASSERT_EQ(setCommands({
                      {1, 1, 0, "Open The Fridge"},
                      {2, 1, 3, "set"},
                      {3, 1, 4, "timer"},
                      {4, 1, 5, "#org.tizen.timer"},
                      {5, 1, 1, "stop"},
                      {6, 1, 1, "stop"},
                      {7, 1, 9, "open the fridge"},
                  }),
                  0);
        daemon().results.clear();
    }

    void cloudText(const std::string& text)
    {
        wrapper()->cloudResults.asrResult = text;
        wrapper()->cloudResults.confidence = 1;
    }
};

TEST_F(ResultRouting, ACommandOfFormatZeroMatchesIgnoringCase)
{
    cloudText("open the fridge");
    wrapper()->determineResult("", "", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    const auto& result = daemon().results[0];
    EXPECT_EQ(result.event, VCP_RESULT_EVENT_SUCCESS);
    EXPECT_EQ(result.ids, std::vector<int>{1});
    EXPECT_EQ(result.all, "open the fridge");
    EXPECT_TRUE(result.nonFixedNull);
    EXPECT_TRUE(result.nluNull);
    EXPECT_EQ(result.message, "vc.result.message.none");
    EXPECT_EQ(result.userData, &daemon());
    EXPECT_EQ(resultList[1000], 1);
}

TEST_F(ResultRouting, APrefixCommandHasNoWordBoundary)
{
    cloudText("settings");
    wrapper()->determineResult("", "", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].ids, std::vector<int>{2});
}

TEST_F(ResultRouting, ASuffixCommandMatchesTheTail)
{
    cloudText("cancel the TIMER");
    wrapper()->determineResult("", "", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].ids, std::vector<int>{3});
}

TEST_F(ResultRouting, ATextShorterThanASuffixCommandDoesNotMatch)
{
    cloudText("mer");
    wrapper()->determineResult("", "", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].event, VCP_RESULT_EVENT_REJECTED);
    EXPECT_EQ(daemon().results[0].count, 0);
}

TEST_F(ResultRouting, EqualCommandsEachAddTheirId)
{
    cloudText("STOP");
    wrapper()->determineResult("", "", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].ids, (std::vector<int>{5, 6}));
    EXPECT_EQ(daemon().results[0].count, 2);
}

TEST_F(ResultRouting, AnAgentMatchesItsActionCommandIgnoringCaseAfterTheTextMatches)
{
    cloudText("stop");
    wrapper()->determineResult("{\"action\":1}", "Timer", "Cancel Timer");
    ASSERT_EQ(daemon().results.size(), 1u);
    const auto& result = daemon().results[0];
    EXPECT_EQ(result.ids, (std::vector<int>{5, 6, 4}));
    EXPECT_EQ(result.nlu, "{\"action\":1}");
    EXPECT_FALSE(result.nluNull);
}

TEST_F(ResultRouting, ActionsAreMatchedWithoutAnyRecognisedText)
{
    wrapper()->cloudResults.confidence = 0;
    wrapper()->embeddedResults.confidence = 0;
    wrapper()->cloudResults.asrResult = "stop";
    wrapper()->determineResult("{}", "Timer", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].ids, std::vector<int>{4});
    EXPECT_TRUE(daemon().results[0].allNull);
}

TEST_F(ResultRouting, AStaleEmbeddedConfidenceHidesTheCloudText)
{
    wrapper()->embeddedResults.confidence = 1;
    wrapper()->embeddedResults.asrResult = "";
    cloudText("open the fridge");
    wrapper()->determineResult("", "", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].event, VCP_RESULT_EVENT_REJECTED);
    EXPECT_TRUE(daemon().results[0].allNull);
}

TEST_F(ResultRouting, StartLeavesTheEmbeddedConfidenceStale)
{
    wrapper()->onASRResult("open the fridge", "EMBEDDED", 1);
    ASSERT_EQ(MarlEngine_start(false), 0);
    wrapper()->onASRResult("open the fridge", "CLOUD", 1);
    wrapper()->determineResult("", "", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].event, VCP_RESULT_EVENT_REJECTED);
}

TEST_F(ResultRouting, NluWithoutAgentGivesANullNluArgument)
{
    cloudText("open the fridge");
    wrapper()->determineResult("{\"x\":1}", "", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_TRUE(daemon().results[0].nluNull);
    EXPECT_EQ(daemon().results[0].ids, std::vector<int>{1});
}

TEST_F(ResultRouting, AnUnknownFormatNeverMatches)
{
    cloudText("open the fridge");
    wrapper()->determineResult("", "", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].ids, std::vector<int>{1});  // not 7, whose format is 9
}

TEST_F(ResultRouting, AnIdThatIsNoNumberIsZero)
{
    ASSERT_EQ(setCommands({{0, 1, 0, "hello"}}), 0);
    JsonObject* element = json_array_get_object_element(wrapper()->commandArray, 0);
    json_object_set_string_member(element, "_id", "abc");
    cloudText("hello");
    wrapper()->determineResult("", "", "");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].ids, std::vector<int>{0});
    EXPECT_EQ(daemon().results[0].count, 1);
}

TEST_F(ResultRouting, WithoutResultCallbackTheResultIsOnlyLogged)
{
    ASSERT_EQ(MarlEngine_set_result_cb(nullptr, nullptr), 0);
    cloudText("open the fridge");
    wrapper()->determineResult("", "", "");
    EXPECT_TRUE(daemon().results.empty());
    EXPECT_TRUE(marltest::logged("Result callback registration is missed"));
}

TEST_F(ResultRouting, ADriverResponseRunsATurnWithoutAudioAndKeepsTheContext)
{
    marltest::clearObservations();
    wrapper()->sendDriverResponse("{\"userComposedDriverResponse\":{}}\n");
    EXPECT_EQ(wrapper()->getCurrentVoiceContext(), VOICE_CONTEXT_KEEP);
    EXPECT_TRUE(marltest::observed("startRecognition"));
    EXPECT_TRUE(marltest::observed("processDriverResponse"));
    EXPECT_TRUE(marltest::observed("stopRecognition"));
    EXPECT_FALSE(marltest::observed("audio"));
    EXPECT_TRUE(daemon().results.empty());
}
