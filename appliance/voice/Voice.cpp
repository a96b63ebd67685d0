#include "voice/Voice.h"

#include <espeak-ng/espeak_ng.h>
#include <samplerate.h>

#include <csignal>
#include <mutex>

#include <pthread.h>

namespace voice {
namespace {

// espeak-ng keeps one global state: one synthesis at a time, in the whole
// process (this library is shared by everything that speaks).
std::mutex gMutex;
bool gTried = false;
std::string gInitError;
int gEspeakRate = 0;

std::string statusText(espeak_ng_STATUS status)
{
    char buffer[512] = {0};
    espeak_ng_GetStatusCodeMessage(status, buffer, sizeof buffer);
    return buffer;
}

int collect(short* wav, int count, espeak_EVENT* events)
{
    if (wav && count > 0 && events && events->user_data) {
        auto* out = static_cast<std::vector<int16_t>*>(events->user_data);
        out->insert(out->end(), wav, wav + count);
    }
    return 0;
}

bool initialize(std::string& error)
{
    if (!gTried) {
        gTried = true;
        // The thread espeak-ng starts takes no signals: a signal of the
        // process (a child's end) goes to a thread of its own, where the
        // main loop's handler expects it.
        sigset_t all;
        sigset_t previous;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &previous);
        espeak_ng_InitializePath(nullptr);
        espeak_ng_ERROR_CONTEXT context = nullptr;
        espeak_ng_STATUS status = espeak_ng_Initialize(&context);
        if (status != ENS_OK) {
            gInitError = "espeak-ng cannot start: " + statusText(status);
            espeak_ng_ClearErrorContext(&context);
        } else if ((status = espeak_ng_InitializeOutput(ENOUTPUT_MODE_SYNCHRONOUS, 0, nullptr)) != ENS_OK) {
            gInitError = "espeak-ng has no output: " + statusText(status);
        } else {
            espeak_SetSynthCallback(collect);
            gEspeakRate = espeak_ng_GetSampleRate();
        }
        pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    }
    error = gInitError;
    return gInitError.empty();
}

}  // namespace

bool resample(const std::vector<int16_t>& in, int inRate, int outRate, std::vector<int16_t>& out,
              std::string& error)
{
    if (inRate <= 0 || outRate <= 0) {
        error = "sample rates must be positive";
        return false;
    }
    if (inRate == outRate || in.empty()) {
        out = in;
        return true;
    }
    std::vector<float> input(in.size());
    src_short_to_float_array(in.data(), input.data(), static_cast<int>(in.size()));
    const double ratio = double(outRate) / double(inRate);
    std::vector<float> output(static_cast<size_t>(double(in.size()) * ratio) + 64);
    SRC_DATA data = {};
    data.data_in = input.data();
    data.input_frames = static_cast<long>(input.size());
    data.data_out = output.data();
    data.output_frames = static_cast<long>(output.size());
    data.src_ratio = ratio;
    const int status = src_simple(&data, SRC_SINC_MEDIUM_QUALITY, 1);
    if (status != 0) {
        error = std::string("libsamplerate: ") + src_strerror(status);
        return false;
    }
    out.resize(static_cast<size_t>(data.output_frames_gen));
    src_float_to_short_array(output.data(), out.data(), static_cast<int>(out.size()));
    return true;
}

bool synthesize(const std::string& text, const SpeechOptions& options, std::vector<int16_t>& samples,
                std::string& error)
{
    samples.clear();
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
        error = "there is no text to say";
        return false;
    }
    if (options.wordsPerMinute < 80 || options.wordsPerMinute > 450) {
        error = "the speaking rate must be 80 to 450 words a minute, not " +
                std::to_string(options.wordsPerMinute);
        return false;
    }
    std::vector<int16_t> spoken;
    int espeakRate = 0;
    {
        std::lock_guard<std::mutex> lock(gMutex);
        if (!initialize(error))
            return false;
        espeak_ng_STATUS status = espeak_ng_SetVoiceByName(options.voice.c_str());
        if (status != ENS_OK) {
            error = "espeak-ng has no voice \"" + options.voice + "\"";
            return false;
        }
        espeak_ng_SetParameter(espeakRATE, options.wordsPerMinute, 0);
        status = espeak_ng_Synthesize(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8,
                                      nullptr, &spoken);
        if (status == ENS_OK)
            status = espeak_ng_Synchronize();
        if (status != ENS_OK) {
            error = "espeak-ng could not speak the text: " + statusText(status);
            return false;
        }
        espeakRate = gEspeakRate;
    }
    if (spoken.empty()) {
        error = "espeak-ng gave no audio for the text";
        return false;
    }
    return resample(spoken, espeakRate, options.sampleRate, samples, error);
}

}  // namespace voice
