#ifndef ASR_NLU_RECOGNITION_LISTENER_H
#define ASR_NLU_RECOGNITION_LISTENER_H

#include <string>

class RecognitionAgentResponse;

// Receives the speech library's reports of one recognition. Every operation
// has an empty body, so a listener overrides only what it wants.
class RecognitionListener {
public:
    // Opaque to the plug-in, which only logs them.
    enum State : int {
        STATE_IDLE = 0,
        STATE_LISTENING = 1,
        STATE_PROCESSING = 2,
    };

    enum RecognitionErrorCode : int {
        RECOGNITION_ERROR_NONE = 0,
        RECOGNITION_ERROR_UNKNOWN = 1,
        RECOGNITION_ERROR_NETWORK = 2,
        RECOGNITION_ERROR_SERVER = 3,
        RECOGNITION_ERROR_TIMEOUT = 4,
        RECOGNITION_ERROR_AUDIO = 5,
    };

    virtual ~RecognitionListener() {}
    virtual void onLoadingComplete() {}
    virtual void onPartialResult(std::string /*result*/) {}
    virtual void onASRResult(std::string /*result*/, std::string /*engineType*/, int /*confidence*/) {}
    virtual void onNLUResult(std::string /*result*/, std::string /*engineType*/, int /*confidence*/,
                             const char* /*ttsBuffer*/, unsigned int /*ttsBufferLen*/, bool /*isTTSLast*/) {}
    virtual void onRecognitionStateChanged(State /*newState*/) {}
    virtual void onSpeechTimedOut() {}
    virtual void onError(RecognitionErrorCode /*errorCode*/, std::string /*errorMsg*/) {}
    virtual void onParseAction(RecognitionAgentResponse* /*response*/) {}
};

#endif
