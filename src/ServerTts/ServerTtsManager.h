// Collects the speech that the server sends with its NLU results and, when the
// last piece has come, plays it on the device or writes it to a file for an
// outside player, releasing the one action that waited for it.
#ifndef SERVER_TTS_MANAGER_H
#define SERVER_TTS_MANAGER_H

#include "ClientManager/OrvaneMaster.h"

#include <Ecore.h>
#include <audio_io.h>

#include <string>

struct _cloudParserResults;

class ServerTtsManager : public OrvaneMaster {
public:
    ServerTtsManager();
    virtual ~ServerTtsManager();

    void init();
    void clearServerTts();
    bool getEnabled();
    bool getUserPlay();
    bool getOnPlaying();
    bool getReceived();
    bool copyServerTts(const char* ttsBuffer, unsigned int ttsBufferLen);
    bool requestServerTtsPlay(const char* ttsBuffer, unsigned int ttsBufferLen);
    bool requestServerTtsStop();
    bool requestServerTtsWait(_cloudParserResults* pendedResult);
    bool playServerTts(const char* ttsBuffer, unsigned int ttsBufferLen);
    bool serverTtsReceiveDone();
    bool stopPlayingServerTts();

private:
    void _removeWatingTimer();
    void _closeAudioOut();
    static void __threadStartCb(void* data, Ecore_Thread* thread);
    static void __threadEndCb(void* data, Ecore_Thread* thread);
    static void __threadCancelCb(void* data, Ecore_Thread* thread);
    static Eina_Bool __waitingTimerExpiredCb(void* data);

    bool mOnPlaying;
    bool mReceived;
    std::string mTtsPcmPath;
    std::string mTtsOpusPath;
    char* mTtsBuf;
    unsigned int mTtsBufSize;
    audio_out_h mAudioOutHandle;
    Ecore_Thread* mPlayThread;
    Ecore_Timer* mWaitingTimer;
    _cloudParserResults* mPendedResult;
};

#endif
