#include "PluginFixture.h"

#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <asr-nlu/Tessel.h>
#include <standin/SpeechStandIn.h>

#include <cstddef>
#include <filesystem>
#include <fstream>

using marltest::EngineTest;
using marltest::daemon;

namespace {

struct Identity {
    std::string uuid, name, setting;
    bool network = false;
    void* userData = nullptr;
    int calls = 0;
};

void takeIdentity(const char* uuid, const char* name, const char* setting, bool network, void* userData)
{
    Identity* identity = static_cast<Identity*>(userData);
    identity->uuid = uuid;
    identity->name = name;
    identity->setting = setting;
    identity->network = network;
    identity->userData = userData;
    identity->calls++;
}

}  // namespace

TEST(EngineLoad, IdentityIsReportedOnceWithTheUserData)
{
    marltest::TestDevice device;
    Identity identity;
    EXPECT_EQ(vcp_get_engine_info(takeIdentity, &identity), 0);
    EXPECT_EQ(identity.calls, 1);
    EXPECT_EQ(identity.uuid, "4FAF79CF-FE69-40E0-AE11-69369F6DA743");
    EXPECT_EQ(identity.name, "Marl Engine");
    EXPECT_EQ(identity.setting, "libmarlsharedlib.so");
    EXPECT_TRUE(identity.network);
    EXPECT_EQ(local_user_data, &identity);
}

TEST(EngineLoad, EngineInfoWithoutCallbackIsInvalidButKeepsTheUserData)
{
    marltest::TestDevice device;
    int marker = 0;
    EXPECT_EQ(vcp_get_engine_info(nullptr, &marker), VCP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(local_user_data, &marker);
}

TEST(EngineLoad, TablesCarryTheirSizesVersionsAndEntryPoints)
{
    marltest::TestDevice device;
    vcpd_funcs_s daemonTable{};
    vcpe_funcs_s engineTable{};
    ASSERT_EQ(vcp_load_engine(&daemonTable, &engineTable), 0);
    EXPECT_EQ(daemonTable.size, static_cast<int>(sizeof(vcpd_funcs_s)));
    EXPECT_EQ(daemonTable.version, 1);
    EXPECT_EQ(engineTable.size, static_cast<int>(sizeof(vcpe_funcs_s)));
    EXPECT_EQ(engineTable.version, 1);
    EXPECT_EQ(engineTable.initialize, &MarlEngine_initialize);
    EXPECT_EQ(engineTable.set_result_cb, &MarlEngine_set_result_cb);
    EXPECT_EQ(engineTable.set_recording, &MarlEngine_set_recording_data);
    EXPECT_EQ(engineTable.process_haptic_event, &MarlEngine_process_haptic_event);
    // The result-callback setter stands in word 7, apart from the other two setters.
    EXPECT_EQ(offsetof(vcpe_funcs_s, set_result_cb), 2 * sizeof(int) + 5 * sizeof(void*));
}

TEST(EngineLoad, ResourcesAreCopiedIntoTheSharedDataFolderOnce)
{
    marltest::TestDevice device(R"({"files": [
        {"tzplatform": 28, "name": "voice/vc/1.0/engine-data/marl/shared/res/en_US/model.bin", "text": "v1"}]})");
    vcpd_funcs_s daemonTable{};
    vcpe_funcs_s engineTable{};
    ASSERT_EQ(vcp_load_engine(&daemonTable, &engineTable), 0);
    const std::string copied = vapp::hostPath("/home/owner/share/.voice/vc/engine/shared/data/en_US/model.bin");
    std::string text;
    ASSERT_TRUE(vapp::readFile(copied, text));
    EXPECT_EQ(text, "v1");

    // An update of the source is not carried over: the folder exists now.
    device.apply(R"({"files": [
        {"tzplatform": 28, "name": "voice/vc/1.0/engine-data/marl/shared/res/en_US/model.bin", "text": "v2"}]})");
    ASSERT_EQ(vcp_load_engine(&daemonTable, &engineTable), 0);
    ASSERT_TRUE(vapp::readFile(copied, text));
    EXPECT_EQ(text, "v1");
    EXPECT_TRUE(marltest::logged("[SUCCESS] copy resource"));
}

TEST(EngineLoad, AFolderThatCannotBeMadeStopsTheLoadBeforeTheTables)
{
    // A file where the engine's folder belongs.
    marltest::TestDevice device(R"({"files": [{"path": "/home/owner/share/.voice/vc/engine", "text": "in the way"}]})");
    vcpd_funcs_s daemonTable{};
    vcpe_funcs_s engineTable{};
    EXPECT_EQ(vcp_load_engine(&daemonTable, &engineTable), VCP_ERROR_OPERATION_FAILED);
    EXPECT_EQ(daemonTable.size, 0);
    EXPECT_EQ(engineTable.size, 0);
    EXPECT_EQ(engineTable.initialize, nullptr);
    EXPECT_TRUE(marltest::logged("[ERROR] Fail to make dir("));
}

TEST(EngineLoad, LanguageSupportBeforeInitializationIsAlwaysTrue)
{
    marltest::TestDevice device;
    ASSERT_EQ(marlEngineWrapper, nullptr);
    EXPECT_TRUE(MarlEngine_is_language_supported("xx_YY"));
    EXPECT_TRUE(MarlEngine_is_language_supported(""));
}

TEST(EngineLoad, DeinitializeWithoutWrapperReturnsZero)
{
    marltest::TestDevice device;
    ASSERT_EQ(marlEngineWrapper, nullptr);
    EXPECT_EQ(MarlEngine_deinitialize(), 0);
    EXPECT_TRUE(marltest::logged("marlEngineWrapper is NULL"));
}

TEST(EngineLoad, EntryPointsWithoutWrapperAnswerInvalidState)
{
    marltest::TestDevice device;
    vcp_speech_detect_e detected = VCP_SPEECH_DETECT_NONE;
    short chunk[4] = {};
    EXPECT_EQ(MarlEngine_start(false), VCP_ERROR_INVALID_STATE);
    EXPECT_TRUE(marltest::logged("====== Wrapper is not set ======"));
    EXPECT_EQ(MarlEngine_set_recording_data(chunk, sizeof(chunk), &detected), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_stop(), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_cancel(), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_set_language("en_US"), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_set_result_cb(nullptr, nullptr), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_set_commands(1), VCP_ERROR_INVALID_STATE);
}

TEST(EngineLoad, RecordingFormatIs16kMonoAndANullPointerWritesNothing)
{
    marltest::TestDevice device;
    vcp_audio_type_e type = VCP_AUDIO_TYPE_PCM_U8;
    int rate = -1;
    int channels = -1;
    EXPECT_EQ(MarlEngine_get_recording_format("any", &type, &rate, nullptr), VCP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(type, VCP_AUDIO_TYPE_PCM_U8);
    EXPECT_EQ(rate, -1);
    EXPECT_EQ(MarlEngine_get_recording_format(nullptr, &type, &rate, &channels), 0);
    EXPECT_EQ(type, VCP_AUDIO_TYPE_PCM_S16_LE);
    EXPECT_EQ(rate, 16000);
    EXPECT_EQ(channels, 1);
}

class EngineEntry : public EngineTest {};

TEST_F(EngineEntry, InitializeTwiceFailsAndTheFirstWrapperLivesOn)
{
    MarlEngineWrapper* first = wrapper();
    EXPECT_EQ(MarlEngine_initialize(), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(wrapper(), first);
    EXPECT_TRUE(marltest::logged("marlEngineWrapper is not NULL"));
}

TEST_F(EngineEntry, InitializationStartsTheLanguageAtAmericanEnglish)
{
    EXPECT_EQ(wrapper()->getLanguage(), "en-US");
    EXPECT_TRUE(marltest::observed("changeLocale"));
}

TEST_F(EngineEntry, OnlyListedLocalesAreSupportedAfterInitialization)
{
    EXPECT_TRUE(MarlEngine_is_language_supported("ko_KR"));
    EXPECT_TRUE(MarlEngine_is_language_supported("ko-KR"));
    EXPECT_FALSE(MarlEngine_is_language_supported("ja_JP"));
    EXPECT_EQ(MarlEngine_set_language("ja_JP"), VCP_ERROR_INVALID_LANGUAGE);
    EXPECT_EQ(MarlEngine_set_language("ko_KR"), 0);
    // The daemon's form is stored as it came; the library gets the speech form.
    EXPECT_EQ(wrapper()->getLanguage(), "ko_KR");
}

TEST_F(EngineEntry, SupportedLanguagesAreWalkedInSortedOrder)
{
    std::vector<std::string> languages;
    auto collect = [](const char* language, void* data) {
        static_cast<std::vector<std::string>*>(data)->push_back(language);
        return false;  // the walk goes on regardless
    };
    EXPECT_EQ(MarlEngine_foreach_supported_languages(collect, &languages), 0);
    EXPECT_EQ(languages, (std::vector<std::string>{"de_DE", "en_GB", "en_US", "fr_FR", "it_IT", "ko_KR", "zh_CN"}));
    EXPECT_EQ(MarlEngine_foreach_supported_languages(nullptr, nullptr), VCP_ERROR_INVALID_PARAMETER);
}

TEST_F(EngineEntry, TheLastSetterUserDataIsSharedByAllCallbacks)
{
    int other = 0;
    EXPECT_EQ(MarlEngine_set_error_cb(nullptr, &other), 0);
    EXPECT_EQ(wrapper()->userData, &other);
    EXPECT_EQ(wrapper()->errorCallback, nullptr);
}

TEST_F(EngineEntry, ADomainBecomesTheDeviceProfile)
{
    EXPECT_EQ(wrapper()->getDeviceProfile(), "Common");
    EXPECT_EQ(MarlEngine_set_domain(""), 0);
    EXPECT_EQ(wrapper()->getDeviceProfile(), "");
    EXPECT_EQ(MarlEngine_set_domain("Halden Refrigerator Smart Home Version 1.0 - Tizen SDK 3.0.0"), 0);
    EXPECT_EQ(wrapper()->getDeviceProfile(), "Halden Refrigerator Smart Home Version 1.0 - Tizen SDK 3.0.0");
}

TEST_F(EngineEntry, InertEntryPointsAnswerZeroAndLeaveTheirOutputsAlone)
{
    char* value = reinterpret_cast<char*>(0x1);
    EXPECT_EQ(MarlEngine_get_nlu_base_info("key", &value), 0);
    EXPECT_EQ(MarlEngine_get_private_data("key", &value), 0);
    EXPECT_EQ(value, reinterpret_cast<char*>(0x1));
    EXPECT_EQ(MarlEngine_process_text("hello"), 0);
    EXPECT_EQ(MarlEngine_process_list_event("1"), 0);
    EXPECT_EQ(MarlEngine_process_haptic_event("1"), 0);
    EXPECT_EQ(MarlEngine_unset_commands(), 0);
    EXPECT_TRUE(marltest::logged("====== Process haptic event ======"));
}

TEST_F(EngineEntry, StartClearsTheTextsButKeepsTheConfidences)
{
    wrapper()->embeddedResults.asrResult = "old";
    wrapper()->cloudResults.nluResult = "old";
    wrapper()->cloudResults.confidence = 1;
    wrapper()->speechDetectState = 2;
    EXPECT_EQ(MarlEngine_start(false), 0);
    EXPECT_EQ(wrapper()->embeddedResults.asrResult, "");
    EXPECT_EQ(wrapper()->cloudResults.nluResult, "");
    EXPECT_EQ(wrapper()->cloudResults.confidence, 1);
    EXPECT_EQ(wrapper()->speechDetectState, 0);
    EXPECT_TRUE(marltest::logged("Current Context[2]"));
}

TEST_F(EngineEntry, StartReturnsZeroEvenWhenTheLibraryRefuses)
{
    speech_standin_set_start_result(0);
    EXPECT_EQ(MarlEngine_start(true), 0);
    EXPECT_TRUE(marltest::logged("Failed to start recognition"));
}

TEST_F(EngineEntry, AOneByteChunkReachesNoAudioYetReportsAndClearsTheSpeechState)
{
    ASSERT_EQ(MarlEngine_start(false), 0);
    wrapper()->speechDetectState = 1;
    vcp_speech_detect_e detected = VCP_SPEECH_DETECT_NONE;
    const char byte = 0x7f;
    EXPECT_EQ(MarlEngine_set_recording_data(&byte, 1, &detected), 0);
    EXPECT_EQ(detected, VCP_SPEECH_DETECT_BEGIN);
    EXPECT_EQ(wrapper()->speechDetectState, 0);
    EXPECT_TRUE(marltest::logged("bufferlen is 0"));
    EXPECT_TRUE(marltest::logged("Audio Processing failed"));
    speech_standin_wait_idle(2000);
    EXPECT_FALSE(marltest::observed("audio"));
}

TEST_F(EngineEntry, AudioReachesTheLibraryAsSamples)
{
    ASSERT_EQ(MarlEngine_start(false), 0);
    std::vector<short> chunk(320, 0);
    vcp_speech_detect_e detected = VCP_SPEECH_DETECT_BEGIN;
    EXPECT_EQ(MarlEngine_set_recording_data(chunk.data(), 641, &detected), 0);
    EXPECT_EQ(detected, VCP_SPEECH_DETECT_NONE);
    speech_standin_wait_idle(2000);
    bool found = false;
    for (const auto& o : marltest::observations())
        found = found || (o.find("\"audio\"") != std::string::npos && o.find("320") != std::string::npos);
    EXPECT_TRUE(found);
}

TEST_F(EngineEntry, StopAndCancelAnswerZeroWithAManager)
{
    ASSERT_EQ(MarlEngine_start(false), 0);
    EXPECT_EQ(MarlEngine_stop(), 0);
    ASSERT_EQ(MarlEngine_start(false), 0);
    EXPECT_EQ(MarlEngine_cancel(), 0);
    speech_standin_wait_idle(2000);
    EXPECT_TRUE(marltest::observed("stopRecognition"));
    EXPECT_TRUE(marltest::observed("cancelRecognition"));
}

TEST_F(EngineEntry, PrivateDataKeysAreExactAndAlwaysAnswerZero)
{
    wrapper()->setCurrentVoiceContext(VOICE_CONTEXT_KEEP);
    EXPECT_EQ(MarlEngine_set_private_data("Request", "other"), 0);
    EXPECT_EQ(wrapper()->getCurrentVoiceContext(), VOICE_CONTEXT_KEEP);
    EXPECT_EQ(MarlEngine_set_private_data(nullptr, "resetSession"), 0);
    EXPECT_EQ(MarlEngine_set_private_data("request", "resetSession"), 0);
    EXPECT_EQ(wrapper()->getCurrentVoiceContext(), VOICE_CONTEXT_KEEP);
    EXPECT_EQ(MarlEngine_set_private_data("Request", "resetSession"), 0);
    EXPECT_EQ(wrapper()->getCurrentVoiceContext(), VOICE_CONTEXT_NONE);
    EXPECT_EQ(MarlEngine_set_private_data("Request", nullptr), 0);
}

class EngineWithoutManager : public EngineTest {
protected:
    void SetUp() override
    {
        speech_standin_set_without_manager(1);
        EngineTest::SetUp();
    }
};

TEST_F(EngineWithoutManager, StartAnswersInvalidState)
{
    EXPECT_EQ(wrapper()->pRecogMgr, nullptr);
    EXPECT_EQ(MarlEngine_start(false), VCP_ERROR_INVALID_STATE);
    EXPECT_TRUE(marltest::logged("====== recognition manager is not set ======"));
    EXPECT_EQ(MarlEngine_stop(), VCP_ERROR_INVALID_STATE);
    EXPECT_EQ(MarlEngine_cancel(), VCP_ERROR_INVALID_STATE);
    EXPECT_TRUE(marltest::logged("There is no recognition Manager instantiated"));
}
