#include "Talk.h"

#include <unistd.h>

#include <cstdio>
#include <iostream>

namespace sim
{

bool readTalkTurn(const std::string& voice, int wordsPerMinute, Turn& turn)
{
    const bool person = ::isatty(STDIN_FILENO);
    for (;;) {
        if (person) {
            std::fputs("say> ", stdout);
            std::fflush(stdout);
        }
        std::string line;
        if (!std::getline(std::cin, line))
            return false;
        while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t'))
            line.pop_back();
        if (line.empty())
            return false;
        std::string error;
        turn = Turn();
        if (spokenTurn(line, voice, wordsPerMinute, turn, error))
            return true;
        std::fprintf(stderr, "marl-sim: cannot say \"%s\": %s\n", line.c_str(), error.c_str());
    }
}

std::string talkSummary(const std::vector<Json::Value>& entries)
{
    std::string heard, answer, error, audio, apps;
    for (const Json::Value& e : entries) {
        const std::string kind = e["kind"].asString();
        if (kind == "callback" && e["fn"] == "asr" && e["event"] == 0)
            heard = e["text"].asString();
        else if (kind == "callback" && e["fn"] == "error")
            error = e["message"].asString();
        else if (kind == "speech" && e["obs"]["what"] == "executeOVAction" && e["obs"]["spokenText"].isString())
            answer = e["obs"]["spokenText"].asString();
        else if (kind == "note" && e["text"].asString().rfind("spoken answer: ", 0) == 0)
            audio = e["text"].asString().substr(15);
        else if (kind == "note" && e["text"].asString().rfind("app ", 0) == 0)
            apps += "app:    " + e["text"].asString().substr(4) + "\n";
    }
    if (answer.empty())
        answer = error.empty() ? "(none)" : "(none; error: " + error + ")";
    return "heard:  " + (heard.empty() ? std::string("(nothing)") : heard) + "\nanswer: " + answer +
           "\naudio:  " + (audio.empty() ? std::string("(none)") : audio) + "\n" + apps;
}

}  // namespace sim
