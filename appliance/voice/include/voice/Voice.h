// Speech synthesis for the virtual appliance: espeak-ng speaks a text, and
// libsamplerate brings the result to the rate that the caller needs (16 kHz
// for a microphone, 24 kHz for the speech service's answers).
#ifndef VOICE_VOICE_H
#define VOICE_VOICE_H

#include <cstdint>
#include <string>
#include <vector>

namespace voice {

struct SpeechOptions {
    std::string voice = "en-us";   // an espeak-ng voice name, e.g. "en-us", "en", "en-us+klatt"
    int wordsPerMinute = 175;      // espeak-ng accepts 80 to 450
    int sampleRate = 16000;        // of the samples returned
};

// Mono 16-bit samples of `text` spoken with `options`. False, with the reason
// in `error`, for an empty text, an unknown voice, a rate out of range, or
// espeak-ng or its data missing. Safe to call from any thread.
bool synthesize(const std::string& text, const SpeechOptions& options, std::vector<int16_t>& samples,
                std::string& error);

// Resamples mono 16-bit audio with libsamplerate.
bool resample(const std::vector<int16_t>& in, int inRate, int outRate, std::vector<int16_t>& out,
              std::string& error);

}  // namespace voice

#endif
