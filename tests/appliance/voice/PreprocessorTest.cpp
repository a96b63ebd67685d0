#include "voice/Noise.h"
#include "voice/Preprocessor.h"
#include "voice/Voice.h"

#include <gtest/gtest.h>

namespace {

std::vector<int16_t> spoken(const std::string& text)
{
    std::vector<int16_t> speech;
    std::string error;
    EXPECT_TRUE(voice::synthesize(text, voice::SpeechOptions(), speech, error)) << error;
    std::vector<int16_t> audio(4800, 0);
    audio.insert(audio.end(), speech.begin(), speech.end());
    audio.insert(audio.end(), 4800, 0);
    return audio;
}

TEST(Preprocessor, SpeechInAQuietRoomPassesUnchanged)
{
    const std::vector<int16_t> clean = spoken("set a timer for ten minutes");
    std::vector<int16_t> audio = clean;
    voice::Preprocessor preprocessor;
    const size_t done = preprocessor.process(audio.data(), audio.size());
    EXPECT_EQ(done, clean.size() - clean.size() % voice::Preprocessor::kFrameSamples);
    EXPECT_EQ(audio, clean);
}

TEST(Preprocessor, FanNoiseIsSuppressedWhereNoOneSpeaks)
{
    const std::vector<int16_t> clean = spoken("set a timer for ten minutes");
    std::vector<int16_t> audio = clean;
    voice::addNoise(audio, voice::pinkNoise(audio.size(), 5), 0, voice::meanPower(clean.data(), clean.size()), 5.0);
    std::vector<int16_t> processed = audio;
    voice::Preprocessor preprocessor;
    preprocessor.process(processed.data(), processed.size());
    // The last 200 ms hold the noise alone; the preprocessor knows it by then.
    const size_t tail = 3200;
    const double before = voice::meanPower(audio.data() + audio.size() - tail, tail);
    const double after = voice::meanPower(processed.data() + processed.size() - tail, tail);
    EXPECT_LT(after, before / 4) << "at least 6 dB less noise";
}

TEST(Preprocessor, ResetForgetsTheNoise)
{
    const std::vector<int16_t> clean = spoken("cancel the timer");
    std::vector<int16_t> noisy = clean;
    voice::addNoise(noisy, voice::pinkNoise(noisy.size(), 9), 0, voice::meanPower(clean.data(), clean.size()), 5.0);
    voice::Preprocessor preprocessor;
    preprocessor.process(noisy.data(), noisy.size());
    preprocessor.reset();
    std::vector<int16_t> audio = clean;
    preprocessor.process(audio.data(), audio.size());
    EXPECT_EQ(audio, clean) << "a quiet recording after a noisy one";
}

TEST(Preprocessor, APartFrameIsLeftAsItIs)
{
    std::vector<int16_t> audio(voice::Preprocessor::kFrameSamples + 7, 1000);
    voice::Preprocessor preprocessor;
    EXPECT_EQ(preprocessor.process(audio.data(), audio.size()), voice::Preprocessor::kFrameSamples);
    EXPECT_EQ(preprocessor.process(nullptr, 10), 0u);
}

}  // namespace
