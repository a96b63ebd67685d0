#include "DeviceFaults.h"

#include <audio_io.h>

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <thread>
#include <vector>

using marltest::TestDevice;

namespace {

// The fields of a WAV file, read byte by byte.
struct Wav {
    bool valid = false;
    uint32_t riffSize = 0;
    uint16_t format = 0, channels = 0, blockAlign = 0, bits = 0;
    uint32_t rate = 0, byteRate = 0;
    uint32_t dataSize = 0;
    std::vector<uint8_t> data;
};

uint32_t le32(const std::vector<uint8_t>& b, size_t at)
{
    return b[at] | b[at + 1] << 8 | b[at + 2] << 16 | uint32_t(b[at + 3]) << 24;
}

uint16_t le16(const std::vector<uint8_t>& b, size_t at)
{
    return uint16_t(b[at] | b[at + 1] << 8);
}

Wav readWav(const std::string& path)
{
    Wav wav;
    std::ifstream in(path, std::ios::binary);
    std::vector<uint8_t> b((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (b.size() < 12 || std::memcmp(b.data(), "RIFF", 4) || std::memcmp(b.data() + 8, "WAVE", 4))
        return wav;
    wav.riffSize = le32(b, 4);
    bool haveFormat = false, haveData = false;
    for (size_t at = 12; at + 8 <= b.size();) {
        const uint32_t size = le32(b, at + 4);
        if (!std::memcmp(b.data() + at, "fmt ", 4) && size >= 16 && at + 8 + 16 <= b.size()) {
            wav.format = le16(b, at + 8);
            wav.channels = le16(b, at + 10);
            wav.rate = le32(b, at + 12);
            wav.byteRate = le32(b, at + 16);
            wav.blockAlign = le16(b, at + 20);
            wav.bits = le16(b, at + 22);
            haveFormat = true;
        } else if (!std::memcmp(b.data() + at, "data", 4)) {
            wav.dataSize = size;
            if (at + 8 + size > b.size())
                return wav;
            wav.data.assign(b.begin() + at + 8, b.begin() + at + 8 + size);
            haveData = true;
        }
        at += 8 + size + (size & 1);
    }
    wav.valid = haveFormat && haveData && wav.riffSize + 8 == b.size();
    return wav;
}

std::vector<int16_t> knownSamples(size_t count)
{
    std::vector<int16_t> samples;
    for (size_t i = 0; i < count; ++i)
        samples.push_back(static_cast<int16_t>((i * 1237 % 65536) - 32768));
    return samples;
}

std::vector<Json::Value> playbacks()
{
    std::vector<Json::Value> found;
    for (const auto& entry : vapp::readJournal())
        if (entry["event"] == "audio_playback")
            found.push_back(entry);
    return found;
}

audio_out_h createSpeechOutput()
{
    audio_out_h output = nullptr;
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_create(24000, AUDIO_CHANNEL_MONO, AUDIO_SAMPLE_TYPE_S16_LE,
                                                    SOUND_TYPE_MEDIA, &output));
    return output;
}

}  // namespace

TEST(AudioOut, FormatNumbersAreTheAppliances)
{
    EXPECT_EQ(128, AUDIO_CHANNEL_MONO);
    EXPECT_EQ(113, AUDIO_SAMPLE_TYPE_S16_LE);
    EXPECT_EQ(4, SOUND_TYPE_MEDIA);
}

TEST(AudioOut, PlaybackOfKnownSamplesBecomesAWavFileAndAJournalEntry)
{
    TestDevice dev;
    const std::vector<int16_t> samples = knownSamples(100);
    audio_out_h output = createSpeechOutput();
    ASSERT_NE(nullptr, output);
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    const char* bytes = reinterpret_cast<const char*>(samples.data());
    for (size_t at = 0; at < samples.size() * 2; at += 40)
        EXPECT_EQ(40, audio_out_write(output, const_cast<char*>(bytes + at), 40));
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_unprepare(output));
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));

    const Wav wav = readWav(dev.path("audio/playback-0001.wav"));
    ASSERT_TRUE(wav.valid);
    EXPECT_EQ(1, wav.format);
    EXPECT_EQ(1, wav.channels);
    EXPECT_EQ(24000u, wav.rate);
    EXPECT_EQ(48000u, wav.byteRate);
    EXPECT_EQ(2, wav.blockAlign);
    EXPECT_EQ(16, wav.bits);
    EXPECT_EQ(200u, wav.dataSize);
    ASSERT_EQ(200u, wav.data.size());
    for (size_t i = 0; i < samples.size(); ++i)
        EXPECT_EQ(samples[i], static_cast<int16_t>(le16(wav.data, i * 2))) << "sample " << i;

    const auto entries = playbacks();
    ASSERT_EQ(1u, entries.size());
    EXPECT_EQ("audio/playback-0001.wav", entries[0]["file"].asString());
    EXPECT_EQ(24000, entries[0]["rate"].asInt());
    EXPECT_EQ(1, entries[0]["channels"].asInt());
    EXPECT_EQ(113, entries[0]["sample_type"].asInt());
    EXPECT_EQ(4, entries[0]["sound_type"].asInt());
    EXPECT_EQ(200, entries[0]["bytes"].asInt());
}

TEST(AudioOut, FileIsValidBeforeThePlaybackEnds)
{
    TestDevice dev;
    const std::vector<int16_t> samples = knownSamples(30);
    audio_out_h output = createSpeechOutput();
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    ASSERT_EQ(60, audio_out_write(output, const_cast<int16_t*>(samples.data()), 60));

    const Wav wav = readWav(dev.path("audio/playback-0001.wav"));
    ASSERT_TRUE(wav.valid);
    EXPECT_EQ(60u, wav.dataSize);
    EXPECT_EQ(samples[29], static_cast<int16_t>(le16(wav.data, 58)));
    EXPECT_TRUE(playbacks().empty());
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));
    EXPECT_EQ(1u, playbacks().size());
}

TEST(AudioOut, WriteAnswersZeroWhenTheDescriptionSaysSo)
{
    TestDevice dev(R"({"audio_out": {"write_returns": "zero"}})");
    const std::vector<int16_t> samples = knownSamples(20);
    audio_out_h output = createSpeechOutput();
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    EXPECT_EQ(0, audio_out_write(output, const_cast<int16_t*>(samples.data()), 40));
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));
    EXPECT_EQ(40u, readWav(dev.path("audio/playback-0001.wav")).dataSize);
}

TEST(AudioOut, UnknownWriteAnswerInTheDescriptionFailsTheCreate)
{
    TestDevice dev(R"({"audio_out": {"write_returns": "bytes"}})");
    audio_out_h output = nullptr;
    EXPECT_EQ(AUDIO_IO_ERROR_DEVICE_NOT_OPENED,
              audio_out_create(24000, AUDIO_CHANNEL_MONO, AUDIO_SAMPLE_TYPE_S16_LE, SOUND_TYPE_MEDIA, &output));
    EXPECT_EQ(nullptr, output);
}

namespace {

// Writes `seconds` of 24 kHz mono 16-bit samples in pieces of 40 bytes and
// returns how long the writes took, in seconds.
double timeToWrite(audio_out_h output, double seconds)
{
    const std::vector<int16_t> piece(20, 100);
    const auto start = std::chrono::steady_clock::now();
    for (long i = 0; i < long(seconds * 24000 / 20); ++i)
        EXPECT_EQ(40, audio_out_write(output, const_cast<int16_t*>(piece.data()), 40));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

// As on the device, the samples take their time to play: writing 1 s of
// speech takes 1 s, less what the device's buffer of 100 ms still holds at
// the end.
TEST(AudioOut, WritingTakesTheTimeTheSamplesTakeToPlay)
{
    TestDevice dev;
    audio_out_h output = createSpeechOutput();
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    EXPECT_GE(timeToWrite(output, 1.0), 0.9);
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));
    EXPECT_EQ(48000, playbacks().at(0)["bytes"].asInt());
}

// A player that comes back after a pause finds the buffer played out, as a
// device that played silence meanwhile: the time it spent away is not owed.
TEST(AudioOut, APauseIsNotMadeUpFor)
{
    TestDevice dev;
    audio_out_h output = createSpeechOutput();
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    EXPECT_GE(timeToWrite(output, 0.3), 0.2);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_GE(timeToWrite(output, 0.3), 0.2);
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));
}

// A handle destroyed while a write of it sleeps: the write returns, the next
// one finds the handle gone.
TEST(AudioOut, AHandleMayBeDestroyedWhileAWriteWaits)
{
    TestDevice dev;
    audio_out_h output = createSpeechOutput();
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    const std::vector<int16_t> second(24000, 100);
    std::thread writer([&] {
        EXPECT_EQ(48000, audio_out_write(output, const_cast<int16_t*>(second.data()), 48000));
        EXPECT_EQ(AUDIO_IO_ERROR_INVALID_PARAMETER, audio_out_write(output, const_cast<int16_t*>(second.data()), 40));
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));
    writer.join();
    EXPECT_EQ(48000, playbacks().at(0)["bytes"].asInt());
}

TEST(AudioOut, PacedFalseWritesAtOnce)
{
    TestDevice dev(R"({"audio_out": {"paced": false}})");
    audio_out_h output = createSpeechOutput();
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    EXPECT_LT(timeToWrite(output, 30.0), 15.0);
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));
    EXPECT_EQ(30 * 48000, playbacks().at(0)["bytes"].asInt());
}

TEST(AudioOut, PacedMustBeTrueOrFalse)
{
    TestDevice dev(R"({"audio_out": {"paced": "no"}})");
    audio_out_h output = nullptr;
    EXPECT_EQ(AUDIO_IO_ERROR_DEVICE_NOT_OPENED,
              audio_out_create(24000, AUDIO_CHANNEL_MONO, AUDIO_SAMPLE_TYPE_S16_LE, SOUND_TYPE_MEDIA, &output));
    EXPECT_EQ(nullptr, output);
}

TEST(AudioOut, WriteBeforePrepareIsAnInvalidState)
{
    TestDevice dev;
    int16_t samples[20] = {1, 2, 3};
    audio_out_h output = createSpeechOutput();
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_STATE, audio_out_write(output, samples, 40));
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    EXPECT_EQ(40, audio_out_write(output, samples, 40));
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_unprepare(output));
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_STATE, audio_out_write(output, samples, 40));
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_STATE, audio_out_unprepare(output));
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));
    EXPECT_EQ(40u, readWav(dev.path("audio/playback-0001.wav")).dataSize);
}

TEST(AudioOut, PartOfASampleWaitsForTheRestOfIt)
{
    // 85 bytes in pieces of 40, 40 and 5: 42 samples, and one byte that is no sample.
    TestDevice dev(R"({"audio_out": {"write_returns": "zero"}})");
    const std::vector<int16_t> samples = knownSamples(43);
    const char* bytes = reinterpret_cast<const char*>(samples.data());
    audio_out_h output = createSpeechOutput();
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    EXPECT_EQ(0, audio_out_write(output, const_cast<char*>(bytes), 40));
    EXPECT_EQ(0, audio_out_write(output, const_cast<char*>(bytes + 40), 40));
    EXPECT_EQ(0, audio_out_write(output, const_cast<char*>(bytes + 80), 5));
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));

    const Wav wav = readWav(dev.path("audio/playback-0001.wav"));
    ASSERT_TRUE(wav.valid);
    EXPECT_EQ(84u, wav.dataSize);
    EXPECT_EQ(samples[41], static_cast<int16_t>(le16(wav.data, 82)));
    ASSERT_EQ(1u, playbacks().size());
    EXPECT_EQ(85, playbacks()[0]["bytes"].asInt());
}

TEST(AudioOut, SamplesSplitAcrossWritesArriveWhole)
{
    TestDevice dev;
    const std::vector<int16_t> samples = knownSamples(20);
    const char* bytes = reinterpret_cast<const char*>(samples.data());
    audio_out_h output = createSpeechOutput();
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    EXPECT_EQ(3, audio_out_write(output, const_cast<char*>(bytes), 3));
    EXPECT_EQ(37, audio_out_write(output, const_cast<char*>(bytes + 3), 37));
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));

    const Wav wav = readWav(dev.path("audio/playback-0001.wav"));
    ASSERT_TRUE(wav.valid);
    ASSERT_EQ(40u, wav.dataSize);
    for (size_t i = 0; i < samples.size(); ++i)
        EXPECT_EQ(samples[i], static_cast<int16_t>(le16(wav.data, i * 2))) << "sample " << i;
}

TEST(AudioOut, EightBitStereoPlaybackKeepsItsFormat)
{
    TestDevice dev;
    audio_out_h output = nullptr;
    ASSERT_EQ(AUDIO_IO_ERROR_NONE,
              audio_out_create(8000, AUDIO_CHANNEL_STEREO, AUDIO_SAMPLE_TYPE_U8, SOUND_TYPE_NOTIFICATION, &output));
    uint8_t frames[6] = {0, 255, 128, 1, 2, 3};
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    EXPECT_EQ(6, audio_out_write(output, frames, 6));
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));

    const Wav wav = readWav(dev.path("audio/playback-0001.wav"));
    ASSERT_TRUE(wav.valid);
    EXPECT_EQ(2, wav.channels);
    EXPECT_EQ(8000u, wav.rate);
    EXPECT_EQ(8, wav.bits);
    EXPECT_EQ(std::vector<uint8_t>(frames, frames + 6), wav.data);
    ASSERT_EQ(1u, playbacks().size());
    EXPECT_EQ(2, playbacks()[0]["channels"].asInt());
    EXPECT_EQ(AUDIO_SAMPLE_TYPE_U8, playbacks()[0]["sample_type"].asInt());
    EXPECT_EQ(SOUND_TYPE_NOTIFICATION, playbacks()[0]["sound_type"].asInt());
}

TEST(AudioOut, EachPlaybackGetsTheNextNumber)
{
    TestDevice dev;
    for (int i = 0; i < 3; ++i) {
        audio_out_h output = createSpeechOutput();
        EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));
    }
    EXPECT_TRUE(std::filesystem::exists(dev.path("audio/playback-0001.wav")));
    EXPECT_TRUE(std::filesystem::exists(dev.path("audio/playback-0002.wav")));
    EXPECT_TRUE(std::filesystem::exists(dev.path("audio/playback-0003.wav")));
    EXPECT_EQ(3u, playbacks().size());
}

TEST(AudioOut, PlaybacksOfManyProcessesGetDistinctFiles)
{
    TestDevice dev;
    const int kProcesses = 6;
    std::vector<pid_t> children;
    for (int i = 0; i < kProcesses; ++i) {
        const pid_t pid = ::fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            audio_out_h output = nullptr;
            int16_t samples[4] = {1, 2, 3, 4};
            bool ok = audio_out_create(24000, AUDIO_CHANNEL_MONO, AUDIO_SAMPLE_TYPE_S16_LE, SOUND_TYPE_MEDIA,
                                       &output) == AUDIO_IO_ERROR_NONE &&
                      audio_out_prepare(output) == AUDIO_IO_ERROR_NONE &&
                      audio_out_write(output, samples, sizeof(samples)) == int(sizeof(samples)) &&
                      audio_out_destroy(output) == AUDIO_IO_ERROR_NONE;
            ::_exit(ok ? 0 : 1);
        }
        children.push_back(pid);
    }
    for (pid_t pid : children) {
        int status = 0;
        ASSERT_EQ(pid, ::waitpid(pid, &status, 0));
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    std::set<std::string> files;
    for (const auto& entry : playbacks())
        files.insert(entry["file"].asString());
    EXPECT_EQ(size_t(kProcesses), files.size());
    for (const auto& file : files)
        EXPECT_EQ(8u, readWav(dev.path(file)).dataSize) << file;
}

TEST(AudioOut, UnsupportedFormatIsAnInvalidParameter)
{
    TestDevice dev;
    audio_out_h output = nullptr;
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_PARAMETER,
              audio_out_create(4000, AUDIO_CHANNEL_MONO, AUDIO_SAMPLE_TYPE_S16_LE, SOUND_TYPE_MEDIA, &output));
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_PARAMETER, audio_out_create(24000, static_cast<audio_channel_e>(1),
                                                                 AUDIO_SAMPLE_TYPE_S16_LE, SOUND_TYPE_MEDIA, &output));
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_PARAMETER, audio_out_create(24000, AUDIO_CHANNEL_MONO,
                                                                 static_cast<audio_sample_type_e>(0), SOUND_TYPE_MEDIA, &output));
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_PARAMETER, audio_out_create(24000, AUDIO_CHANNEL_MONO, AUDIO_SAMPLE_TYPE_S16_LE,
                                                                 static_cast<sound_type_e>(9), &output));
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_PARAMETER,
              audio_out_create(24000, AUDIO_CHANNEL_MONO, AUDIO_SAMPLE_TYPE_S16_LE, SOUND_TYPE_MEDIA, nullptr));
    EXPECT_EQ(nullptr, output);
    EXPECT_FALSE(std::filesystem::exists(dev.path("audio/playback-0001.wav")));
}

TEST(AudioOut, DestroyedOrUnknownHandleIsAnInvalidParameter)
{
    TestDevice dev;
    int16_t samples[2] = {1, 2};
    audio_out_h output = createSpeechOutput();
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_PARAMETER, audio_out_destroy(output));
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_PARAMETER, audio_out_prepare(output));
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_PARAMETER, audio_out_write(output, samples, 4));
    EXPECT_EQ(AUDIO_IO_ERROR_INVALID_PARAMETER, audio_out_unprepare(nullptr));
    EXPECT_EQ(1u, playbacks().size());
}

TEST(AudioOut, InjectedErrorIsReturnedAsIs)
{
    TestDevice dev(R"({"errors": {"audio_out_write": "AUDIO_IO_ERROR_SOUND_POLICY"}})");
    int16_t samples[20] = {};
    audio_out_h output = createSpeechOutput();
    ASSERT_EQ(AUDIO_IO_ERROR_NONE, audio_out_prepare(output));
    EXPECT_EQ(AUDIO_IO_ERROR_SOUND_POLICY, audio_out_write(output, samples, 40));
    EXPECT_EQ(AUDIO_IO_ERROR_NONE, audio_out_destroy(output));
    EXPECT_EQ(0, playbacks()[0]["bytes"].asInt());

    dev.apply(R"({"errors": {"audio_out_create": "AUDIO_IO_ERROR_PERMISSION_DENIED"}})");
    output = nullptr;
    EXPECT_EQ(AUDIO_IO_ERROR_PERMISSION_DENIED,
              audio_out_create(24000, AUDIO_CHANNEL_MONO, AUDIO_SAMPLE_TYPE_S16_LE, SOUND_TYPE_MEDIA, &output));
    EXPECT_EQ(nullptr, output);
}

TEST(AudioOut, MissingDeviceDirectoryCannotOpenTheDevice)
{
    TestDevice dev;
    marltest::removeDevice(dev);
    audio_out_h output = nullptr;
    EXPECT_EQ(AUDIO_IO_ERROR_DEVICE_NOT_OPENED,
              audio_out_create(24000, AUDIO_CHANNEL_MONO, AUDIO_SAMPLE_TYPE_S16_LE, SOUND_TYPE_MEDIA, &output));
    EXPECT_EQ(nullptr, output);
    EXPECT_FALSE(std::filesystem::exists(dev.dir()));
}

TEST(AudioOut, MalformedDescriptionCannotOpenTheDevice)
{
    TestDevice dev;
    marltest::breakDescription(dev);
    audio_out_h output = nullptr;
    EXPECT_EQ(AUDIO_IO_ERROR_DEVICE_NOT_OPENED,
              audio_out_create(24000, AUDIO_CHANNEL_MONO, AUDIO_SAMPLE_TYPE_S16_LE, SOUND_TYPE_MEDIA, &output));
    EXPECT_EQ(nullptr, output);
}
