// Recognition of 16 kHz mono speech against a grammar, with pocketsphinx and
// its US English model. Audio is fed as it comes, through noise suppression
// when the room is noisy (Preprocessor.h); a partial hypothesis can
// be asked for at any time, and finish() gives the final one with a score
// that tells how much better the grammar explains the audio than a free
// loop of phones does.
#ifndef VOICE_RECOGNIZER_H
#define VOICE_RECOGNIZER_H

#include "voice/Preprocessor.h"

#include <cstdint>
#include <string>
#include <vector>

struct ps_decoder_s;

namespace voice {

struct Recognition {
    std::string text;     // the words of the best path; empty when no path of the grammar fits
    int score = 0;        // per 10 ms frame: grammar path minus free phone loop
    int frames = 0;       // frames decoded
    bool accepted = false;  // a text whose score reaches kMinScore
};

class Recognizer {
public:
    // The lowest score that is accepted.
    static const int kMinScore;
    // At most this much audio of one utterance is recognized.
    static const size_t kMaxSamples;

    Recognizer();
    ~Recognizer();
    Recognizer(const Recognizer&) = delete;
    Recognizer& operator=(const Recognizer&) = delete;

    // Loads the acoustic model and dictionary from `modelDir` (empty: the
    // environment's MARL_SPEECH_MODEL, else the installed pocketsphinx
    // en-us model). False, with the reason, when they cannot be loaded.
    bool open(std::string& error, const std::string& modelDir = "");
    bool isOpen() const { return mDecoder != nullptr; }

    // True when the dictionary has a pronunciation of `word`.
    bool knows(const std::string& word);

    // Makes `jsgf` the grammar of the next utterances.
    bool setGrammar(const std::string& jsgf, std::string& error);

    void start();
    void feed(const int16_t* samples, size_t count);
    std::string partial();
    Recognition finish();
    // Ends an utterance without a result.
    void abandon();

private:
    void close();

    ps_decoder_s* mDecoder = nullptr;
    ps_decoder_s* mLoop = nullptr;
    bool mInUtterance = false;
    Preprocessor mPreprocessor;
    std::vector<int16_t> mAudio;    // the utterance as preprocessed
    std::vector<int16_t> mPending;  // samples that wait for a whole frame of the preprocessor
    size_t mTaken = 0;              // samples of the utterance taken
};

}  // namespace voice

#endif
