// A speech library made fresh for each test, with a recording listener on
// both listener slots and every observation kept.
#pragma once

#include "StandInTestSupport.h"
#include "TestDevice.h"

#include <asr-nlu/Config.h>
#include <asr-nlu/IEngineRetrieveDeviceData.h>
#include <asr-nlu/RecognitionManager.h>
#include <asr-nlu/Tessel.h>
#include <gtest/gtest.h>

namespace marltest {

class SpeechLibraryTest : public ::testing::Test {
protected:
    void SetUp() override { start(Config()); }

    void TearDown() override { Tessel::shutdown(); }

    void start(const Config& config)
    {
        Tessel::init(config, deviceData());
        ASSERT_NE(Tessel::getInstance(), nullptr);
        manager = Tessel::getInstance()->getRecognitionManager();
        ASSERT_NE(manager, nullptr);
        manager->setRecognitionListener(&listener);
        manager->setSpeechDetectionListener(&listener, 0);
    }

    virtual IEngineRetrieveDeviceData* deviceData() { return &bareData; }

    void waitIdle() { ASSERT_EQ(speech_standin_wait_idle(5000), 0); }

    // One voice turn: start, then stop.
    void voiceTurn()
    {
        ASSERT_TRUE(manager->startRecognition(false, false, RECOG_TYPE_VOICE, DEVICE_MODE_NORMAL));
        manager->stopRecognition();
        waitIdle();
    }

    TestDevice device;
    Observations observations;
    RecordingListener listener;
    IEngineRetrieveDeviceData bareData;
    RecognitionManager* manager = nullptr;
};

}  // namespace marltest
