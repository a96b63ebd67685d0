// marl-case compare: the case replayed and set beside the field's log, the
// first difference shown where it happened.
#include "CaseRun.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

namespace
{

using namespace casetest;

const std::string kScenarios = MARL_SCENARIO_DIR;

// A field session of `scenario` and its case.
void fieldCase(const Scratch& s, const std::string& scenario, bool daemon = true)
{
    ASSERT_EQ(0, field(s, kScenarios + "/" + scenario + ".json", "f").exitCode);
    std::vector<std::string> args = {"build", s.path("f/dev/log/dlog.log")};
    if (daemon)
        args.push_back(s.path("f/daemon.log"));
    for (const std::string& a : {std::string("--device"), s.path("f/export.json"), std::string("-o"), s.path("case.json")})
        args.push_back(a);
    const ToolRun r = marlCase(s, args);
    ASSERT_EQ(0, r.exitCode) << r.err;
}

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

TEST(CaseCompare, ACaseReplayedOnTheSameBuildIsTheSame)
{
    Scratch s;
    fieldCase(s, "timer-replies");
    const ToolRun r = marlCase(s, {"compare", s.path("case.json"), s.path("f/dev/log/dlog.log"), s.path("f/daemon.log"),
                               "--fast", "--json", s.path("replay.json")});
    EXPECT_EQ(0, r.exitCode) << r.out << r.err;
    EXPECT_NE(std::string::npos, r.out.find("turn 5: callbacks same (2), driver responses same (1), log lines same ("))
        << r.out;
    EXPECT_EQ("same\n", r.out.substr(r.out.size() - 5));
    EXPECT_EQ(answers(s.path("f/transcript.json")), answers(s.path("replay.json")));
}

TEST(CaseCompare, TheSameLinesInAnotherOrderAreTheSameTurn)
{
    // Two lines of a turn logged the other way round, as two threads may.
    Scratch s;
    fieldCase(s, "timer-replies");
    std::vector<std::string> lines;
    std::istringstream in(readText(s.path("f/dev/log/dlog.log")));
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    const auto message = [](const std::string& line) { return line.substr(line.find("): ") + 3); };
    size_t at = 0;
    while (at < lines.size() && lines[at].find("MarlEngine_start") == std::string::npos)
        ++at;
    for (at += 1; at + 1 < lines.size(); ++at)
        if (lines[at].find("DeviceDataRetrieveManager.cpp") != std::string::npos &&
            message(lines[at]) != message(lines[at + 1]))
            break;
    ASSERT_LT(at + 1, lines.size());
    const std::string first = message(lines[at]);
    lines[at] = lines[at].substr(0, lines[at].size() - first.size()) + message(lines[at + 1]);
    lines[at + 1] = lines[at + 1].substr(0, lines[at + 1].size() - message(lines[at + 1]).size()) + first;
    std::string swapped;
    for (const std::string& line : lines)
        swapped += line + "\n";
    writeText(s.path("swapped.log"), swapped);
    const ToolRun r = marlCase(s, {"compare", s.path("case.json"), s.path("swapped.log"), s.path("f/daemon.log"), "--fast"});
    EXPECT_EQ(0, r.exitCode) << r.out << r.err;
    EXPECT_NE(std::string::npos, r.out.find("turn 1: callbacks same (1), driver responses same (1), log lines same (")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find(" in another order, as its threads ran")) << r.out;
}

TEST(CaseCompare, AnotherDriverResponseInTheFieldIsShownAtItsTurnBesideThisBuildsAnswer)
{
    // The field's build answered the third request otherwise.
    Scratch s;
    fieldCase(s, "timer-replies");
    const std::string log = readText(s.path("f/dev/log/dlog.log"));
    const std::string right = "\"status\":\"Single Found InValid\"";
    ASSERT_NE(std::string::npos, log.find(right));
    writeText(s.path("broken.log"), replaced(log, right, "\"status\":\"Single Found Valid\""));
    const ToolRun r = marlCase(s, {"compare", s.path("case.json"), s.path("broken.log"), s.path("f/daemon.log"), "--fast"});
    EXPECT_EQ(1, r.exitCode) << r.out << r.err;
    EXPECT_NE(std::string::npos, r.out.find("turn 3: callbacks same (1), driver responses DIFFERENT")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("turn 1: callbacks same (1), driver responses same (1)")) << r.out;
    const size_t first = r.out.find("first difference: turn 3, recognition, after the case's event 2 "
                                    "(driverRequest \"Extend Timer Request\"), driver request 1");
    ASSERT_NE(std::string::npos, first) << r.out;
    const std::string shown = r.out.substr(first);
    EXPECT_NE(std::string::npos, shown.find("the plug-in's answers:")) << shown;
    EXPECT_TRUE(std::regex_search(shown, std::regex(R"(\* +"status" : "Single Found Valid", +# +"status" : "Single Found InValid")")))
        << shown;
    EXPECT_EQ("different\n", r.out.substr(r.out.size() - 10));
}

TEST(CaseCompare, ADifferentResultIsShownWithBothCalls)
{
    Scratch s;
    fieldCase(s, "command-by-text");
    const std::string daemon = readText(s.path("f/daemon.log"));
    writeText(s.path("daemon.log"), replaced(daemon, "Result ID(2)", "Result ID(4)"));
    const ToolRun r = marlCase(s, {"compare", s.path("case.json"), s.path("f/dev/log/dlog.log"), s.path("daemon.log"), "--fast"});
    EXPECT_EQ(1, r.exitCode) << r.out << r.err;
    EXPECT_NE(std::string::npos, r.out.find("first difference: turn 1, the plug-in's call 4 back to the daemon:")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("\"ids\":[4,")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("\"ids\":[2,")) << r.out;
}

TEST(CaseCompare, CodeThatMovedIsSaidOnceInsteadOfLineByLine)
{
    Scratch s;
    fieldCase(s, "keep-context");
    const std::string log = readText(s.path("f/dev/log/dlog.log"));
    const std::regex processAudio(R"(processAudio\(\d+\) >)"), parserAction(R"(executeParserAction\(\d+\) >)");
    std::string moved = std::regex_replace(log, processAudio, "processAudio(1000) >");
    moved = std::regex_replace(moved, parserAction, "executeParserAction(2000) >");
    writeText(s.path("moved.log"), moved);
    const ToolRun r = marlCase(s, {"compare", s.path("case.json"), s.path("moved.log"), s.path("f/daemon.log"), "--fast"});
    EXPECT_EQ(0, r.exitCode) << r.out << r.err;
    EXPECT_TRUE(std::regex_search(
        r.out, std::regex(R"(moved code: MarlEngineWrapper.cpp executeParserAction: line 2000 in the field's build, \d+ in this one \(3 line\(s\)\))")))
        << r.out;
    // The audio lines are not compared, so they are not said to have moved.
    EXPECT_EQ(std::string::npos, r.out.find("processAudio: line")) << r.out;
}

TEST(CaseCompare, ADeviceThatIsNotTheFieldsGivesAnotherAnswer)
{
    Scratch s;
    fieldCase(s, "timer-dialogue");
    Json::Value c = readJson(s.path("case.json"));
    c["device"]["datastore"]["Timer"][0]["delayTime"] = "420";
    Json::StreamWriterBuilder w;
    writeText(s.path("other.json"), Json::writeString(w, c));
    const ToolRun r = marlCase(s, {"compare", s.path("other.json"), s.path("f/dev/log/dlog.log"), s.path("f/daemon.log"), "--fast"});
    EXPECT_EQ(1, r.exitCode) << r.out << r.err;
    EXPECT_NE(std::string::npos, r.out.find("\"time\" : \"00:05:00\"")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("\"time\" : \"00:07:00\"")) << r.out;
}

TEST(CaseCompare, ALogThatBeginsWithinTheSessionGivesItsLastTurnsWithTheDaemonsLines)
{
    // The appliance's log buffer kept only the session's last three turns;
    // the daemon's log has all five.
    Scratch s;
    ASSERT_EQ(0, field(s, kScenarios + "/timer-replies.json", "f").exitCode);
    const std::string log = readText(s.path("f/dev/log/dlog.log"));
    size_t cut = 0;
    for (int start = 0; start < 3; ++start)
        cut = log.find("MarlEngine_start(", cut + 1);
    cut = log.rfind('\n', cut) + 1;
    writeText(s.path("last.log"), log.substr(cut));
    const ToolRun built = marlCase(s, {"build", s.path("last.log"), s.path("f/daemon.log"), "--device",
                                       s.path("f/export.json"), "-o", s.path("case.json")});
    ASSERT_EQ(0, built.exitCode) << built.err;
    const Json::Value c = readJson(s.path("case.json"));
    EXPECT_EQ(3u, c["turns"].size());
    EXPECT_EQ("#org.tizen.Timer", c["engine"]["commands"][0]["command"].asString());
    EXPECT_NE(std::string::npos, built.out.find("the daemon's log has 5 start(s) where the plug-in's has 3; they were "
                                                "matched from the last")) << built.out;
    EXPECT_NE(std::string::npos, built.out.find("the log begins after the engine was loaded")) << built.out;
    const ToolRun r = marlCase(s, {"compare", s.path("case.json"), s.path("last.log"), s.path("f/daemon.log"), "--fast"});
    EXPECT_NE(2, r.exitCode) << r.err;
    EXPECT_NE(std::string::npos, r.out.find("set-up: not compared")) << r.out;
    for (const char* turn : {"turn 1: callbacks same (1), driver responses same (1)",
                             "turn 2: callbacks same (1), driver responses same (1)",
                             "turn 3: callbacks same (2), driver responses same (1)"})
        EXPECT_NE(std::string::npos, r.out.find(turn)) << turn << "\n" << r.out;
}

TEST(CaseCompare, UnusableInputExitsTwoWithAMessage)
{
    Scratch s;
    fieldCase(s, "rejected");
    const std::string log = s.path("f/dev/log/dlog.log");
    ToolRun r = marlCase(s, {"compare", s.path("none.json"), log});
    EXPECT_EQ(2, r.exitCode);
    EXPECT_NE(std::string::npos, r.err.find("cannot read")) << r.err;
    writeText(s.path("text.json"), "not json");
    r = marlCase(s, {"compare", s.path("text.json"), log});
    EXPECT_EQ(2, r.exitCode);
    EXPECT_NE(std::string::npos, r.err.find("is no case")) << r.err;
    r = marlCase(s, {"compare", s.path("case.json"), s.path("none.log")});
    EXPECT_EQ(2, r.exitCode);
    EXPECT_NE(std::string::npos, r.err.find("cannot read")) << r.err;
    // A case that marl-sim refuses.
    Json::Value c = readJson(s.path("case.json"));
    c["turns"][0]["end"] = "sideways";
    Json::StreamWriterBuilder w;
    writeText(s.path("refused.json"), Json::writeString(w, c));
    r = marlCase(s, {"compare", s.path("refused.json"), log, "--fast"});
    EXPECT_EQ(2, r.exitCode) << r.out;
    EXPECT_NE(std::string::npos, r.err.find("the replay did not run (marl-sim exit 1)")) << r.err;
    EXPECT_NE(std::string::npos, r.err.find("turns[0].end")) << r.err;
    r = marlCase(s, {"compare", s.path("case.json"), log, "--session", "4"});
    EXPECT_EQ(2, r.exitCode);
    EXPECT_NE(std::string::npos, r.err.find("the log holds 1 session(s), not 4")) << r.err;
}

}  // namespace
