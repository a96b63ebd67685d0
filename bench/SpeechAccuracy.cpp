// How well the virtual appliance hears: utterances of registered commands and
// of the speech service's requests are synthesized with espeak-ng in two
// voices at two speaking rates, recognized as the speech stand-in recognizes
// them, and counted as heard right when the recognizer gives the intended
// command, or a request with the intended intent and values. Also reports
// how much faster than real time recognition runs, and how many utterances
// outside the grammar are rejected.
//
//   build/bin/marl-speech-benchmark [--benchmark_filter=...]
//
// Exits with 1 when a target is missed: at least 95 % heard right, and
// recognition at least 5 times faster than real time in processor time
// (the time on the clock is printed too).
#include "voice/Dialogue.h"
#include "voice/Grammar.h"
#include "voice/Recognizer.h"
#include "voice/Requests.h"
#include "voice/Voice.h"

#include <benchmark/benchmark.h>

#include <time.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace {

const double kTargetShare = 0.95;
const double kTargetSpeedUp = 5.0;

// The kitchen's registered commands.
const std::vector<voice::Command> kCommands = {
    {"show recipes", 0},          {"open the fridge camera", 0}, {"bluetooth off", 0},
    {"show the shopping list", 0}, {"turn on the ice maker", 0}, {"lock the screen", 1},
    {"go back", 2},               {"set the fridge to", 3},      {"set the freezer to", 3},
    {"#org.tizen.Timer", 5},
};

// Spoken commands, with the command each is to be heard as (a prefix command
// is heard right whatever words follow it, as the plug-in matches it).
const std::vector<std::pair<std::string, std::string>> kCommandUtterances = {
    {"show recipes", "show recipes"},
    {"open the fridge camera", "open the fridge camera"},
    {"bluetooth off", "bluetooth off"},
    {"show the shopping list", "show the shopping list"},
    {"turn on the ice maker", "turn on the ice maker"},
    {"lock the screen", "lock the screen"},
    {"go back", "go back"},
    {"set the fridge to three", "set the fridge to"},
    {"set the freezer to five", "set the freezer to"},
};

const std::vector<std::string> kRequestUtterances = {
    "set a timer for ten minutes",
    "set a timer for one hour and thirty minutes",
    "start a timer for forty five seconds",
    "cancel the timer",
    "stop my timer",
    "add five minutes to the timer",
    "extend my timer by two minutes",
    "how much time is left on the timer",
    "how long is left on my timer",
    "what timers do i have",
    "play music",
    "play music on pandora",
    "play spotify",
    "do i like this song",
    "search for bread",
    "find orange juice on tesco",
    "search for eggs on amazon",
    "what's in my shopping cart",
    "open my cart",
    "show me inside the freezer",
    "what's in the fridge",
    "show me inside the flex zone",
    "what's the weather today",
    "how's the weather",
    "open recipes",
    "open the browser",
    "launch the calendar",
    "open the shopping list",
    "open view inside",
    "set a timer for twenty minutes",
    "search for cheese on walmart",
};

// Outside the grammar: counted apart, as rejected or not.
const std::vector<std::string> kOutside = {
    "hello how are you doing", "the quick brown fox jumps over the lazy dog", "turn the oven up",
    "what time is it in tokyo", "call my mother", "order a pizza for dinner",
};

struct Voice {
    const char* name;
    int wordsPerMinute;
};
const Voice kVoices[] = {{"en-us", 150}, {"en-us", 190}, {"en+f2", 150}, {"en+f2", 190}};

struct Totals {
    int tried = 0, right = 0;
    int outside = 0, rejected = 0;
    double audioSeconds = 0, processSeconds = 0, wallSeconds = 0;
    std::vector<std::string> misses;
    std::vector<std::string> takenOutside;
} gTotals;

voice::Recognizer& recognizer(voice::Grammar& grammar)
{
    static voice::Recognizer instance;
    static voice::Grammar built;
    static bool ready = false;
    if (!ready) {
        std::string error;
        if (!instance.open(error)) {
            std::fprintf(stderr, "marl-speech-benchmark: %s\n", error.c_str());
            std::exit(2);
        }
        built = voice::buildGrammar(kCommands, [](const std::string& w) { return instance.knows(w); });
        if (!instance.setGrammar(built.jsgf, error)) {
            std::fprintf(stderr, "marl-speech-benchmark: %s\n", error.c_str());
            std::exit(2);
        }
        ready = true;
    }
    grammar = built;
    return instance;
}

// 16 kHz speech with quiet before and after it, as a microphone gives it.
std::vector<int16_t> speak(const std::string& text, const Voice& v)
{
    voice::SpeechOptions options;
    options.voice = v.name;
    options.wordsPerMinute = v.wordsPerMinute;
    std::vector<int16_t> speech;
    std::string error;
    if (!voice::synthesize(text, options, speech, error)) {
        std::fprintf(stderr, "marl-speech-benchmark: %s\n", error.c_str());
        std::exit(2);
    }
    std::vector<int16_t> audio(4800, 0);
    audio.insert(audio.end(), speech.begin(), speech.end());
    audio.insert(audio.end(), 9600, 0);
    return audio;
}

double threadSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

// Recognizes as the stand-in does: 20 ms chunks, a partial every 200 ms.
// `seconds` receives the processor time that recognition took; `wall` the
// time on the clock, which other work on the machine lengthens.
voice::Recognition hear(voice::Recognizer& r, const std::vector<int16_t>& audio, double& seconds, double& wall)
{
    const auto begin = std::chrono::steady_clock::now();
    const double cpu = threadSeconds();
    r.start();
    for (size_t i = 0, chunk = 0; i < audio.size(); i += 320, ++chunk) {
        r.feed(audio.data() + i, std::min<size_t>(320, audio.size() - i));
        if (chunk % 10 == 9)
            r.partial();
    }
    voice::Recognition result = r.finish();
    seconds = threadSeconds() - cpu;
    wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    return result;
}

bool sameRequest(const std::string& heard, const std::string& meant)
{
    voice::Request a, b;
    return voice::parseRequest(heard, a) && voice::parseRequest(meant, b) && a.intent == b.intent &&
           a.value == b.value;
}

void Utterances(benchmark::State& state, Voice v)
{
    voice::Grammar grammar;
    voice::Recognizer& r = recognizer(grammar);
    int tried = 0, right = 0;
    double audioSeconds = 0, processSeconds = 0, wallSeconds = 0;
    for (auto _ : state) {
        auto check = [&](const std::string& said, bool isCommand, const std::string& meant) {
            const std::vector<int16_t> audio = speak(said, v);
            double seconds = 0, wall = 0;
            const voice::Recognition heard = hear(r, audio, seconds, wall);
            audioSeconds += double(audio.size()) / 16000.0;
            processSeconds += seconds;
            wallSeconds += wall;
            ++tried;
            std::string command;
            voice::matchCommand(grammar, heard.text, &command);
            const bool ok = heard.accepted && (isCommand ? command == meant : sameRequest(heard.text, meant));
            right += ok;
            if (!ok)
                gTotals.misses.push_back(std::string(v.name) + " " + std::to_string(v.wordsPerMinute) + ": \"" +
                                         said + "\" heard as \"" + heard.text + "\" (score " +
                                         std::to_string(heard.score) + ")");
        };
        for (const auto& c : kCommandUtterances)
            check(c.first, true, c.second);
        for (const std::string& request : kRequestUtterances)
            check(request, false, request);
        for (const std::string& other : kOutside) {
            double seconds = 0, wall = 0;
            const voice::Recognition heard = hear(r, speak(other, v), seconds, wall);
            ++gTotals.outside;
            gTotals.rejected += !heard.accepted;
            if (heard.accepted)
                gTotals.takenOutside.push_back(std::string(v.name) + " " + std::to_string(v.wordsPerMinute) +
                                               ": \"" + other + "\" taken as \"" + heard.text + "\" (score " +
                                               std::to_string(heard.score) + ")");
        }
    }
    gTotals.tried += tried;
    gTotals.right += right;
    gTotals.audioSeconds += audioSeconds;
    gTotals.processSeconds += processSeconds;
    gTotals.wallSeconds += wallSeconds;
    state.counters["utterances"] = tried;
    state.counters["heard_right"] = tried ? double(right) / tried : 0;
    state.counters["audio_s"] = audioSeconds;
    state.counters["x_realtime"] = processSeconds > 0 ? audioSeconds / processSeconds : 0;
}

}  // namespace

int main(int argc, char** argv)
{
    for (const Voice& v : kVoices) {
        const std::string name = std::string("Utterances/") + v.name + "/" + std::to_string(v.wordsPerMinute) + "wpm";
        benchmark::RegisterBenchmark(name.c_str(), Utterances, v)->Iterations(1)->Unit(benchmark::kSecond);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    if (gTotals.tried == 0)
        return 0;
    const double share = double(gTotals.right) / gTotals.tried;
    const double speedUp = gTotals.processSeconds > 0 ? gTotals.audioSeconds / gTotals.processSeconds : 0;
    for (const std::string& miss : gTotals.misses)
        std::printf("missed: %s\n", miss.c_str());
    std::printf("heard right: %d of %d utterances (%.1f %%); target %.0f %%: %s\n", gTotals.right, gTotals.tried,
                100.0 * share, 100.0 * kTargetShare, share >= kTargetShare ? "met" : "MISSED");
    std::printf("speed: %.1f s of audio recognized in %.2f s of processor time, %.1f times faster than real "
                "time; target %.0f: %s\n",
                gTotals.audioSeconds, gTotals.processSeconds, speedUp, kTargetSpeedUp,
                speedUp >= kTargetSpeedUp ? "met" : "MISSED");
    std::printf("       %.2f s on the clock (%.1f times faster than real time with the machine's other load)\n",
                gTotals.wallSeconds, gTotals.wallSeconds > 0 ? gTotals.audioSeconds / gTotals.wallSeconds : 0);
    for (const std::string& taken : gTotals.takenOutside)
        std::printf("outside the grammar, not rejected: %s\n", taken.c_str());
    std::printf("outside the grammar: %d of %d rejected\n", gTotals.rejected, gTotals.outside);
    return share >= kTargetShare && speedUp >= kTargetSpeedUp ? 0 : 1;
}
