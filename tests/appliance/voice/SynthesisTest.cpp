#include "voice/Voice.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

double rms(const std::vector<int16_t>& samples)
{
    double sum = 0;
    for (int16_t s : samples)
        sum += double(s) * s;
    return samples.empty() ? 0 : std::sqrt(sum / double(samples.size()));
}

TEST(Synthesis, TextIsSpokenAtTheRateAsked)
{
    voice::SpeechOptions options;
    std::vector<int16_t> mic, answer;
    std::string error;
    ASSERT_TRUE(voice::synthesize("set a timer for ten minutes", options, mic, error)) << error;
    options.sampleRate = 24000;
    ASSERT_TRUE(voice::synthesize("set a timer for ten minutes", options, answer, error)) << error;
    EXPECT_GT(mic.size(), 16000u / 2) << "half a second at least";
    EXPECT_LT(mic.size(), 16000u * 4);
    EXPECT_NEAR(double(answer.size()) / double(mic.size()), 1.5, 0.01) << "the same speech at 24 kHz";
    EXPECT_GT(rms(mic), 750.0) << "loud enough for the speech detector";
}

TEST(Synthesis, FasterSpeakingRateGivesShorterSpeech)
{
    voice::SpeechOptions slow, fast;
    slow.wordsPerMinute = 120;
    fast.wordsPerMinute = 300;
    std::vector<int16_t> a, b;
    std::string error;
    ASSERT_TRUE(voice::synthesize("how much time is left on the timer", slow, a, error)) << error;
    ASSERT_TRUE(voice::synthesize("how much time is left on the timer", fast, b, error)) << error;
    EXPECT_GT(a.size(), b.size() * 3 / 2);
}

TEST(Synthesis, BadRequestsAreRefusedWithTheReason)
{
    voice::SpeechOptions options;
    std::vector<int16_t> samples;
    std::string error;
    EXPECT_FALSE(voice::synthesize("  \n", options, samples, error));
    EXPECT_EQ(error, "there is no text to say");
    options.voice = "xx-nowhere";
    EXPECT_FALSE(voice::synthesize("hello", options, samples, error));
    EXPECT_EQ(error, "espeak-ng has no voice \"xx-nowhere\"");
    options.voice = "en-us";
    options.wordsPerMinute = 1000;
    EXPECT_FALSE(voice::synthesize("hello", options, samples, error));
    EXPECT_EQ(error, "the speaking rate must be 80 to 450 words a minute, not 1000");
    EXPECT_TRUE(samples.empty());
}

TEST(Resampling, KeepsTheDurationAndRefusesImpossibleRates)
{
    std::vector<int16_t> tone(16000), out;
    for (size_t i = 0; i < tone.size(); ++i)
        tone[i] = static_cast<int16_t>(8000 * std::sin(2 * M_PI * 440.0 * double(i) / 16000.0));
    std::string error;
    ASSERT_TRUE(voice::resample(tone, 16000, 24000, out, error)) << error;
    EXPECT_NEAR(double(out.size()), 24000.0, 2.0);
    EXPECT_NEAR(rms(out), rms(tone), rms(tone) * 0.02);
    EXPECT_FALSE(voice::resample(tone, 0, 24000, out, error));
    EXPECT_EQ(error, "sample rates must be positive");
}

}  // namespace
