// A scenario: one daemon session with the plug-in, read from one JSON file and
// checked as a whole before anything is loaded.
#pragma once

#include <json/json.h>

#include <cstdint>
#include <string>
#include <vector>

namespace sim
{

// A text argument that may also be null (JSON null or an absent member).
struct OptText {
    bool set = false;
    std::string text;
    const char* c_str() const { return set ? text.c_str() : nullptr; }
};

struct Command {
    int id = 0;
    int type = 1;
    int format = 0;
    std::string command;
    OptText param;
    int domain = 0;
    std::string app;  // the app that registered it, to which the daemon hands its results; empty: none
};

struct PrivateData {
    OptText key;
    OptText data;
};

struct Turn {
    std::vector<int16_t> audio;            // 16 kHz mono samples
    std::string audioSource;               // what the audio is, for the transcript
    bool cancel = false;                   // end by cancel instead of stop
    bool listen = false;                   // no "server": the stand-in recognizes, its service answers
    Json::Value server;                    // the speech service's events; file paths made absolute
    std::vector<PrivateData> privateData;  // sent just before the turn starts
    Json::Value device;                    // a device description applied just before the turn; null when none
    size_t wordsEndSample = 0;             // where the words or the tone end, when known (0: unknown)
    int cancelAfterMs = -1;                // the daemon cancels the request this long after its stop (-1: never)
    bool reload = false;                   // the daemon unloads the engine and loads it afresh before the turn
};

// How the daemon drives the plug-in: "gentle" (the simulator's own, patient
// habits) or "platform" (the habits of the platform's voice-control daemon).
enum class DaemonProfile { Gentle, Platform };

struct Scenario {
    std::string path;    // as given
    std::string dir;     // absolute folder of the file
    Json::Value device;  // device description, null when absent
    OptText domain;
    std::string language;
    std::vector<Command> commands;
    std::vector<PrivateData> privateData;
    std::vector<Turn> turns;
    // What the normalized transcript keeps of the device data pulled at each
    // recognition start: names that lines begin with ("Timer.", "recoState").
    std::vector<std::string> compareDeviceData;
    // Seconds a turn may take to settle after its stop or cancel; 0 leaves the
    // command line's choice.
    unsigned timeout = 0;
    // The scenario's "daemon" member, when it has one.
    bool daemonGiven = false;
    DaemonProfile daemon = DaemonProfile::Gentle;
    // "recognitionMode": "restartAfterReject": the platform daemon stops only
    // the engine at the end of speech and its recorder keeps going.
    bool restartAfterReject = false;
    // "clock": when the device's clock is pinned, and at what instant; empty: the host's clock.
    std::string clock;
};

// "gentle" or "platform"; false for anything else.
bool parseDaemonProfile(const std::string& name, DaemonProfile& profile);
const char* daemonProfileName(DaemonProfile profile);

// Reads and checks the whole scenario. On failure `error` names the path of
// the bad member ("turns[1].server[0].confidence: must be an integer").
bool loadScenario(const std::string& path, Scenario& out, std::string& error);

// 16 kHz mono 16-bit PCM from a WAV file (read with libsndfile); anything
// else is refused with a message that tells what the file holds.
bool readWav(const std::string& file, std::vector<int16_t>& samples, std::string& error);

// A loud tone of speechMs followed by silenceMs of silence, at 16 kHz.
std::vector<int16_t> synthesize(unsigned speechMs, unsigned silenceMs);

// Words spoken by espeak-ng at 16 kHz, as a microphone gives them: 300 ms of
// quiet, the speech, 700 ms of quiet. `source` tells what the audio is.
bool sayAudio(const std::string& text, const std::string& voice, int wordsPerMinute, std::vector<int16_t>& samples,
              std::string& source, std::string& error);

// A turn that speaks `text` (marl-sim say) or plays a WAV file (marl-sim
// listen), answered by the appliance's speech service.
bool spokenTurn(const std::string& text, const std::string& voice, int wordsPerMinute, Turn& turn,
                std::string& error);
bool recordedTurn(const std::string& file, Turn& turn, std::string& error);

// The session of marl-sim say and listen when no scenario is given: a fresh
// device and the kitchen's commands.
const char* defaultSpokenScenario();

// Reads a scenario from its text; `path` names it in messages and gives the
// folder that its files are relative to.
bool parseScenario(const std::string& text, const std::string& path, Scenario& out, std::string& error);

}  // namespace sim
