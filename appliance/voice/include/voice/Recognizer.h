// Recognition of 16 kHz mono speech against a grammar, with pocketsphinx and
// its US English model. Audio is fed as it comes, through noise suppression
// when the room is noisy (Preprocessor.h); a partial hypothesis can
// be asked for at any time, and finish() gives the final one with a score
// that tells how much better the grammar explains the audio than a free
// loop of phones does. When speech pauses, settle() starts that final pass in
// the background, so that finish() can answer at once.
#ifndef VOICE_RECOGNIZER_H
#define VOICE_RECOGNIZER_H

#include "voice/Preprocessor.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

struct ps_decoder_s;

namespace voice {

struct Recognition {
    std::string text;     // the words of the best path; empty when no path of the grammar fits
    int score = 0;        // per 10 ms frame: grammar path minus free phone loop
    int wordScore = 0;    // per frame of the word that the phone loop explains best against it (0 at most)
    int frames = 0;       // frames decoded
    bool accepted = false;  // a text whose score reaches kMinScore and word score kMinWordScore
};

class Recognizer {
public:
    // The lowest score and word score that are accepted.
    static const int kMinScore;
    static const int kMinWordScore;
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
    // Speech has paused: the final pass starts in the background on the
    // utterance so far. finish() takes that pass's result unless resume()
    // came in between (speech went on: the pass is dropped). Neither waits.
    void settle();
    void resume();
    Recognition finish();
    // Ends an utterance without a result.
    void abandon();

private:
    void close();
    void startPass();
    // Ends the settled pass; its result stays in mSettledResult.
    void join();
    // The whole utterance at once and the phone loop's score of it.
    Recognition finalPass(const std::vector<int16_t>& audio);

    ps_decoder_s* mStream = nullptr;   // fed as audio comes, for partial results
    ps_decoder_s* mDecoder = nullptr;  // the final pass over the whole utterance
    ps_decoder_s* mLoop = nullptr;     // the free phone loop that scores it
    bool mInUtterance = false;
    Preprocessor mPreprocessor;
    std::vector<int16_t> mAudio;    // the utterance as preprocessed
    std::vector<int16_t> mPending;  // samples that wait for a whole frame of the preprocessor
    size_t mTaken = 0;              // samples of the utterance taken
    bool mSettled = false;
    bool mPassStarted = false;
    std::vector<int16_t> mSettledAudio;  // the utterance up to the settling
    std::thread mWorker;            // the settled pass, which alone uses mDecoder and mLoop while it runs
    std::atomic<bool> mPassDone{false};
    Recognition mSettledResult;
};

}  // namespace voice

#endif
