// The appliance requests that the speech service of the virtual appliance
// understands: timers, music, shopping, the inside of a compartment, the
// weather and opening apps. One table of patterns gives both the grammar
// rules that the recognizer listens for and the parse of a recognized text.
//
// Pattern syntax (that of JSGF): words, [optional], (either | or), and
// {slot} for one of a slot's phrases.
#ifndef VOICE_REQUESTS_H
#define VOICE_REQUESTS_H

#include <map>
#include <string>
#include <vector>

namespace voice {

struct Request {
    std::string intent;                        // "SetTimer", "OpenApp", ...
    std::map<std::string, std::string> value;  // slot to its value ("duration": seconds as text)
    std::map<std::string, std::string> heard;  // slot to the words heard
};

struct RequestPattern {
    const char* intent;
    const char* pattern;
};

// The patterns, in the order in which a text is tried against them.
const std::vector<RequestPattern>& requestPatterns();

// JSGF rules that define <request> and its slots.
std::string requestRules();

// Every word that the rules use.
std::vector<std::string> requestWords();

// The request that a text (in the recognizer's lower-case words) says.
bool parseRequest(const std::string& text, Request& out);

// "ten minutes and thirty seconds" -> 630; -1 when the words are no duration.
int durationSeconds(const std::string& words);

// 630 -> "10 minutes and 30 seconds"; 0 -> "0 seconds".
std::string spokenDuration(long seconds);

}  // namespace voice

#endif
