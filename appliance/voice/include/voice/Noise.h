// A kitchen's noise for trying the ears: pink noise (an extractor fan) and
// speech from elsewhere (a radio), mixed with speech at a signal-to-noise
// ratio. Used by the accuracy benchmark and the tests.
#ifndef VOICE_NOISE_H
#define VOICE_NOISE_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace voice {

// Pink noise: Gaussian white noise through a filter whose power falls by
// 3 dB an octave. The same seed gives the same noise.
std::vector<float> pinkNoise(size_t count, unsigned seed);

// The mean power of samples.
double meanPower(const int16_t* samples, size_t count);

// Adds `noise`, scaled so that `speechPower` is `snrDb` above the noise's own
// mean power, to every sample of `audio`, starting `offset` samples into the
// noise and wrapping around at its end. Sums are clipped to 16 bits.
void addNoise(std::vector<int16_t>& audio, const std::vector<float>& noise, size_t offset, double speechPower,
              double snrDb);

}  // namespace voice

#endif
