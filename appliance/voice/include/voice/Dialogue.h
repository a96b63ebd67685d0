// The speech service of the virtual appliance: what it answers to one
// spoken request, step by step. A step is a list of server events in the
// format of the speech stand-in's scripts (appliance/speech/README.md); a
// step that ends in a driver request waits for the plug-in's driver
// response, which reply() takes to make the next step.
//
// An "nlu" event with a "speak" member carries the spoken answer: the
// stand-in synthesizes those words as 24 kHz speech and sends them with it.
#ifndef VOICE_DIALOGUE_H
#define VOICE_DIALOGUE_H

#include "voice/Requests.h"

#include <json/json.h>

#include <string>

namespace voice {

// What the recognizer made of the audio of a turn.
struct Heard {
    bool speech = false;   // the speech detector heard speech
    std::string text;      // the recognized words; empty when rejected
    bool command = false;  // the text is a registered command
};

struct Step {
    Json::Value events{Json::arrayValue};
    bool awaitsReply = false;  // the last event is a driver request
};

class Dialogue {
public:
    Step begin(const Heard& heard);
    Step reply(const std::string& driverResponse);

    const Request& request() const { return mRequest; }

private:
    Step finish(const std::string& actionName, const std::string& answer, const Json::Value& rawJson,
                const std::string& actionType = "None");
    Step ask(const std::string& action, const Json::Value& data);

    Request mRequest;
    std::string mAgent;
    int mAsked = 0;       // driver requests made so far
    Json::Value mEarlier;  // the data of the previous reply
};

// The "data" of a driver response text, or null when it has none.
Json::Value replyData(const std::string& driverResponse);

}  // namespace voice

#endif
