#ifndef ASR_NLU_CONFIG_H
#define ASR_NLU_CONFIG_H

#include <string>

// Audio layout of the buffers given to RecognitionManager::processAudio.
enum AudioBufferFormat : int {
    AUDIO_BUFFER_FORMAT_PCM_S16 = 0,
};

// Which recognisers the library runs. The meaning behind each number is the
// library's; these are the two values this plug-in uses.
enum recognitionpath : int {
    RECOGNITION_PATH_CLOUD = 2,
    RECOGNITION_PATH_HYBRID = 3,
};

// Kind of recognition turn handed to RecognitionManager::startRecognition.
enum recogtype : int {
    RECOG_TYPE_DRIVER_RESPONSE = 1,
    RECOG_TYPE_VOICE = 2,
};

// Device mode handed to RecognitionManager::startRecognition.
enum devicemode : int {
    DEVICE_MODE_NORMAL = 0,
};

// Start-up settings of the speech library, given by value to Tessel::init.
// The library is built from this same definition, so the order and width of
// the fields below must not change.
class Config {
public:
    Config()
        : mInternalSpeechDetector(true),
          mInternalRecorder(false),
          mReservedFlag(true),
          mRmsComputation(false),
          mConfigureDuringInit(true),
          mSampleRate(16000),
          mServerPort(443),
          mLocale("en_US.UTF8"),
          mServerIP(),
          mReservedText(),
          mAudioBufferFormat(AUDIO_BUFFER_FORMAT_PCM_S16),
          mRecognitionPath(RECOGNITION_PATH_CLOUD),
          mEpdThreshold(750)
    {
    }

    void useInternalSpeechDetector(bool use) { mInternalSpeechDetector = use; }
    void useInternalRecorder(bool use) { mInternalRecorder = use; }
    void enableRMSComputation(bool enable) { mRmsComputation = enable; }
    void configureDuringInit(bool configure) { mConfigureDuringInit = configure; }
    void setServerPort(int port) { mServerPort = port; }
    void setLocale(std::string locale) { mLocale = locale; }
    void setServerIP(std::string serverIP) { mServerIP = serverIP; }
    void setAudioBufferFormat(AudioBufferFormat format) { mAudioBufferFormat = format; }
    void setRecognitionPath(recognitionpath path) { mRecognitionPath = path; }
    void setEpdThreshold(int threshold) { mEpdThreshold = threshold; }

    bool mInternalSpeechDetector;
    bool mInternalRecorder;
    bool mReservedFlag;          // never set by the plug-in
    bool mRmsComputation;
    bool mConfigureDuringInit;
    int mSampleRate;             // no setter
    int mServerPort;
    std::string mLocale;
    std::string mServerIP;
    std::string mReservedText;   // never set by the plug-in
    AudioBufferFormat mAudioBufferFormat;
    recognitionpath mRecognitionPath;
    int mEpdThreshold;
};

#endif
