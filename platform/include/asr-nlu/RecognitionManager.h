#ifndef ASR_NLU_RECOGNITION_MANAGER_H
#define ASR_NLU_RECOGNITION_MANAGER_H

#include <string>

#include "Config.h"

class RecognitionListener;
class SpeechDetectionListener;

// The speech library's recognition control, known only through this vtable;
// the order of the operations is shared with the library. The library owns
// the object, so it cannot be deleted through this interface.
class RecognitionManager {
public:
    virtual bool startRecognition(bool flag, bool keepContext, recogtype type, devicemode mode) = 0;
    virtual void stopRecognition() = 0;
    virtual void cancelRecognition() = 0;
    virtual void processText(unsigned char* buffer, int length) = 0;
    virtual void processListEvent(std::string listEvent) = 0;
    virtual void processHepticEvent(std::string hapticEvent) = 0;
    virtual void processDriverResponse(std::string driverResponse) = 0;
    virtual void processAudio(short* samples, int sampleCount, bool epd) = 0;
    virtual void setRecognitionListener(RecognitionListener* listener) = 0;
    virtual void setSpeechDetectionListener(SpeechDetectionListener* listener, int option) = 0;
    // Two library operations the plug-in never calls.
    virtual void reservedOperation1() = 0;
    virtual void reservedOperation2() = 0;
    virtual int getState() = 0;

protected:
    ~RecognitionManager() {}
};

#endif
