#ifndef TESTS_PLATFORM_CONFIG_LAYOUT_H
#define TESTS_PLATFORM_CONFIG_LAYOUT_H

#include <asr-nlu/Config.h>

#include <cstddef>

// Size and field offsets of Config as one translation unit sees them.
struct ConfigLayout {
    std::size_t size;
    std::size_t offsets[13];
};

static inline ConfigLayout configLayoutOfThisUnit()
{
    return ConfigLayout{sizeof(Config),
                        {offsetof(Config, mInternalSpeechDetector), offsetof(Config, mInternalRecorder),
                         offsetof(Config, mReservedFlag), offsetof(Config, mRmsComputation),
                         offsetof(Config, mConfigureDuringInit), offsetof(Config, mSampleRate),
                         offsetof(Config, mServerPort), offsetof(Config, mLocale),
                         offsetof(Config, mServerIP), offsetof(Config, mReservedText),
                         offsetof(Config, mAudioBufferFormat), offsetof(Config, mRecognitionPath),
                         offsetof(Config, mEpdThreshold)}};
}

// From HeadersCxx14.cpp, built as C++14.
ConfigLayout configLayoutInCxx14();
Config defaultConfigInCxx14();
std::size_t settingsTableSizeInCxx14();

#endif
