// Scripted server events of one voice turn, in the format of the daemon
// simulator's scenarios (see README.md).
#ifndef SPEECH_SCRIPT_H
#define SPEECH_SCRIPT_H

#include <json/json.h>

#include <string>
#include <vector>

namespace standin {

struct ScriptEvent {
    Json::Value json;     // the event as given
    std::string type;
    std::string speech;   // "nlu": the speech bytes, read from speechFile or synthesized
};

using Script = std::vector<ScriptEvent>;

// Reads a JSON array of events. False, with the reason in `error`, when the
// text is not such an array or an event is malformed.
bool parseScript(const char* text, Script& out, std::string& error);

// The speech that "speechBytes" asks for: a quiet 440 Hz tone, 24 kHz mono
// 16-bit little-endian, cut to `bytes`.
std::string quietTone(size_t bytes);

}  // namespace standin

#endif
