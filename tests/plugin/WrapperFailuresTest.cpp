// How the engine's front degrades: a speech library without a recognition
// manager, entry points called with no engine, a load whose resources cannot
// be copied, command lists with elements that cannot be read, and the
// listener operations that only log.
#include "PluginFixture.h"

#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "vappliance/Device.h"

#include <asr-nlu/RecognitionAgentResponse.h>
#include <standin/SpeechStandIn.h>

#include <json-glib/json-glib.h>

#include <filesystem>
#include <string>
#include <vector>

using marltest::EngineTest;
using marltest::daemon;

namespace {

bool collectLanguage(const char* language, void* userData)
{
    static_cast<std::vector<std::string>*>(userData)->push_back(language);
    return true;
}

}  // namespace

// The speech library came up without a recognition manager.
class WithoutRecognitionManager : public EngineTest {
protected:
    void SetUp() override
    {
        speech_standin_set_without_manager(1);
        EngineTest::SetUp();
    }
};

TEST_F(WithoutRecognitionManager, EveryControlOperationRefusesAndTheLibraryHearsNothing)
{
    marltest::clearObservations();
    unsigned char text[] = "hello";
    short samples[160] = {};
    EXPECT_FALSE(wrapper()->startRecognition(false, false, static_cast<recogtype>(2), static_cast<devicemode>(0)));
    EXPECT_FALSE(wrapper()->processDriverResponse("{}"));
    EXPECT_FALSE(wrapper()->processAudio(samples, 160, false));
    EXPECT_FALSE(wrapper()->processText(text, 5));
    EXPECT_FALSE(wrapper()->processListEvent("list"));
    EXPECT_FALSE(wrapper()->processHepticEvent("haptic"));
    EXPECT_TRUE(marltest::logged("There is no recognition Manager instantiated"));
    // The daemon's audio is taken and reported on; nothing reaches the library.
    vcp_speech_detect_e detected = VCP_SPEECH_DETECT_BEGIN;
    EXPECT_EQ(MarlEngine_set_recording_data(samples, sizeof samples, &detected), 0);
    EXPECT_EQ(detected, VCP_SPEECH_DETECT_NONE);
    EXPECT_TRUE(marltest::logged("Audio Processing failed"));
    for (const char* what : {"startRecognition", "processDriverResponse", "audio", "processText", "processListEvent",
                             "processHepticEvent"})
        EXPECT_FALSE(marltest::observed(what)) << what;
}

// The speech library reports state 3 when it is configured.
class ConfiguredInStateThree : public EngineTest {
protected:
    void SetUp() override
    {
        speech_standin_set_state(3);
        EngineTest::SetUp();
    }
};

TEST_F(ConfiguredInStateThree, TheStateIsLoggedAndTheEngineWorks)
{
    EXPECT_TRUE(marltest::logged("MarlEngineWrapper is called. pRecogMgr->getState() [3]"));
    EXPECT_NE(wrapper()->pRecogMgr, nullptr);
    EXPECT_EQ(MarlEngine_start(false), 0);
}

// The engine's installed resources are missing: the copy fails and the load
// goes on.
class WithoutResources : public EngineTest {
protected:
    void SetUp() override
    {
        std::error_code ec;
        std::filesystem::remove_all(vapp::hostPath("/usr/share/voice/vc/1.0/engine-data/marl/shared/res/en_US"), ec);
        ASSERT_FALSE(ec) << ec.message();
        EngineTest::SetUp();
    }
};

TEST_F(WithoutResources, TheFailedCopyIsLoggedAndTheEngineLoads)
{
    EXPECT_TRUE(marltest::logged("[ERROR] Fail to copy"));
    EXPECT_FALSE(marltest::logged("[SUCCESS] copy resource"));
    EXPECT_NE(wrapper(), nullptr);
    EXPECT_EQ(MarlEngine_start(false), 0);
}

TEST(EngineFront, ALoadWithoutTheFunctionTablesIsRefused)
{
    marltest::TestDevice device;
    vcpd_funcs_s daemonTable{};
    vcpe_funcs_s engineTable{};
    EXPECT_EQ(vcp_load_engine(nullptr, &engineTable), VCP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(vcp_load_engine(&daemonTable, nullptr), VCP_ERROR_INVALID_PARAMETER);
    EXPECT_TRUE(marltest::logged("A function table is NULL"));
    EXPECT_EQ(engineTable.initialize, nullptr);
}

TEST(EngineFront, WithoutAnEngineTheEntryPointsAnswerInvalidState)
{
    marltest::TestDevice device;
    ASSERT_EQ(marlEngineWrapper, nullptr);
    std::vector<std::string> languages;
    EXPECT_EQ(MarlEngine_foreach_supported_languages(collectLanguage, &languages), VCP_ERROR_INVALID_STATE);
    EXPECT_TRUE(languages.empty());
    EXPECT_EQ(MarlEngine_set_result_cb(nullptr, nullptr), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_set_asr_result_cb(nullptr, nullptr), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_set_error_cb(nullptr, nullptr), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_set_domain("Home"), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_set_language("en_US"), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_set_commands(1), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_start(false), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_stop(), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_cancel(), VCP_ERROR_INVALID_STATE);
    vcp_speech_detect_e detected = VCP_SPEECH_DETECT_NONE;
    short samples[160] = {};
    EXPECT_EQ(MarlEngine_set_recording_data(samples, sizeof samples, &detected), VCP_ERROR_INVALID_STATE);
    // Without an engine every language is taken as supported.
    EXPECT_TRUE(MarlEngine_is_language_supported("xx_XX"));
    EXPECT_EQ(MarlEngine_deinitialize(), 0);
    EXPECT_TRUE(marltest::logged("marlEngineWrapper is NULL"));
}

class WrapperEdges : public EngineTest {
protected:
    void cloudText(const std::string& text)
    {
        wrapper()->cloudResults.asrResult = text;
        wrapper()->cloudResults.confidence = 1;
    }
};

TEST_F(WrapperEdges, ANullLanguageIsNotSupportedAndTheLocaleListIsMadeOnce)
{
    EXPECT_FALSE(wrapper()->isSupported(nullptr));
    EXPECT_FALSE(MarlEngine_is_language_supported(nullptr));
    wrapper()->InitLocaleList();
    std::vector<std::string> languages;
    EXPECT_EQ(MarlEngine_foreach_supported_languages(collectLanguage, &languages), 0);
    EXPECT_EQ(languages, std::vector<std::string>({"de_DE", "en_GB", "en_US", "fr_FR", "it_IT", "ko_KR", "zh_CN"}));
}

TEST_F(WrapperEdges, ElementsWithoutMetaDataOrCommandAreSkipped)
{
    daemon().results.clear();
    JsonArray* list = json_array_new();
    json_array_add_string_element(list, "not an object");
    JsonObject* bare = json_object_new();
    json_object_set_string_member(bare, "_id", "1");
    json_array_add_object_element(list, bare);
    JsonObject* flat = json_object_new();
    json_object_set_string_member(flat, "_id", "2");
    json_object_set_string_member(flat, "meta_data", "hello");
    json_array_add_object_element(list, flat);
    JsonObject* noCommand = json_object_new();
    json_object_set_string_member(noCommand, "_id", "3");
    JsonObject* noCommandMeta = json_object_new();
    json_object_set_int_member(noCommandMeta, "format", 0);
    json_object_set_object_member(noCommand, "meta_data", noCommandMeta);
    json_array_add_object_element(list, noCommand);
    JsonObject* good = json_object_new();
    json_object_set_string_member(good, "_id", "4");
    JsonObject* goodMeta = json_object_new();
    json_object_set_string_member(goodMeta, "command", "hello");
    json_object_set_int_member(goodMeta, "format", 0);
    json_object_set_object_member(good, "meta_data", goodMeta);
    json_array_add_object_element(list, good);
    if (wrapper()->commandArray)
        json_array_unref(wrapper()->commandArray);
    wrapper()->commandArray = list;

    cloudText("hello");
    wrapper()->determineResult("{}", "Timer", "Set Timer");
    ASSERT_EQ(daemon().results.size(), 1u);
    EXPECT_EQ(daemon().results[0].event, VCP_RESULT_EVENT_SUCCESS);
    EXPECT_EQ(daemon().results[0].ids, std::vector<int>{4});
}

TEST_F(WrapperEdges, TheListenerOperationsThatOnlyLogChangeNothing)
{
    daemon().results.clear();
    marltest::clearObservations();
    wrapper()->onLoadingComplete();
    wrapper()->onRecognitionStateChanged(static_cast<RecognitionListener::State>(7));
    wrapper()->onSpeechTimedOut();
    wrapper()->onRmsChanged(42);
    EXPECT_TRUE(marltest::logged("newState[7]"));
    EXPECT_TRUE(marltest::logged("rms[42]"));
    EXPECT_EQ(wrapper()->speechDetectState, 0);
    EXPECT_TRUE(daemon().results.empty());
    EXPECT_TRUE(daemon().errors.empty());
    EXPECT_TRUE(daemon().asr.empty());
    EXPECT_TRUE(marltest::observations().empty());
}

TEST_F(WrapperEdges, AParseWithoutAResponseOrOfAnotherTypeReachesNoParser)
{
    marltest::clearObservations();
    wrapper()->onParseAction(nullptr);
    RecognitionAgentResponse response;
    response.setEngineType("CLOUD");
    response.setResponseType(2);
    response.setIsLast(true);
    response.setData("{}");
    wrapper()->onParseAction(&response);
    EXPECT_TRUE(marltest::logged("Not Nlu result"));
    EXPECT_FALSE(marltest::observed("parse"));
}
