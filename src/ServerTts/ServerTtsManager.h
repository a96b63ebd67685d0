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
    // One playback of the play thread: its own copy of the speech and its own
    // audio output, so that a new turn can clear the gathered speech and the
    // manager can go while the thread still plays.
    struct Playback;

    void _removeWatingTimer();
    void _endPlayThread();
    static bool playServerTts(Playback* playback);
    static bool stopPlayingServerTts(Playback* playback);
    static void _closeAudioOut(Playback* playback);
    static void __threadStartCb(void* data, Ecore_Thread* thread);
    static void __threadEndCb(void* data, Ecore_Thread* thread);
    static void __threadCancelCb(void* data, Ecore_Thread* thread);
    static Eina_Bool __waitingTimerExpiredCb(void* data);

    bool mReceived;
    std::string mTtsPcmPath;
    std::string mTtsOpusPath;
    char* mTtsBuf;
    unsigned int mTtsBufSize;
    Ecore_Thread* mPlayThread;
    bool mPlayThreadCancelled;  // Ecore frees a cancelled thread: it is never asked about again
    Playback* mPlayback;        // the play thread's, until its end or cancel callback
    Ecore_Timer* mWaitingTimer;
    _cloudParserResults* mPendedResult;
};

#endif
