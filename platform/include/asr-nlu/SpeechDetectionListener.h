#ifndef ASR_NLU_SPEECH_DETECTION_LISTENER_H
#define ASR_NLU_SPEECH_DETECTION_LISTENER_H

// Told by the speech library's own speech detector where speech begins and
// ends. The destructor comes after the three operations in the vtable.
class SpeechDetectionListener {
public:
    virtual void onBeginningOfSpeech() = 0;
    virtual void onRmsChanged(int rms) = 0;
    virtual void onEndOfSpeech() = 0;
    virtual ~SpeechDetectionListener() {}
};

#endif
