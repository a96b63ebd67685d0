// What a microphone path does before recognition in a noisy room: noise
// suppression by speexdsp's preprocessor, on 16 kHz mono audio in frames of
// 10 ms. Audio whose quietest stretch so far is quiet passes unchanged.
#ifndef VOICE_PREPROCESSOR_H
#define VOICE_PREPROCESSOR_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <random>

struct SpeexPreprocessState_;

namespace voice {

class Preprocessor {
public:
    static constexpr size_t kFrameSamples = 160;

    Preprocessor();
    ~Preprocessor();
    Preprocessor(const Preprocessor&) = delete;
    Preprocessor& operator=(const Preprocessor&) = delete;

    // Forgets what it learnt of the noise and of the level: the next audio
    // is processed as the start of a recording.
    void reset();

    // Processes `count` samples in place; only whole frames are processed,
    // a rest of fewer than kFrameSamples is left as it is. Returns the
    // number of samples processed.
    size_t process(int16_t* samples, size_t count);

private:
    SpeexPreprocessState_* mState = nullptr;
    std::minstd_rand mDither;
    std::deque<double> mPowers;  // of the last frames
    double mFloor = -1;          // the lowest mean power of kFloorFrames frames so far; -1: not yet known
};

}  // namespace voice

#endif
