#include "ServerTts/ServerTtsManager.h"

#include "RetrieveManager/CustomizedDataRetrieveManager.h"
#include "RetrieveManager/ICustomizedServerDefines.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

#include <atomic>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

namespace {

// Server speech: raw signed 16-bit little-endian PCM, 24 kHz, mono.
const int TTS_SAMPLE_RATE = 24000;
const int TTS_CHANNEL_MONO = 128;
const int TTS_SAMPLE_TYPE_S16_LE = 113;
const int TTS_SOUND_TYPE_MEDIA = 4;
const unsigned int TTS_CHUNK_SIZE = 40;
const int TTS_GAIN = 2;
const double TTS_WAIT_SECONDS = 5.0;
// How long teardown waits for the play thread to leave its loop: one write.
const double PLAY_THREAD_END_SECONDS = 1.0;

// The gathered speech is allocated in a frame of its own: the buffer is kept
// when the manager is destroyed, and the leak check's suppression names this
// frame alone.
char* newSpeechBuffer(size_t size)
{
    return static_cast<char*>(calloc(size, 1));
}

ICustomizedServerDefines* serverDefines()
{
    return OrvaneMaster::getWrapper()->getCustomizedDataRetrieveManager()->getServerDefineRetriever();
}

void removeFile(const std::string& path)
{
    if (!path.empty())
        unlink(path.c_str());
}

// Timers belong to the main loop; the speech library and the parser call in
// from threads of their own, so their timer work is handed to the main loop.
struct TimerWork {
    ServerTtsManager* manager;
    Ecore_Task_Cb callback;
    Ecore_Timer* timer;
};

void* addTimerOnMainLoop(void* data)
{
    TimerWork* work = static_cast<TimerWork*>(data);
    work->timer = ecore_timer_add(TTS_WAIT_SECONDS, work->callback, work->manager);
    return work->timer;
}

void* deleteTimerOnMainLoop(void* data)
{
    ecore_timer_del(static_cast<TimerWork*>(data)->timer);
    return nullptr;
}

void* waitForThreadOnMainLoop(void* data)
{
    Ecore_Thread* thread = static_cast<Ecore_Thread*>(data);
    return ecore_thread_wait(thread, PLAY_THREAD_END_SECONDS) ? thread : nullptr;
}

void* onMainLoop(Ecore_Data_Cb work, void* data)
{
    if (eina_main_loop_is())
        return work(data);
    return ecore_main_loop_thread_safe_call_sync(work, data);
}

}  // namespace

struct ServerTtsManager::Playback {
    ServerTtsManager* manager;  // main loop only; null once the manager is deleted
    char* samples;              // the play thread's own copy, freed with the playback
    unsigned int size;
    audio_out_h handle;          // play thread only
    std::atomic<bool> onPlaying;
    std::atomic<bool> ending;    // the manager is going: no write after the one in hand
};

ServerTtsManager::ServerTtsManager()
    : mReceived(false),
      mTtsPcmPath("/opt/usr/home/owner/media/Sounds/test.pcm"),
      mTtsOpusPath("/opt/usr/root/home/guest/Sounds/test.opus"),
      mTtsBuf(nullptr),
      mTtsBufSize(0),
      mPlayThread(nullptr),
      mPlayThreadCancelled(false),
      mPlayback(nullptr),
      mWaitingTimer(nullptr),
      mPendedResult(nullptr)
{
}

ServerTtsManager::~ServerTtsManager()
{
    requestServerTtsStop();
    _endPlayThread();
    _removeWatingTimer();
    removeFile(mTtsPcmPath);
    removeFile(mTtsOpusPath);
    delete mPendedResult;
    mPendedResult = nullptr;
}

void ServerTtsManager::_endPlayThread()
{
    if (!mPlayback)
        return;
    // The daemon may dlclose the plug-in right after: its play thread and callbacks must be done by then.
    mPlayback->ending = true;
    if (onMainLoop(waitForThreadOnMainLoop, mPlayThread))
        return;  // its end or cancel callback has run and freed the playback
    LOGE("the play thread did not end in time");
    mPlayback->manager = nullptr;
    mPlayback = nullptr;
}

void ServerTtsManager::init()
{
    clearServerTts();
    requestServerTtsStop();
    _removeWatingTimer();
    mReceived = false;
    removeFile(mTtsPcmPath);
    removeFile(mTtsOpusPath);
}

void ServerTtsManager::clearServerTts()
{
    free(mTtsBuf);
    mTtsBuf = nullptr;
    mTtsBufSize = 0;
}

bool ServerTtsManager::getEnabled()
{
    ICustomizedServerDefines* retriever = serverDefines();
    return retriever ? retriever->useServerTts() : false;
}

bool ServerTtsManager::getUserPlay()
{
    ICustomizedServerDefines* retriever = serverDefines();
    return retriever ? retriever->userPlayServerTts() : false;
}

bool ServerTtsManager::getOnPlaying()
{
    const bool onPlaying = mPlayback && mPlayback->onPlaying;
    LOGD("playing status[%d]", onPlaying);
    return onPlaying;
}

bool ServerTtsManager::getReceived()
{
    LOGD("Receiving status[%d]", mReceived);
    return mReceived;
}

bool ServerTtsManager::copyServerTts(const char* ttsBuffer, unsigned int ttsBufferLen)
{
    LOGD("ttsBuffer[%p], ttsBufferLen[%d]", static_cast<const void*>(ttsBuffer), static_cast<int>(ttsBufferLen));
    LOGD("mTtsBuf[%p], mTtsBufSize[%d]", static_cast<void*>(mTtsBuf), static_cast<int>(mTtsBufSize));
    if (!ttsBuffer) {
        LOGE("ttsBuffer is NULL");
        return false;
    }
    if (ttsBufferLen == 0) {
        LOGE("ttsBufferLen is 0");
        return false;
    }
    // One spare zero byte stays at the end of the buffer.
    char* gathered = newSpeechBuffer(mTtsBufSize + ttsBufferLen + 1);
    if (!gathered) {
        LOGE("Failed to calloc");
        return false;
    }
    if (mTtsBuf && mTtsBufSize != 0) {
        memcpy(gathered, mTtsBuf, mTtsBufSize);
        free(mTtsBuf);
    }
    memcpy(gathered + mTtsBufSize, ttsBuffer, ttsBufferLen);
    mTtsBuf = gathered;
    mTtsBufSize += ttsBufferLen;
    LOGD("Now mTtsBuf[%p], mTtsBufSize[%d]", static_cast<void*>(mTtsBuf), static_cast<int>(mTtsBufSize));
    return true;
}

bool ServerTtsManager::requestServerTtsWait(_cloudParserResults* pendedResult)
{
    if (mWaitingTimer)
        _removeWatingTimer();
    if (mPendedResult) {
        delete mPendedResult;
        mPendedResult = nullptr;
    }
    TimerWork work = {this, __waitingTimerExpiredCb, nullptr};
    mWaitingTimer = static_cast<Ecore_Timer*>(onMainLoop(addTimerOnMainLoop, &work));
    if (!mWaitingTimer)
        return false;
    mPendedResult = pendedResult;
    return true;
}

Eina_Bool ServerTtsManager::__waitingTimerExpiredCb(void* data)
{
    if (!data) {
        LOGE("data is NULL");
        return EINA_FALSE;
    }
    ServerTtsManager* self = static_cast<ServerTtsManager*>(data);
    if (!self->mPendedResult) {
        LOGE("PendedResult is NULL");
        return EINA_FALSE;
    }
    const std::string nluResult = self->mPendedResult->nluResult;
    const std::string agentName = self->mPendedResult->agentName;
    const std::string commandName = self->mPendedResult->commandName;
    LOGD("pended agentName[%s]", agentName.c_str());
    LOGD("pended commandName[%s]", commandName.c_str());
    LOGD("pended result length[%d]", static_cast<int>(nluResult.length()));
    getWrapper()->executeParserAction(nluResult, agentName, commandName);

    // The timer ends with the false return.
    self->mWaitingTimer = nullptr;
    delete self->mPendedResult;
    self->mPendedResult = nullptr;
    return EINA_FALSE;
}

bool ServerTtsManager::serverTtsReceiveDone()
{
    if (!mTtsBuf) {
        LOGE("mTtsBuf is NULL");
        return false;
    }
    if (mTtsBufSize == 0) {
        LOGE("mTtsBufSize is 0");
        return false;
    }
    LOGD("Final gathered[%p], mTtsBufSize[%d]", static_cast<void*>(mTtsBuf), static_cast<int>(mTtsBufSize));
    removeFile(mTtsPcmPath);
    removeFile(mTtsOpusPath);

    ICustomizedServerDefines* retriever = serverDefines();
    const bool userPlay = retriever ? retriever->userPlayServerTts() : false;
    if (!userPlay) {
        requestServerTtsPlay(mTtsBuf, mTtsBufSize);
    } else {
        std::string path = retriever->getServerTtsAudioPath();
        if (path.empty())
            path = mTtsPcmPath;
        removeFile(path);
        if (!mPendedResult) {
            LOGI("There is no pended item to play server tts");
            clearServerTts();
            return false;
        }
        FILE* file = fopen(path.c_str(), "w");
        if (!file) {
            LOGE("Failed to fopen. Please remained spaces or access rights");
            clearServerTts();
            return false;
        }
        // mTtsBufSize items of 1 byte: the result is the count of bytes written.
        const size_t written = fwrite(mTtsBuf, 1, mTtsBufSize, file);
        if (written == 0)
            LOGE("Failed to fwrite. Please remained spaces or access rights");
        else
            LOGD("targetPath[%s], fwrite result[%d]", path.c_str(), static_cast<int>(written));
        fclose(file);
        clearServerTts();
        getWrapper()->executeParserAction(mPendedResult->nluResult, mPendedResult->agentName,
                                          mPendedResult->commandName);
    }
    _removeWatingTimer();
    mReceived = true;
    return true;
}

bool ServerTtsManager::requestServerTtsPlay(const char* ttsBuffer, unsigned int ttsBufferLen)
{
    if (!ttsBuffer) {
        LOGE("ttsBuffer is NULL");
        return false;
    }
    if (ttsBufferLen == 0) {
        LOGE("ttsBufferLen is 0");
        return false;
    }
    if (mPlayThread) {
        LOGE("TTS is already on Playing - Ignore reqeusts");
        return true;
    }
    // The thread plays a copy of the gathered speech, which a new turn may
    // clear under it; without memory for the copy it finds no speech.
    Playback* playback = new Playback{this, nullptr, 0, nullptr, {false}, {false}};
    if (mTtsBuf && mTtsBufSize != 0) {
        playback->samples = static_cast<char*>(malloc(mTtsBufSize));
        if (playback->samples) {
            memcpy(playback->samples, mTtsBuf, mTtsBufSize);
            playback->size = mTtsBufSize;
        } else {
            LOGE("Failed to calloc");
        }
    }
    mPlayback = playback;
    mPlayThreadCancelled = false;
    // Ecore owns the playback from here: a failed start cancels it at once.
    mPlayThread = ecore_thread_run(__threadStartCb, __threadEndCb, __threadCancelCb, playback);
    return true;
}

void ServerTtsManager::__threadStartCb(void* data, Ecore_Thread* thread)
{
    LOGD("[%p]", static_cast<void*>(thread));
    if (!data) {
        LOGE("data is NULL");
        return;
    }
    Playback* playback = static_cast<Playback*>(data);
    playServerTts(playback);
}

bool ServerTtsManager::playServerTts(const char* ttsBuffer, unsigned int ttsBufferLen)
{
    // Plays the given speech in place, on the caller's thread.
    Playback playback{this, const_cast<char*>(ttsBuffer), ttsBufferLen, nullptr, {false}, {false}};
    return playServerTts(&playback);
}

bool ServerTtsManager::playServerTts(Playback* playback)
{
    const char* ttsBuffer = playback->samples;
    const unsigned int ttsBufferLen = playback->size;
    if (!ttsBuffer) {
        LOGE("ttsBuffer is NULL");
        return false;
    }
    if (ttsBufferLen == 0) {
        LOGE("ttsBufferLen is 0");
        return false;
    }
    stopPlayingServerTts(playback);

    // Gain of 2 with clipping, in place on the gathered speech.
    short* samples = reinterpret_cast<short*>(const_cast<char*>(ttsBuffer));
    for (unsigned int i = 0; i < ttsBufferLen / 2; ++i) {
        int sample = samples[i] * TTS_GAIN;
        if (sample >= 32768)
            sample = 32767;
        else if (sample < -32768)
            sample = -32768;
        samples[i] = static_cast<short>(sample);
    }

    int ret = audio_out_create(TTS_SAMPLE_RATE, static_cast<audio_channel_e>(TTS_CHANNEL_MONO),
                               static_cast<audio_sample_type_e>(TTS_SAMPLE_TYPE_S16_LE),
                               static_cast<sound_type_e>(TTS_SOUND_TYPE_MEDIA), &playback->handle);
    if (ret != 0) {
        LOGE("audio_out_unprepare - ret[%d]", ret);
        return false;
    }
    if (!playback->handle) {
        LOGE("Failed to create audioOutHandle");
        return false;
    }
    ret = audio_out_prepare(playback->handle);
    LOGD("audio_out_prepare - ret[%d]", ret);
    playback->onPlaying = true;

    for (unsigned int i = 0; i * TTS_CHUNK_SIZE < ttsBufferLen; ++i) {
        const unsigned int pieceSize = (i + 1) * TTS_CHUNK_SIZE <= ttsBufferLen ? TTS_CHUNK_SIZE
                                                                               : ttsBufferLen % TTS_CHUNK_SIZE;
        if (pieceSize == 0)
            continue;
        char* piece = static_cast<char*>(malloc(pieceSize));
        if (!piece)
            break;
        memset(piece, 0, pieceSize);
        memcpy(piece, ttsBuffer + i * TTS_CHUNK_SIZE, pieceSize);
        ret = audio_out_write(playback->handle, piece, pieceSize);
        free(piece);
        // Only a return of 0 goes on to the next piece.
        if (ret != 0) {
            LOGE("audio_out_write - ret[%d]", ret);
            break;
        }
        if (playback->ending)
            break;
    }

    _closeAudioOut(playback);
    playback->onPlaying = false;
    return true;
}

void ServerTtsManager::__threadEndCb(void* data, Ecore_Thread* /*thread*/)
{
    LOGD("");
    if (!data) {
        LOGE("data is NULL");
        return;
    }
    Playback* playback = static_cast<Playback*>(data);
    ServerTtsManager* self = playback->manager;
    if (self) {
        self->clearServerTts();
        self->mPlayThread = nullptr;
        self->mPlayback = nullptr;
    }
    free(playback->samples);
    delete playback;
}

bool ServerTtsManager::requestServerTtsStop()
{
    if (!mPlayThread) {
        LOGD("There is no playing TTS");
        return false;
    }
    if (mPlayThreadCancelled || ecore_thread_check(mPlayThread)) {
        LOGE("thread check failed");
        return false;
    }
    mPlayThreadCancelled = true;
    ecore_thread_cancel(mPlayThread);
    return true;
}

void ServerTtsManager::__threadCancelCb(void* data, Ecore_Thread* thread)
{
    LOGD("[%p]", static_cast<void*>(thread));
    if (!data) {
        LOGE("data is NULL");
        return;
    }
    // Ecore calls this once the play loop has returned, or instead of a start
    // that never came; the play thread stays recorded, so the next play
    // request is ignored. A deleted manager left the playback alone.
    Playback* playback = static_cast<Playback*>(data);
    ServerTtsManager* self = playback->manager;
    if (self) {
        self->mPlayback = nullptr;
        self->stopPlayingServerTts();
    }
    free(playback->samples);
    delete playback;
}

bool ServerTtsManager::stopPlayingServerTts()
{
    // The audio output belongs to the play thread, which closes it when its
    // loop ends; the manager never holds one to take away.
    LOGE("There is no handle");
    return false;
}

bool ServerTtsManager::stopPlayingServerTts(Playback* playback)
{
    if (!playback->handle) {
        LOGE("There is no handle");
        return false;
    }
    _closeAudioOut(playback);
    playback->onPlaying = false;
    return false;
}

void ServerTtsManager::_closeAudioOut(Playback* playback)
{
    int ret = audio_out_unprepare(playback->handle);
    LOGD("audio_out_unprepare - ret[%d]", ret);
    ret = audio_out_destroy(playback->handle);
    LOGD("audio_out_destroy - ret[%d]", ret);
    playback->handle = nullptr;
}

void ServerTtsManager::_removeWatingTimer()
{
    if (mWaitingTimer) {
        TimerWork work = {this, nullptr, mWaitingTimer};
        onMainLoop(deleteTimerOnMainLoop, &work);
    }
    mWaitingTimer = nullptr;
    delete mPendedResult;
    mPendedResult = nullptr;
}
