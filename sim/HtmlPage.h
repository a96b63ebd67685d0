// The session as one self-contained HTML page (no script, no network, no
// file beside it), turn by turn: a timeline of the turn's stages with their
// times, the partial and final texts, the NLU results, each driver request
// and response pretty-printed, the actions, the daemon's result with the
// matched commands or its error, what the appliance saw (launches, key
// changes, playbacks, files) and a player for the spoken answer, its WAV file
// embedded as a data: URI.
//
// The stages come from the turn's latency entry (turnStages). Each turn's section is written to a
// scratch file when the turn ends; finish() writes the page: the header, a
// summary of the turns, the set-up, the turns and the end of the session.
#pragma once

#include <json/json.h>

#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace sim
{

class HtmlPage
{
public:
    explicit HtmlPage(std::string path);

    // One finished transcript entry, in the transcript's order.
    void entry(const Json::Value& e);
    // False, with a message, when the page could not be written.
    bool finish(const Json::Value& header, std::string* error);

private:
    struct Stage {
        std::string name;
        long long ms;
    };
    struct Turn {
        int number = 0;
        long long startMs = 0;
        long long lastMs = 0;
        std::string audio, end;
        bool listen = false;
        std::vector<std::string> partials, finals, recognition, nlu, actions, results;
        std::vector<std::pair<std::string, std::string>> driver;  // request, response
        std::vector<std::string> appliance, notes, spoken;      // spoken: WAV files to embed
        Json::Value latency;  // the transcript's latency entry, when it has one
        std::string heard, outcome;
    };
    struct Row {
        int number;
        std::string audio, heard, outcome, latency;
    };

    void turnEntry(const Json::Value& e);
    void endTurn();
    std::vector<Stage> stages() const;
    long long eosToResult() const;
    std::string timeline() const;
    std::string spokenAnswer(const std::string& wav) const;

    std::string mPath;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> mTurns;
    bool mInTurn = false, mEnded = false;
    Turn mTurn;
    std::vector<Row> mRows;
    std::vector<std::string> mSetUp, mEnd;  // what the daemon did before the turns and after
};

}  // namespace sim
