#include "voice/Noise.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace voice {

std::vector<float> pinkNoise(size_t count, unsigned seed)
{
    // Paul Kellet's filter: seven first-order sections.
    std::mt19937 random(seed);
    std::normal_distribution<double> white(0.0, 1.0);
    double b0 = 0, b1 = 0, b2 = 0, b3 = 0, b4 = 0, b5 = 0, b6 = 0;
    std::vector<float> out(count);
    for (float& sample : out) {
        const double w = white(random);
        b0 = 0.99886 * b0 + w * 0.0555179;
        b1 = 0.99332 * b1 + w * 0.0750759;
        b2 = 0.96900 * b2 + w * 0.1538520;
        b3 = 0.86650 * b3 + w * 0.3104856;
        b4 = 0.55000 * b4 + w * 0.5329522;
        b5 = -0.7616 * b5 - w * 0.0168980;
        sample = static_cast<float>(b0 + b1 + b2 + b3 + b4 + b5 + b6 + w * 0.5362);
        b6 = w * 0.115926;
    }
    return out;
}

double meanPower(const int16_t* samples, size_t count)
{
    double sum = 0;
    for (size_t i = 0; i < count; ++i)
        sum += double(samples[i]) * samples[i];
    return count ? sum / double(count) : 0.0;
}

void addNoise(std::vector<int16_t>& audio, const std::vector<float>& noise, size_t offset, double speechPower,
              double snrDb)
{
    if (noise.empty() || audio.empty())
        return;
    double noisePower = 0;
    for (float x : noise)
        noisePower += double(x) * x;
    noisePower /= double(noise.size());
    if (noisePower <= 0)
        return;
    const double gain = std::sqrt(speechPower / std::pow(10.0, snrDb / 10.0) / noisePower);
    for (size_t i = 0; i < audio.size(); ++i) {
        const double sum = audio[i] + gain * noise[(offset + i) % noise.size()];
        audio[i] = static_cast<int16_t>(std::clamp(std::lround(sum), -32768L, 32767L));
    }
}

}  // namespace voice
