// The speech stand-in's detector of the start and end of speech in a turn.
#pragma once

#include <cmath>
#include <vector>

namespace standin {

// Speech detector: a chunk is loud when the RMS of its samples is above the
// configured threshold. Speech begins after this much loud audio in a row and
// ends after this much quiet audio in a row once it has begun.
const int kBeginMs = 60;
const int kEndMs = 300;
// Speech has paused after this much quiet audio: the recognizer can start its
// final pass, which the end of speech is likely to follow.
const int kPauseMs = 100;

class SpeechDetector {
public:
    enum Event { None, Begin, End };

    void reset(int threshold, int sampleRate)
    {
        if (sampleRate <= 0)
            sampleRate = 16000;
        mThreshold = threshold;
        mBeginSamples = static_cast<long>(sampleRate) * kBeginMs / 1000;
        mEndSamples = static_cast<long>(sampleRate) * kEndMs / 1000;
        mPauseSamples = static_cast<long>(sampleRate) * kPauseMs / 1000;
        mLoud = mQuiet = 0;
        mBegun = mEnded = false;
    }

    bool begun() const { return mBegun; }
    bool ended() const { return mEnded; }
    // Speech began and the audio since has been quiet for kPauseMs or more.
    bool paused() const { return mBegun && mQuiet >= mPauseSamples; }

    Event feed(const std::vector<short>& samples, int& rms)
    {
        double sum = 0.0;
        for (short s : samples)
            sum += static_cast<double>(s) * s;
        rms = samples.empty() ? 0 : static_cast<int>(std::sqrt(sum / samples.size()));
        const long count = static_cast<long>(samples.size());
        const bool loud = rms > mThreshold;
        if (mEnded)
            return None;
        if (!mBegun) {
            mLoud = loud ? mLoud + count : 0;
            if (mLoud < mBeginSamples)
                return None;
            mBegun = true;
            return Begin;
        }
        mQuiet = loud ? 0 : mQuiet + count;
        if (mQuiet < mEndSamples)
            return None;
        mEnded = true;
        return End;
    }

private:
    int mThreshold = 750;
    long mBeginSamples = 960;
    long mEndSamples = 4800;
    long mPauseSamples = 1600;
    long mLoud = 0;
    long mQuiet = 0;
    bool mBegun = false;
    bool mEnded = false;
};

}  // namespace standin
