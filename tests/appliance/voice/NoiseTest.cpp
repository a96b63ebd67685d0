#include "voice/Noise.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// The power of the noise as mixed: the mixture minus the clean samples.
double addedPower(const std::vector<int16_t>& clean, const std::vector<int16_t>& mixed)
{
    std::vector<int16_t> difference(clean.size());
    for (size_t i = 0; i < clean.size(); ++i)
        difference[i] = static_cast<int16_t>(mixed[i] - clean[i]);
    return voice::meanPower(difference.data(), difference.size());
}

std::vector<int16_t> tone(size_t count)
{
    std::vector<int16_t> out(count);
    for (size_t i = 0; i < count; ++i)
        out[i] = static_cast<int16_t>(std::lround(3000.0 * std::sin(2 * M_PI * 440.0 * double(i) / 16000.0)));
    return out;
}

TEST(Noise, NoiseIsMixedAtTheSignalToNoiseRatioAsked)
{
    const std::vector<int16_t> clean = tone(32000);
    const double power = voice::meanPower(clean.data(), clean.size());
    for (double snrDb : {10.0, 5.0}) {
        std::vector<int16_t> mixed = clean;
        voice::addNoise(mixed, voice::pinkNoise(mixed.size(), 3), 0, power, snrDb);
        EXPECT_NEAR(10.0 * std::log10(power / addedPower(clean, mixed)), snrDb, 0.2) << snrDb << " dB";
    }
}

TEST(Noise, PinkNoiseHasMorePowerLowThanHigh)
{
    const std::vector<float> noise = voice::pinkNoise(64000, 7);
    // A first difference passes mostly high frequencies; a sum of neighbours mostly low ones.
    double low = 0, high = 0;
    for (size_t i = 1; i < noise.size(); ++i) {
        low += double(noise[i] + noise[i - 1]) * (noise[i] + noise[i - 1]);
        high += double(noise[i] - noise[i - 1]) * (noise[i] - noise[i - 1]);
    }
    EXPECT_GT(low, 4 * high);
    EXPECT_EQ(voice::pinkNoise(100, 7), voice::pinkNoise(100, 7)) << "the same seed, the same noise";
    EXPECT_NE(voice::pinkNoise(100, 7), voice::pinkNoise(100, 8));
}

TEST(Noise, NoiseWrapsAroundFromItsOffsetAndSumsAreClipped)
{
    std::vector<int16_t> audio = {32000, 0, 0, -32000};
    const std::vector<float> noise = {1, -1};
    // Speech power 1 at 0 dB: the noise is added as it is.
    voice::addNoise(audio, noise, 1, 1.0, 0.0);
    EXPECT_EQ(audio, (std::vector<int16_t>{31999, 1, -1, -31999}));
    std::vector<int16_t> loud = {32767, -32768};
    voice::addNoise(loud, {1000, -1000}, 0, 1e6, 0.0);
    EXPECT_EQ(loud, (std::vector<int16_t>{32767, -32768}));
}

}  // namespace
