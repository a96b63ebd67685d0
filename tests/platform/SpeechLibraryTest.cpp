#include <asr-nlu/AgentActionDataFrame.h>
#include <asr-nlu/Config.h>
#include <asr-nlu/IEngineRetrieveDeviceData.h>
#include <asr-nlu/OVActionData.h>
#include <asr-nlu/RecognitionAgentResponse.h>
#include <asr-nlu/RecognitionListener.h>
#include <asr-nlu/RecognitionManager.h>
#include <asr-nlu/ResponseData.h>
#include <asr-nlu/SpeechDetectionListener.h>
#include <asr-nlu/Tessel.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include "ConfigLayout.h"
#include "VtableSlot.h"

TEST(SpeechLibrary, ConfigDefaults)
{
    Config config;
    EXPECT_TRUE(config.mInternalSpeechDetector);
    EXPECT_FALSE(config.mInternalRecorder);
    EXPECT_TRUE(config.mReservedFlag);
    EXPECT_FALSE(config.mRmsComputation);
    EXPECT_TRUE(config.mConfigureDuringInit);
    EXPECT_EQ(config.mSampleRate, 16000);
    EXPECT_EQ(config.mServerPort, 443);
    EXPECT_EQ(config.mLocale, "en_US.UTF8");
    EXPECT_EQ(config.mServerIP, "");
    EXPECT_EQ(config.mReservedText, "");
    EXPECT_EQ(config.mAudioBufferFormat, 0);
    EXPECT_EQ(config.mRecognitionPath, 2);
    EXPECT_EQ(config.mEpdThreshold, 750);
}

TEST(SpeechLibrary, ConfigSettersWriteTheirOwnField)
{
    Config config;
    config.useInternalSpeechDetector(false);
    config.useInternalRecorder(true);
    config.enableRMSComputation(true);
    config.configureDuringInit(false);
    config.setServerPort(8443);
    config.setLocale("en-US");
    config.setServerIP("asr.example.net");
    config.setAudioBufferFormat(AUDIO_BUFFER_FORMAT_PCM_S16);
    config.setRecognitionPath(RECOGNITION_PATH_HYBRID);
    config.setEpdThreshold(900);

    EXPECT_FALSE(config.mInternalSpeechDetector);
    EXPECT_TRUE(config.mInternalRecorder);
    EXPECT_TRUE(config.mReservedFlag);
    EXPECT_TRUE(config.mRmsComputation);
    EXPECT_FALSE(config.mConfigureDuringInit);
    EXPECT_EQ(config.mSampleRate, 16000);
    EXPECT_EQ(config.mServerPort, 8443);
    EXPECT_EQ(config.mLocale, "en-US");
    EXPECT_EQ(config.mServerIP, "asr.example.net");
    EXPECT_EQ(config.mReservedText, "");
    EXPECT_EQ(config.mAudioBufferFormat, 0);
    EXPECT_EQ(config.mRecognitionPath, 3);
    EXPECT_EQ(config.mEpdThreshold, 900);
}

TEST(SpeechLibrary, ConfigCopiesMemberWise)
{
    Config config;
    config.setServerIP("asr.example.net");
    config.setRecognitionPath(RECOGNITION_PATH_HYBRID);
    Config copy(config);
    EXPECT_EQ(copy.mServerIP, "asr.example.net");
    EXPECT_EQ(copy.mRecognitionPath, RECOGNITION_PATH_HYBRID);
    EXPECT_EQ(copy.mLocale, "en_US.UTF8");
}

// Five bools packed first, then the ints, the three texts, the two enums and
// the threshold, in this order.
static_assert(offsetof(Config, mInternalSpeechDetector) == 0, "first field");
static_assert(offsetof(Config, mInternalRecorder) == 1, "bools are packed");
static_assert(offsetof(Config, mReservedFlag) == 2, "bools are packed");
static_assert(offsetof(Config, mRmsComputation) == 3, "bools are packed");
static_assert(offsetof(Config, mConfigureDuringInit) == 4, "bools are packed");
static_assert(offsetof(Config, mSampleRate) == 8, "first int after the bools");
static_assert(offsetof(Config, mServerPort) == 12, "ints are packed");
static_assert(offsetof(Config, mLocale) > offsetof(Config, mServerPort), "order");
static_assert(offsetof(Config, mServerIP) == offsetof(Config, mLocale) + sizeof(std::string), "order");
static_assert(offsetof(Config, mReservedText) == offsetof(Config, mServerIP) + sizeof(std::string), "order");
static_assert(offsetof(Config, mAudioBufferFormat) == offsetof(Config, mReservedText) + sizeof(std::string),
              "order");
static_assert(offsetof(Config, mRecognitionPath) == offsetof(Config, mAudioBufferFormat) + 4, "order");
static_assert(offsetof(Config, mEpdThreshold) == offsetof(Config, mRecognitionPath) + 4, "order");
static_assert(sizeof(bool) == 1 && sizeof(int) == 4, "widths");
static_assert(sizeof(AudioBufferFormat) == 4 && sizeof(recognitionpath) == 4 && sizeof(recogtype) == 4 &&
                  sizeof(devicemode) == 4,
              "enums are 32 bits");

TEST(SpeechLibrary, ConfigFieldsLieInTheSharedOrder)
{
    ConfigLayout layout = configLayoutOfThisUnit();
    for (int i = 1; i < 13; ++i)
        EXPECT_LT(layout.offsets[i - 1], layout.offsets[i]) << "field " << i + 1;
}

TEST(SpeechLibrary, ConfigHasTheSameLayoutInCxx14)
{
    ConfigLayout here = configLayoutOfThisUnit();
    ConfigLayout cxx14 = configLayoutInCxx14();
    EXPECT_EQ(here.size, cxx14.size);
    for (int i = 0; i < 13; ++i)
        EXPECT_EQ(here.offsets[i], cxx14.offsets[i]) << "field " << i + 1;

    Config config = defaultConfigInCxx14();
    EXPECT_EQ(config.mLocale, "en_US.UTF8");
    EXPECT_EQ(config.mEpdThreshold, 750);
    EXPECT_EQ(settingsTableSizeInCxx14(), 26u);
}

TEST(SpeechLibrary, EnumValuesThePlugInUses)
{
    EXPECT_EQ(AUDIO_BUFFER_FORMAT_PCM_S16, 0);
    EXPECT_EQ(RECOGNITION_PATH_CLOUD, 2);
    EXPECT_EQ(RECOGNITION_PATH_HYBRID, 3);
    EXPECT_EQ(RECOG_TYPE_DRIVER_RESPONSE, 1);
    EXPECT_EQ(RECOG_TYPE_VOICE, 2);
    EXPECT_EQ(DEVICE_MODE_NORMAL, 0);
}

namespace {

class AsrOnlyListener : public RecognitionListener {
public:
    void onASRResult(std::string result, std::string engineType, int confidence) override
    {
        calls.push_back(result + "|" + engineType + "|" + std::to_string(confidence));
    }

    std::vector<std::string> calls;
};

} // namespace

TEST(SpeechLibrary, ListenerOverridesOnlyWhatItWants)
{
    AsrOnlyListener asrOnly;
    RecognitionListener* listener = &asrOnly;

    listener->onLoadingComplete();
    listener->onPartialResult("set a");
    listener->onASRResult("set a timer", "CLOUD", 1);
    listener->onNLUResult("{}", "CLOUD", 1, nullptr, 0, true);
    listener->onRecognitionStateChanged(RecognitionListener::STATE_LISTENING);
    listener->onSpeechTimedOut();
    listener->onError(RecognitionListener::RECOGNITION_ERROR_NETWORK, "no network");
    listener->onParseAction(nullptr);

    ASSERT_EQ(asrOnly.calls.size(), 1u);
    EXPECT_EQ(asrOnly.calls[0], "set a timer|CLOUD|1");
}

TEST(SpeechLibrary, RecognitionListenerSlotsFollowTheLibraryOrder)
{
    typedef RecognitionListener L;
    static_assert(!std::is_abstract<L>::value, "every operation has a body");
    static_assert(std::has_virtual_destructor<L>::value, "virtual destructor");
    EXPECT_EQ(vtableSlots(&L::onLoadingComplete, &L::onPartialResult, &L::onASRResult, &L::onNLUResult,
                          &L::onRecognitionStateChanged, &L::onSpeechTimedOut, &L::onError, &L::onParseAction),
              consecutiveSlots(2, 8));
    static_assert(sizeof(L::State) == 4 && sizeof(L::RecognitionErrorCode) == 4, "32-bit enums");
}

TEST(SpeechLibrary, SpeechDetectionListenerSlotsPutTheDestructorLast)
{
    typedef SpeechDetectionListener L;
    static_assert(std::is_abstract<L>::value, "all operations are pure");
    static_assert(std::has_virtual_destructor<L>::value, "virtual destructor");
    EXPECT_EQ(vtableSlots(&L::onBeginningOfSpeech, &L::onRmsChanged, &L::onEndOfSpeech), consecutiveSlots(0, 3));
}

TEST(SpeechLibrary, RecognitionManagerSlotsFollowTheLibraryOrder)
{
    typedef RecognitionManager M;
    static_assert(std::is_abstract<M>::value, "known only through its operations");
    static_assert(!std::is_destructible<M>::value, "the library owns it");
    EXPECT_EQ(vtableSlots(&M::startRecognition, &M::stopRecognition, &M::cancelRecognition, &M::processText,
                          &M::processListEvent, &M::processHepticEvent, &M::processDriverResponse,
                          &M::processAudio, &M::setRecognitionListener, &M::setSpeechDetectionListener,
                          &M::reservedOperation1, &M::reservedOperation2, &M::getState),
              consecutiveSlots(0, 13));
}

namespace {

class ScriptedManager : public RecognitionManager {
public:
    bool startRecognition(bool, bool keepContext, recogtype type, devicemode mode) override
    {
        log.push_back("start " + std::to_string(keepContext) + " " + std::to_string(type) + " " +
                      std::to_string(mode));
        return true;
    }
    void stopRecognition() override { log.push_back("stop"); }
    void cancelRecognition() override { log.push_back("cancel"); }
    void processText(unsigned char*, int length) override { log.push_back("text " + std::to_string(length)); }
    void processListEvent(std::string event) override { log.push_back("list " + event); }
    void processHepticEvent(std::string event) override { log.push_back("haptic " + event); }
    void processDriverResponse(std::string response) override { log.push_back("driver " + response); }
    void processAudio(short*, int count, bool) override { log.push_back("audio " + std::to_string(count)); }
    void setRecognitionListener(RecognitionListener*) override { log.push_back("listener"); }
    void setSpeechDetectionListener(SpeechDetectionListener*, int option) override
    {
        log.push_back("detector " + std::to_string(option));
    }
    void reservedOperation1() override {}
    void reservedOperation2() override {}
    int getState() override { return 3; }

    std::vector<std::string> log;
};

} // namespace

TEST(SpeechLibrary, ManagerCallsReachTheImplementation)
{
    ScriptedManager scripted;
    RecognitionManager* manager = &scripted;
    short samples[4] = {};

    EXPECT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_DRIVER_RESPONSE, DEVICE_MODE_NORMAL));
    manager->processDriverResponse("{}");
    manager->processAudio(samples, 4, false);
    manager->stopRecognition();
    EXPECT_EQ(manager->getState(), 3);

    EXPECT_EQ(scripted.log, (std::vector<std::string>{"start 0 1 0", "driver {}", "audio 4", "stop"}));
}

// What the plug-in calls on the library's own classes.
static_assert(std::is_same<decltype(&Tessel::init), void (*)(Config, IEngineRetrieveDeviceData*)>::value &&
                  std::is_same<decltype(&Tessel::getInstance), Tessel* (*)()>::value &&
                  std::is_same<decltype(&Tessel::shutdown), void (*)()>::value &&
                  std::is_same<decltype(&Tessel::getRecognitionManager), RecognitionManager* (Tessel::*)()>::value &&
                  std::is_same<decltype(&Tessel::changeLocale), void (Tessel::*)(std::string)>::value &&
                  std::is_same<decltype(&Tessel::setCommandList), void (Tessel::*)(std::string)>::value &&
                  std::is_same<decltype(&Tessel::syncUserData), void (Tessel::*)()>::value,
              "Tessel");
static_assert(!std::is_constructible<Tessel>::value && !std::is_copy_constructible<Tessel>::value,
              "only the library makes the one Tessel");
static_assert(std::is_same<decltype(&RecognitionAgentResponse::getEngineType),
                           std::string (RecognitionAgentResponse::*)()>::value &&
                  std::is_same<decltype(&RecognitionAgentResponse::getResponseType),
                               int (RecognitionAgentResponse::*)()>::value &&
                  std::is_same<decltype(&RecognitionAgentResponse::getIsLast),
                               bool (RecognitionAgentResponse::*)()>::value &&
                  std::is_same<decltype(&RecognitionAgentResponse::getData),
                               std::string (RecognitionAgentResponse::*)()>::value,
              "RecognitionAgentResponse");
static_assert(std::is_same<decltype(&ResponseData::getOvActionData), OVActionData* (ResponseData::*)()>::value &&
                  std::is_same<decltype(&ResponseData::getSpokenText), std::string (ResponseData::*)()>::value &&
                  !std::is_copy_constructible<ResponseData>::value,
              "ResponseData owns its OVActionData");
static_assert(std::is_same<decltype(&OVActionData::getActionData), AgentActionDataFrame* (OVActionData::*)()>::value &&
                  std::is_same<decltype(&OVActionData::getActionAgent), std::string (OVActionData::*)()>::value &&
                  !std::is_copy_constructible<OVActionData>::value,
              "OVActionData owns its AgentActionDataFrame");
static_assert(std::is_same<decltype(&AgentActionDataFrame::getActionType),
                           std::string (AgentActionDataFrame::*)()>::value &&
                  std::is_same<decltype(&AgentActionDataFrame::getRawJson),
                               std::string (AgentActionDataFrame::*)()>::value &&
                  std::is_same<decltype(&AgentActionDataFrame::getCommandName),
                               std::string (AgentActionDataFrame::*)()>::value &&
                  std::is_same<decltype(&AgentActionDataFrame::getActionName),
                               std::string (AgentActionDataFrame::*)()>::value,
              "AgentActionDataFrame");
