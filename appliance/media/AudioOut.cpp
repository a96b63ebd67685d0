// audio_out: every playback, from audio_out_create to audio_out_destroy,
// becomes one WAV file DIR/audio/playback-NNNN.wav in the format it was
// created with. The file's header is brought up to date after every write, so
// the file is a valid WAV file even when the player never destroys its
// handle. audio_out_destroy adds an "audio_playback" entry to the journal.
// Writes take the time their samples take to play at the stream's rate, as
// the device's do (audio_out.paced: false returns at once).
#include "PlatformSection.h"

#include <audio_io.h>

#include <sndfile.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"AUDIO_IO_ERROR_NONE", AUDIO_IO_ERROR_NONE},
                         {"AUDIO_IO_ERROR_OUT_OF_MEMORY", AUDIO_IO_ERROR_OUT_OF_MEMORY},
                         {"AUDIO_IO_ERROR_INVALID_PARAMETER", AUDIO_IO_ERROR_INVALID_PARAMETER},
                         {"AUDIO_IO_ERROR_INVALID_OPERATION", AUDIO_IO_ERROR_INVALID_OPERATION},
                         {"AUDIO_IO_ERROR_PERMISSION_DENIED", AUDIO_IO_ERROR_PERMISSION_DENIED},
                         {"AUDIO_IO_ERROR_NOT_SUPPORTED", AUDIO_IO_ERROR_NOT_SUPPORTED},
                         {"AUDIO_IO_ERROR_DEVICE_NOT_OPENED", AUDIO_IO_ERROR_DEVICE_NOT_OPENED},
                         {"AUDIO_IO_ERROR_DEVICE_NOT_CLOSED", AUDIO_IO_ERROR_DEVICE_NOT_CLOSED},
                         {"AUDIO_IO_ERROR_INVALID_BUFFER", AUDIO_IO_ERROR_INVALID_BUFFER},
                         {"AUDIO_IO_ERROR_SOUND_POLICY", AUDIO_IO_ERROR_SOUND_POLICY},
                         {"AUDIO_IO_ERROR_INVALID_STATE", AUDIO_IO_ERROR_INVALID_STATE},
                         {"AUDIO_IO_ERROR_NOT_SUPPORTED_TYPE", AUDIO_IO_ERROR_NOT_SUPPORTED_TYPE},
                     }),
                     true);

struct Playback {
    std::mutex mutex;  // guards everything below; file is null once destroyed
    int rate = 0;
    audio_channel_e channel = AUDIO_CHANNEL_MONO;
    audio_sample_type_e sampleType = AUDIO_SAMPLE_TYPE_S16_LE;
    sound_type_e soundType = SOUND_TYPE_MEDIA;
    bool returnsSize = true;  // audio_out.write_returns
    bool paced = true;        // audio_out.paced
    std::chrono::steady_clock::time_point playedUntil;  // when the written samples have played
    bool prepared = false;
    int fd = -1;
    SNDFILE* file = nullptr;
    std::string name;           // relative to the device directory
    std::string partialFrame;   // written bytes that do not make a whole frame yet
    unsigned long long bytes = 0;

    int channels() const { return channel == AUDIO_CHANNEL_STEREO ? 2 : 1; }
    int frameSize() const { return channels() * (sampleType == AUDIO_SAMPLE_TYPE_U8 ? 1 : 2); }
};

vapp::HandleTable<Playback> gPlaybacks;

// The device's buffer and the period in which it plays it.
const std::chrono::milliseconds kBuffered(100);
const std::chrono::milliseconds kPeriod(20);

std::shared_ptr<Playback> find(audio_out_h output)
{
    return output ? gPlaybacks.find(output) : nullptr;
}

// The first free number above every playback file in the directory, taken
// with O_EXCL so that two processes never write the same file.
int createPlaybackFile(const std::string& dir, std::string* name)
{
    int highest = 0;
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(dir, ec)) {
        int number = 0;
        char tail = 0;
        if (std::sscanf(entry.path().filename().c_str(), "playback-%d.wa%c", &number, &tail) == 2 &&
            tail == 'v' && number > highest)
            highest = number;
    }
    for (int number = highest + 1; number < INT_MAX; ++number) {
        char file[64];
        std::snprintf(file, sizeof(file), "playback-%04d.wav", number);
        const int fd = ::open((dir + "/" + file).c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd >= 0) {
            *name = std::string("audio/") + file;
            return fd;
        }
        if (errno != EEXIST)
            break;
    }
    return -1;
}

int create(const char* function, int rate, audio_channel_e channel, audio_sample_type_e type,
           sound_type_e soundType, audio_out_h* output)
{
    if (!output || rate < 8000 || rate > 48000 ||
        (channel != AUDIO_CHANNEL_MONO && channel != AUDIO_CHANNEL_STEREO) ||
        (type != AUDIO_SAMPLE_TYPE_U8 && type != AUDIO_SAMPLE_TYPE_S16_LE) ||
        soundType < SOUND_TYPE_SYSTEM || soundType > SOUND_TYPE_VOICE)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(function, "audio_out", AUDIO_IO_ERROR_DEVICE_NOT_OPENED);
    if (!read.ok())
        return read.code();

    auto playback = std::make_shared<Playback>();
    const Json::Value& writeReturns = read.member("write_returns");
    if (!writeReturns.isNull() && writeReturns != "size" && writeReturns != "zero") {
        vapp::platformWarning("device.json: audio_out.write_returns must be \"size\" or \"zero\"");
        return AUDIO_IO_ERROR_DEVICE_NOT_OPENED;
    }
    playback->returnsSize = writeReturns != "zero";
    const Json::Value& paced = read.member("paced");
    if (!paced.isNull() && !paced.isBool()) {
        vapp::platformWarning("device.json: audio_out.paced must be true or false");
        return AUDIO_IO_ERROR_DEVICE_NOT_OPENED;
    }
    playback->paced = paced.isNull() || paced.asBool();
    playback->rate = rate;
    playback->channel = channel;
    playback->sampleType = type;
    playback->soundType = soundType;

    const std::string dir = vapp::devicePath("audio");
    if (!vapp::makeDirs(dir) || (playback->fd = createPlaybackFile(dir, &playback->name)) < 0) {
        vapp::platformWarning("cannot create a playback file in " + dir);
        return AUDIO_IO_ERROR_DEVICE_NOT_OPENED;
    }
    SF_INFO info = {};
    info.samplerate = rate;
    info.channels = playback->channels();
    info.format = SF_FORMAT_WAV | (type == AUDIO_SAMPLE_TYPE_U8 ? SF_FORMAT_PCM_U8 : SF_FORMAT_PCM_16);
    playback->file = sf_open_fd(playback->fd, SFM_WRITE, &info, SF_FALSE);
    if (!playback->file) {
        vapp::platformWarning("cannot write " + vapp::devicePath(playback->name) + ": " + sf_strerror(nullptr));
        ::close(playback->fd);
        ::unlink(vapp::devicePath(playback->name).c_str());
        return AUDIO_IO_ERROR_DEVICE_NOT_OPENED;
    }
    sf_command(playback->file, SFC_SET_UPDATE_HEADER_AUTO, nullptr, SF_TRUE);
    *output = static_cast<audio_out_h>(gPlaybacks.add(playback));
    return AUDIO_IO_ERROR_NONE;
}

}  // namespace

extern "C" {

int audio_out_create(int sample_rate, audio_channel_e channel, audio_sample_type_e type,
                     sound_type_e sound_type, audio_out_h* output)
{
    return create(__func__, sample_rate, channel, type, sound_type, output);
}

int audio_out_create_new(int sample_rate, audio_channel_e channel, audio_sample_type_e type,
                         audio_out_h* output)
{
    return create(__func__, sample_rate, channel, type, SOUND_TYPE_MEDIA, output);
}

int audio_out_prepare(audio_out_h output)
{
    auto playback = find(output);
    if (!playback)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    std::lock_guard<std::mutex> lock(playback->mutex);
    if (!playback->file)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    playback->prepared = true;
    return AUDIO_IO_ERROR_NONE;
}

int audio_out_unprepare(audio_out_h output)
{
    auto playback = find(output);
    if (!playback)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    std::lock_guard<std::mutex> lock(playback->mutex);
    if (!playback->file)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    if (!playback->prepared)
        return AUDIO_IO_ERROR_INVALID_STATE;
    playback->prepared = false;
    return AUDIO_IO_ERROR_NONE;
}

int audio_out_write(audio_out_h output, void* buffer, unsigned int length)
{
    auto playback = find(output);
    if (!playback || !buffer || length == 0 || length > INT_MAX)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    std::unique_lock<std::mutex> lock(playback->mutex);
    if (!playback->file)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    if (!playback->prepared)
        return AUDIO_IO_ERROR_INVALID_STATE;
    // The file takes whole frames; the bytes of an unfinished frame wait
    // for the next write.
    std::string& pending = playback->partialFrame;
    pending.append(static_cast<const char*>(buffer), length);
    const size_t whole = pending.size() / playback->frameSize() * playback->frameSize();
    if (whole > 0) {
        if (sf_write_raw(playback->file, pending.data(), static_cast<sf_count_t>(whole)) !=
            static_cast<sf_count_t>(whole)) {
            vapp::platformWarning("cannot write " + vapp::devicePath(playback->name) + ": " +
                                  sf_strerror(playback->file));
            pending.resize(pending.size() - length);
            return AUDIO_IO_ERROR_INVALID_OPERATION;
        }
        pending.erase(0, whole);
    }
    playback->bytes += length;
    const int answer = playback->returnsSize ? static_cast<int>(length) : AUDIO_IO_ERROR_NONE;
    if (playback->paced) {
        // The device plays what is written after what came before, from a
        // buffer: a write that would fill it beyond kBuffered waits until a
        // period has played. Nothing written for a while is silence played.
        using namespace std::chrono;
        const auto now = steady_clock::now();
        const duration<double> playing(double(length) / playback->frameSize() / playback->rate);
        playback->playedUntil = std::max(now, playback->playedUntil) + duration_cast<steady_clock::duration>(playing);
        const auto wake = playback->playedUntil - kBuffered + kPeriod;
        lock.unlock();  // the handle may be destroyed meanwhile
        if (wake > now + kPeriod)
            std::this_thread::sleep_until(wake);
    }
    return answer;
}

int audio_out_destroy(audio_out_h output)
{
    if (!find(output))
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    auto playback = gPlaybacks.take(output);
    if (!playback)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    std::lock_guard<std::mutex> lock(playback->mutex);
    // A write that found the handle just before it went waits for the lock
    // and then finds no file.
    sf_close(playback->file);
    playback->file = nullptr;
    playback->prepared = false;
    ::close(playback->fd);
    Json::Value entry;
    entry["file"] = playback->name;
    entry["rate"] = playback->rate;
    entry["channels"] = playback->channels();
    entry["sample_type"] = static_cast<int>(playback->sampleType);
    entry["sound_type"] = static_cast<int>(playback->soundType);
    entry["bytes"] = Json::UInt64(playback->bytes);
    vapp::journal("audio_playback", entry);
    return AUDIO_IO_ERROR_NONE;
}

int audio_out_get_sample_rate(audio_out_h output, int* sample_rate)
{
    auto playback = find(output);
    if (!playback || !sample_rate)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    *sample_rate = playback->rate;
    return AUDIO_IO_ERROR_NONE;
}

int audio_out_get_channel(audio_out_h output, audio_channel_e* channel)
{
    auto playback = find(output);
    if (!playback || !channel)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    *channel = playback->channel;
    return AUDIO_IO_ERROR_NONE;
}

int audio_out_get_sample_type(audio_out_h output, audio_sample_type_e* type)
{
    auto playback = find(output);
    if (!playback || !type)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    *type = playback->sampleType;
    return AUDIO_IO_ERROR_NONE;
}

int audio_out_get_sound_type(audio_out_h output, sound_type_e* type)
{
    auto playback = find(output);
    if (!playback || !type)
        return AUDIO_IO_ERROR_INVALID_PARAMETER;
    *type = playback->soundType;
    return AUDIO_IO_ERROR_NONE;
}

}  // extern "C"
