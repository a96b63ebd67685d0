#include "voice/Preprocessor.h"

#include <speex/speex_preprocess.h>

#include <algorithm>
#include <cstring>

namespace voice {
namespace {

const int kSampleRate = 16000;
// The noise of a microphone: uniform, at most this many steps either way,
// so that the preprocessor never sees digital silence.
const int kDither = 10;
// The quietest 100 ms so far measure the noise.
const size_t kFloorFrames = 10;
// From this noise level (RMS) up, the preprocessor's output is used; below
// it, the audio goes on as it came.
const double kNoisyFloor = 100.0;
const spx_int32_t kSuppressionDb = -15;

}  // namespace

Preprocessor::Preprocessor()
{
    reset();
}

Preprocessor::~Preprocessor()
{
    if (mState)
        speex_preprocess_state_destroy(mState);
}

void Preprocessor::reset()
{
    if (mState)
        speex_preprocess_state_destroy(mState);
    mState = speex_preprocess_state_init(static_cast<int>(kFrameSamples), kSampleRate);
    mDither.seed(1);
    mPowers.clear();
    mFloor = -1;
    if (!mState)
        return;
    spx_int32_t on = 1, suppression = kSuppressionDb;
    speex_preprocess_ctl(mState, SPEEX_PREPROCESS_SET_DENOISE, &on);
    speex_preprocess_ctl(mState, SPEEX_PREPROCESS_SET_NOISE_SUPPRESS, &suppression);
}

size_t Preprocessor::process(int16_t* samples, size_t count)
{
    const size_t whole = count - count % kFrameSamples;
    if (!mState || !samples)
        return whole;
    std::uniform_int_distribution<int> dither(-kDither, kDither);
    int16_t processed[kFrameSamples];
    for (size_t i = 0; i < whole; i += kFrameSamples) {
        int16_t* frame = samples + i;
        double power = 0;
        for (size_t k = 0; k < kFrameSamples; ++k) {
            power += double(frame[k]) * frame[k];
            processed[k] = static_cast<int16_t>(std::clamp(frame[k] + dither(mDither), -32768, 32767));
        }
        mPowers.push_back(power / kFrameSamples);
        if (mPowers.size() > kFloorFrames)
            mPowers.pop_front();
        if (mPowers.size() == kFloorFrames) {
            double window = 0;
            for (double p : mPowers)
                window += p;
            window /= kFloorFrames;
            mFloor = mFloor < 0 ? window : std::min(mFloor, window);
        }
        // The preprocessor runs on every frame, so that it knows the noise
        // when its output comes to be used.
        speex_preprocess_run(mState, processed);
        if (mFloor >= kNoisyFloor * kNoisyFloor)
            std::memcpy(frame, processed, sizeof processed);
    }
    return whole;
}

}  // namespace voice
