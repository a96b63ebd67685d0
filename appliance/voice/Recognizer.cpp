#include "voice/Recognizer.h"

#include <cmn.h>
#include <fe.h>
#include <feat.h>
#include <jsgf.h>
#include <pocketsphinx.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace voice {
namespace {

const char* const kGrammarSearch = "grammar";
const char* const kLoopSearch = "phones";
const size_t kChunk = 320;

// The phones of the model; each becomes a word of the free phone loop.
const char* const kPhones[] = {"AA", "AE", "AH", "AO", "AW", "AY", "B",  "CH", "D",  "DH", "EH", "ER", "EY",
                               "F",  "G",  "HH", "IH", "IY", "JH", "K",  "L",  "M",  "N",  "NG", "OW", "OY",
                               "P",  "R",  "S",  "SH", "T",  "TH", "UH", "UW", "V",  "W",  "Y",  "Z",  "ZH"};

std::string phoneWord(const char* phone)
{
    std::string word = "phone_";
    for (const char* p = phone; *p; ++p)
        word += static_cast<char>(*p - 'A' + 'a');
    return word;
}

// ps_set_jsgf_string of this pocketsphinx never frees the grammar it parses:
// the same steps here, with the grammar freed once its search is made.
int setJsgf(ps_decoder_t* decoder, const char* name, const char* text)
{
    jsgf_t* grammar = jsgf_parse_string(text, nullptr);
    if (!grammar)
        return -1;
    int result = -1;
    if (jsgf_rule_t* rule = jsgf_get_public_rule(grammar)) {
        const float lw = static_cast<float>(cmd_ln_float_r(ps_get_config(decoder), "-lw"));
        if (fsg_model_t* fsg = jsgf_build_fsg(grammar, rule, ps_get_logmath(decoder), lw)) {
            result = ps_set_fsg(decoder, name, fsg);
            fsg_model_free(fsg);
        }
    }
    jsgf_grammar_free(grammar);
    return result;
}

// A stretch of the best path: its frames and acoustic score.
struct Segment {
    int first = 0;
    int last = 0;
    int score = 0;
    bool word = false;  // a word of the grammar, not silence or noise
};

std::vector<Segment> bestPath(ps_decoder_t* decoder)
{
    std::vector<Segment> path;
    for (ps_seg_t* seg = ps_seg_iter(decoder); seg; seg = ps_seg_next(seg)) {
        Segment s;
        ps_seg_frames(seg, &s.first, &s.last);
        int32 lscr = 0, lback = 0;
        ps_seg_prob(seg, &s.score, &lscr, &lback);
        const char* word = ps_seg_word(seg);
        s.word = word && *word && *word != '<' && *word != '[' && *word != '(';
        if (s.last >= s.first)
            path.push_back(s);
    }
    return path;
}

// The score of the frames first..last on `path`, a stretch cut short taking
// its share by frames.
long long scoreOver(const std::vector<Segment>& path, int first, int last)
{
    long long sum = 0;
    for (const Segment& s : path) {
        const int from = std::max(first, s.first), to = std::min(last, s.last);
        if (from <= to)
            sum += static_cast<long long>(s.score) * (to - from + 1) / (s.last - s.first + 1);
    }
    return sum;
}

// Makes the decoder's running cepstral mean that of `audio`, for its next
// utterance: the result then depends on that audio alone. (pocketsphinx's
// mean over a whole utterance at once, its batch mode, leaves the grammar's
// search with no path to the end: "Final result does not match the grammar".)
void takeMeanOf(ps_decoder_t* decoder, const std::vector<int16_t>& audio)
{
    fe_t* fe = ps_get_fe(decoder);
    feat_t* feat = ps_get_feat(decoder);
    if (!fe || !feat || !feat->cmn_struct || audio.empty())
        return;
    const int size = fe_get_output_size(fe);
    if (size <= 0)
        return;
    const int32 kFrames = 64;
    mfcc_t** cepstra = static_cast<mfcc_t**>(ckd_calloc_2d(kFrames, size, sizeof(mfcc_t)));
    std::vector<double> sum(size, 0.0);
    long count = 0;
    auto add = [&](int32 frames) {
        for (int32 f = 0; f < frames; ++f) {
            // Frames of no energy (digital silence) are left out, as the
            // decoder's own running mean leaves them out.
            if (cepstra[f][0] < 0)
                continue;
            ++count;
            for (int i = 0; i < size; ++i)
                sum[i] += MFCC2FLOAT(cepstra[f][i]);
        }
    };
    const int16* samples = audio.data();
    size_t left = audio.size();
    fe_start_utt(fe);
    while (left > 0) {
        int32 frames = kFrames;
        if (fe_process_frames(fe, &samples, &left, cepstra, &frames, nullptr) < 0 || frames == 0)
            break;
        add(frames);
    }
    int32 tail = 0;
    fe_end_utt(fe, cepstra[0], &tail);
    add(tail);
    ckd_free_2d(cepstra);
    if (count == 0)
        return;
    std::vector<mfcc_t> mean(size);
    for (int i = 0; i < size; ++i)
        mean[i] = FLOAT2MFCC(sum[i] / count);
    feat->cmn = CMN_LIVE;
    cmn_live_set(feat->cmn_struct, mean.data());
}

bool readable(const std::string& path)
{
    std::ifstream in(path);
    return in.good();
}

}  // namespace

const int Recognizer::kMinScore = -12;
const int Recognizer::kMinWordScore = -40;
const size_t Recognizer::kMaxSamples = 20 * 16000;

Recognizer::Recognizer() {}

Recognizer::~Recognizer()
{
    close();
}

void Recognizer::close()
{
    join();
    for (ps_decoder_t** d : {&mStream, &mDecoder, &mLoop}) {
        if (*d)
            ps_free(*d);
        *d = nullptr;
    }
    mInUtterance = false;
}

bool Recognizer::open(std::string& error, const std::string& modelDir)
{
    if (mDecoder)
        return true;
    std::string dir = modelDir;
    if (dir.empty()) {
        const char* env = std::getenv("MARL_SPEECH_MODEL");
        dir = env && *env ? env : VOICE_MODEL_DIR;
    }
    const std::string hmm = dir + "/en-us";
    const std::string dict = dir + "/cmudict-en-us.dict";
    if (!readable(hmm + "/mdef") || !readable(dict)) {
        error = "no pocketsphinx US English model in " + dir +
                " (want en-us/ and cmudict-en-us.dict; Debian's pocketsphinx-en-us has them)";
        return false;
    }
    // The grammar's decoders search widely; the phone loop only scores the
    // audio, so a narrow search does. Each decoder has a configuration of
    // its own: pocketsphinx writes the model's parameters into it.
    auto decoder = [&](bool loop) -> ps_decoder_t* {
        cmd_ln_t* config =
            loop ? cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", hmm.c_str(), "-dict", dict.c_str(), "-logfn",
                               "/dev/null", "-remove_noise", "no", "-beam", "1e-20", "-pbeam", "1e-20", "-wbeam",
                               "1e-20", nullptr)
                 : cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", hmm.c_str(), "-dict", dict.c_str(), "-logfn",
                               "/dev/null", "-remove_noise", "no", "-wbeam", "1e-40", nullptr);
        ps_decoder_t* made = config ? ps_init(config) : nullptr;
        cmd_ln_free_r(config);
        return made;
    };
    mStream = decoder(false);
    mDecoder = decoder(false);
    mLoop = decoder(true);
    if (!mStream || !mDecoder || !mLoop) {
        close();
        error = "pocketsphinx could not load the model in " + dir;
        return false;
    }
    std::string loop = "#JSGF V1.0;\ngrammar phones;\npublic <phones> = (";
    for (size_t i = 0; i < sizeof kPhones / sizeof kPhones[0]; ++i) {
        const std::string word = phoneWord(kPhones[i]);
        ps_add_word(mLoop, word.c_str(), kPhones[i], FALSE);
        loop += (i ? " | " : "") + word;
    }
    loop += ")+;\n";
    if (setJsgf(mLoop, kLoopSearch, loop.c_str()) < 0 || ps_set_search(mLoop, kLoopSearch) < 0) {
        error = "pocketsphinx refused the phone loop";
        close();
        return false;
    }
    return true;
}

bool Recognizer::knows(const std::string& word)
{
    if (!mDecoder || word.empty() || word.compare(0, 6, "phone_") == 0)
        return false;
    char* phones = ps_lookup_word(mStream, word.c_str());
    const bool found = phones != nullptr;
    ckd_free(phones);
    return found;
}

bool Recognizer::setGrammar(const std::string& jsgf, std::string& error)
{
    if (!mDecoder) {
        error = "the recognizer is not open";
        return false;
    }
    if (mInUtterance)
        abandon();
    join();
    if (setJsgf(mStream, kGrammarSearch, jsgf.c_str()) < 0 || ps_set_search(mStream, kGrammarSearch) < 0 ||
        setJsgf(mDecoder, kGrammarSearch, jsgf.c_str()) < 0 || ps_set_search(mDecoder, kGrammarSearch) < 0) {
        error = "pocketsphinx refused the grammar";
        return false;
    }
    return true;
}

void Recognizer::start()
{
    if (!mDecoder)
        return;
    if (mInUtterance)
        abandon();
    mAudio.clear();
    mPending.clear();
    mTaken = 0;
    mPreprocessor.reset();
    if (ps_start_utt(mStream) < 0)
        return;
    mInUtterance = true;
}

void Recognizer::feed(const int16_t* samples, size_t count)
{
    if (!mInUtterance || !samples)
        return;
    if (mTaken + count > kMaxSamples)
        count = kMaxSamples - mTaken;
    if (count == 0)
        return;
    mTaken += count;
    mPending.insert(mPending.end(), samples, samples + count);
    const size_t done = mPreprocessor.process(mPending.data(), mPending.size());
    mAudio.insert(mAudio.end(), mPending.begin(), mPending.begin() + static_cast<std::ptrdiff_t>(done));
    ps_process_raw(mStream, mPending.data(), done, FALSE, FALSE);
    mPending.erase(mPending.begin(), mPending.begin() + static_cast<std::ptrdiff_t>(done));
    startPass();
}

std::string Recognizer::partial()
{
    if (!mInUtterance)
        return "";
    int32 score = 0;
    const char* hyp = ps_get_hyp(mStream, &score);
    return hyp ? hyp : "";
}

void Recognizer::settle()
{
    if (!mInUtterance || mSettled)
        return;
    mSettled = true;
    mSettledAudio = mAudio;
    mSettledAudio.insert(mSettledAudio.end(), mPending.begin(), mPending.end());
    startPass();
}

// Starts the settled pass unless a dropped one still runs (then the next
// audio tries again): one pass at a time, and the caller never waits. The
// pass covers the audio up to the settling whenever it starts.
void Recognizer::startPass()
{
    if (!mSettled || mPassStarted || (mWorker.joinable() && !mPassDone))
        return;
    join();
    mPassStarted = true;
    mPassDone = false;
    // The pass owns the audio from here: a later settle() fills
    // mSettledAudio anew, and finish() needs it only for a pass not started.
    mWorker = std::thread([this, audio = std::move(mSettledAudio)] {
        mSettledResult = finalPass(audio);
        mPassDone = true;
    });
}

void Recognizer::resume()
{
    mSettled = mPassStarted = false;
}

void Recognizer::join()
{
    if (mWorker.joinable())
        mWorker.join();
}

void Recognizer::abandon()
{
    join();
    if (mInUtterance)
        ps_end_utt(mStream);
    mInUtterance = mSettled = mPassStarted = false;
    mAudio.clear();
    mPending.clear();
}

Recognition Recognizer::finish()
{
    Recognition result;
    if (!mInUtterance)
        return result;
    ps_end_utt(mStream);
    join();
    if (mSettled && mPassStarted) {
        result = mSettledResult;
    } else if (mSettled) {
        result = finalPass(mSettledAudio);
    } else {
        // Less than a frame of the preprocessor is left: it goes on as it came.
        mAudio.insert(mAudio.end(), mPending.begin(), mPending.end());
        result = finalPass(mAudio);
    }
    mInUtterance = mSettled = mPassStarted = false;
    mAudio.clear();
    mPending.clear();
    return result;
}

// The whole utterance at once, its cepstral mean taken over itself, so that
// the result does not depend on earlier audio.
Recognition Recognizer::finalPass(const std::vector<int16_t>& audio)
{
    Recognition result;
    int32 score = 0;
    const char* hyp = nullptr;
    takeMeanOf(mDecoder, audio);
    if (!audio.empty() && ps_start_utt(mDecoder) == 0) {
        ps_process_raw(mDecoder, audio.data(), audio.size(), FALSE, TRUE);
        ps_end_utt(mDecoder);
        hyp = ps_get_hyp(mDecoder, &score);
    }
    result.text = hyp ? hyp : "";
    result.frames = ps_get_n_frames(mDecoder);
    if (result.text.empty() || result.frames <= 0)
        return result;
    const std::vector<Segment> words = bestPath(mDecoder);
    // The same audio through the free phone loop: the better the loop
    // explains it, the less the grammar's words are to be trusted.
    int32 loopScore = score;
    std::vector<Segment> phones;
    if (ps_start_utt(mLoop) == 0) {
        ps_process_raw(mLoop, audio.data(), audio.size(), FALSE, TRUE);
        ps_end_utt(mLoop);
        if (ps_get_hyp(mLoop, &loopScore))
            phones = bestPath(mLoop);
        else
            loopScore = score;
    }
    result.score = (score - loopScore) / result.frames;
    // Word by word too: speech outside the grammar is often taken for a
    // request whose other words fit ("set a timer for ten minute" for "set a
    // reminder for ten minutes"), and the word forced over the unknown ones
    // fits far worse than the loop does over the same frames.
    result.wordScore = 0;
    for (const Segment& w : words) {
        if (!w.word || phones.empty())
            continue;
        const int frames = w.last - w.first + 1;
        const long long gap = w.score - scoreOver(phones, w.first, w.last);
        result.wordScore = std::min(result.wordScore, static_cast<int>(gap / frames));
    }
    result.accepted = result.score >= kMinScore && result.wordScore >= kMinWordScore;
    return result;
}

}  // namespace voice
