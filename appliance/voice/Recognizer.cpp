#include "voice/Recognizer.h"

#include <jsgf.h>
#include <pocketsphinx.h>

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

bool readable(const std::string& path)
{
    std::ifstream in(path);
    return in.good();
}

}  // namespace

const int Recognizer::kMinScore = -15;
const size_t Recognizer::kMaxSamples = 20 * 16000;

Recognizer::Recognizer() {}

Recognizer::~Recognizer()
{
    close();
}

void Recognizer::close()
{
    if (mDecoder)
        ps_free(mDecoder);
    if (mLoop)
        ps_free(mLoop);
    mDecoder = mLoop = nullptr;
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
    // The grammar decoder searches widely; the phone loop only scores the
    // audio, so a narrow search does.
    cmd_ln_t* config = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", hmm.c_str(), "-dict", dict.c_str(), "-logfn",
                                   "/dev/null", "-remove_noise", "no", "-wbeam", "1e-40", nullptr);
    cmd_ln_t* loopConfig = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", hmm.c_str(), "-dict", dict.c_str(),
                                       "-logfn", "/dev/null", "-remove_noise", "no", "-beam", "1e-20", "-pbeam",
                                       "1e-20", "-wbeam", "1e-20", nullptr);
    if (!config || !loopConfig) {
        cmd_ln_free_r(config);
        cmd_ln_free_r(loopConfig);
        error = "pocketsphinx refused its configuration";
        return false;
    }
    mDecoder = ps_init(config);
    mLoop = ps_init(loopConfig);
    cmd_ln_free_r(config);
    cmd_ln_free_r(loopConfig);
    if (!mDecoder || !mLoop) {
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
    char* phones = ps_lookup_word(mDecoder, word.c_str());
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
    if (setJsgf(mDecoder, kGrammarSearch, jsgf.c_str()) < 0 ||
        ps_set_search(mDecoder, kGrammarSearch) < 0) {
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
    if (ps_start_utt(mDecoder) < 0)
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
    ps_process_raw(mDecoder, mPending.data(), done, FALSE, FALSE);
    mPending.erase(mPending.begin(), mPending.begin() + static_cast<std::ptrdiff_t>(done));
}

std::string Recognizer::partial()
{
    if (!mInUtterance)
        return "";
    int32 score = 0;
    const char* hyp = ps_get_hyp(mDecoder, &score);
    return hyp ? hyp : "";
}

void Recognizer::abandon()
{
    if (mInUtterance)
        ps_end_utt(mDecoder);
    mInUtterance = false;
    // Less than a frame of the preprocessor is left: it goes on as it came.
    mAudio.insert(mAudio.end(), mPending.begin(), mPending.end());
    mAudio.clear();
    mPending.clear();
}

Recognition Recognizer::finish()
{
    Recognition result;
    if (!mInUtterance)
        return result;
    ps_end_utt(mDecoder);
    mInUtterance = false;
    // Less than a frame of the preprocessor is left: it goes on as it came.
    mAudio.insert(mAudio.end(), mPending.begin(), mPending.end());
    // The final pass: the whole utterance at once, its cepstral mean taken
    // over itself, so that the result does not depend on earlier audio.
    int32 score = 0;
    const char* hyp = nullptr;
    if (!mAudio.empty() && ps_start_utt(mDecoder) == 0) {
        ps_process_raw(mDecoder, mAudio.data(), mAudio.size(), FALSE, TRUE);
        ps_end_utt(mDecoder);
        hyp = ps_get_hyp(mDecoder, &score);
    }
    result.text = hyp ? hyp : "";
    result.frames = ps_get_n_frames(mDecoder);
    if (!result.text.empty() && result.frames > 0) {
        // The same audio through the free phone loop: the better the loop
        // explains it, the less the grammar's words are to be trusted.
        int32 loopScore = score;
        if (ps_start_utt(mLoop) == 0) {
            ps_process_raw(mLoop, mAudio.data(), mAudio.size(), FALSE, TRUE);
            ps_end_utt(mLoop);
            if (!ps_get_hyp(mLoop, &loopScore))
                loopScore = score;
        }
        result.score = (score - loopScore) / result.frames;
        result.accepted = result.score >= kMinScore;
    }
    mAudio.clear();
    mPending.clear();
    return result;
}

}  // namespace voice
