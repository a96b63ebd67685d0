// What the fuzzers share: a virtual appliance to run on, an engine loaded as
// the daemon loads it, and the splitting of one input into several texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class MarlEngineWrapper;

namespace marlfuzz {

// Makes a fresh device directory from a device description (JSON text), names
// it in MARL_DEVICE_DIR and removes it at exit. Aborts when the description
// does not apply: the fuzzer would test nothing. The directory is made under
// MARL_FUZZ_TMP (scripts/fuzz.sh: a folder in memory); its log goes to
// /dev/null unless MARL_FUZZ_KEEP_LOG=1.
void makeDevice(const std::string& description);

// The device directory made by makeDevice().
const std::string& deviceDir();

// Loads the engine through vcp_load_engine with a daemon whose command walk
// gives commands(), initializes it, sets its callbacks and its language.
MarlEngineWrapper* loadEngine();

// Makes the device of fuzz/device.json and loads the engine on it, as the
// daemon has it before any request arrives.
MarlEngineWrapper* loadEngineOnTheFuzzDevice();

// Runs one empty input: what the libraries below make once, at their first
// use, is not an input's leak.
void runEmptyInput(int (*testOneInput)(const uint8_t*, size_t));

// One command of the daemon's command walk.
struct Command {
    int id;
    int type;
    int format;
    bool nullText;
    std::string text;
    std::string param;
    int domain;
};
std::vector<Command>& commands();

// Runs the Ecore main loop for a few rounds, so that queued callbacks and
// expired timers run.
void pumpMainLoop(int rounds);

// The input as text, cut at each line "--" into at most `count` pieces; the
// pieces not given are empty.
std::vector<std::string> pieces(const uint8_t* data, size_t size, size_t count);

// `text` cut at every `separator`; the pieces between, empty ones too.
std::vector<std::string> splitOn(const std::string& text, char separator);

// Writes `text` into the host file that stands for `appliancePath`.
void writeApplianceFile(const std::string& appliancePath, const std::string& text);

}  // namespace marlfuzz
