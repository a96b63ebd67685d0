// marl-case build: a session's logs and device written as a scenario, from
// the log's text forms, with and without the daemon's lines, and what it says
// of logs it cannot use.
#include "CaseRun.h"

#include <gtest/gtest.h>

#include <regex>

namespace
{

using namespace casetest;

const std::string kScenarios = MARL_SCENARIO_DIR;

// The appliance's lines in one of the platform log reader's forms; the lines
// that carry a message on are given the prefix again.
std::string reform(const std::string& log, const std::string& form)
{
    static const std::regex line(R"(^\d{4}-(\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}) (\w)/(.*?)\(\s*(\d+)\): (.*)$)");
    std::istringstream in(log);
    std::string out, l, prefix;
    while (std::getline(in, l)) {
        std::smatch m;
        std::string message = l;
        if (std::regex_match(l, m, line)) {
            char p[200];
            const int pid = std::stoi(m[4]);
            const std::string tag = m[3];
            if (form == "time")
                std::snprintf(p, sizeof p, "%s+0100 %s/%-8s(%5d): ", m[1].str().c_str(), m[2].str().c_str(), tag.c_str(), pid);
            else
                std::snprintf(p, sizeof p, "%s+0100 %s/%-8s(P%5d, T%5d): ", m[1].str().c_str(), m[2].str().c_str(),
                              tag.c_str(), pid, pid + 3);
            prefix = p;
            message = m[5];
        }
        out += prefix + message + "\n";
    }
    return out;
}

// A case's members that come from the log, to set cases side by side.
std::string played(const Json::Value& scenario)
{
    Json::Value v;
    for (const char* member : {"engine", "turns", "daemon", "recognitionMode", "timeout"})
        if (scenario.isMember(member))
            v[member] = scenario[member];
    return v.toStyledString();
}

std::string notes(const Json::Value& scenario)
{
    std::string all;
    for (const auto& n : scenario["notes"])
        all += n.asString() + "\n";
    return all;
}

TEST(CaseBuild, TheReaderFormsTimeAndThreadtimeGiveTheSameCase)
{
    Scratch s;
    ASSERT_EQ(0, field(s, kScenarios + "/timer-dialogue.json", "f").exitCode);
    const std::string plugin = readText(s.path("f/dev/log/dlog.log")), daemon = readText(s.path("f/daemon.log"));
    const ToolRun appliance = marlCase(s, {"build", s.path("f/dev/log/dlog.log"), s.path("f/daemon.log"), "--device",
                                       s.path("f/export.json"), "-o", s.path("appliance.json")});
    ASSERT_EQ(0, appliance.exitCode) << appliance.err;
    for (const std::string form : {"time", "threadtime"}) {
        // Both logs in one file, as the reader prints every tag together.
        writeText(s.path(form + ".log"), reform(plugin + daemon, form));
        const ToolRun r = marlCase(s, {"build", s.path(form + ".log"), "--device", s.path("f/export.json"), "-o",
                                   s.path(form + ".json")});
        ASSERT_EQ(0, r.exitCode) << form << ": " << r.err;
        EXPECT_EQ(played(readJson(s.path("appliance.json"))), played(readJson(s.path(form + ".json")))) << form;
    }
    const Json::Value c = readJson(s.path("appliance.json"));
    ASSERT_EQ(1u, c["turns"].size());
    const Json::Value& server = c["turns"][0]["server"];
    ASSERT_EQ(5u, server.size());
    EXPECT_EQ("driverRequest", server[2]["type"].asString());
    EXPECT_EQ("Information Timer Request", server[2]["request"]["Server Reqeust"]["action"]["name"].asString());
    EXPECT_EQ(10, c["engine"]["commands"][0]["id"].asInt());
    EXPECT_EQ(2, c["engine"]["commands"][0]["type"].asInt());
    // The tone: 70 chunks of 20 ms with the end of speech after the 65th.
    EXPECT_EQ(1000u, c["turns"][0]["audio"]["speechMs"].asUInt());
    EXPECT_EQ(400u, c["turns"][0]["audio"]["silenceMs"].asUInt());
    EXPECT_NE(std::string::npos, notes(c).find("audio approximate: 70 chunk(s)")) << notes(c);
    EXPECT_NE(std::string::npos, appliance.out.find("note: turn 1: audio approximate")) << appliance.out;
}

TEST(CaseBuild, WithoutTheDaemonsLogTheCommandsAreNumberedAndSaidToBe)
{
    Scratch s;
    ASSERT_EQ(0, field(s, kScenarios + "/command-by-text.json", "f").exitCode);
    const ToolRun r = marlCase(s, {"build", s.path("f/dev/log/dlog.log"), "-o", s.path("case.json")});
    ASSERT_EQ(0, r.exitCode) << r.err;
    const Json::Value c = readJson(s.path("case.json"));
    const Json::Value& commands = c["engine"]["commands"];
    ASSERT_EQ(readJson(kScenarios + "/command-by-text.json")["engine"]["commands"].size(), commands.size());
    for (Json::ArrayIndex i = 0; i < commands.size(); ++i)
        EXPECT_EQ(static_cast<int>(i) + 1, commands[i]["id"].asInt());
    EXPECT_NE(std::string::npos, notes(c).find("commands: ids numbered 1 to")) << notes(c);
    EXPECT_NE(std::string::npos, notes(c).find("no export of the device given")) << notes(c);
}

TEST(CaseBuild, ACancelledTurnIsCancelledWhenTheDaemonSaysSo)
{
    Scratch s;
    ASSERT_EQ(0, field(s, kScenarios + "/cancelled-turn.json", "f").exitCode);
    ASSERT_EQ(0, marlCase(s, {"build", s.path("f/dev/log/dlog.log"), s.path("f/daemon.log"), "-o", s.path("with.json")})
                     .exitCode);
    ASSERT_EQ(0, marlCase(s, {"build", s.path("f/dev/log/dlog.log"), "-o", s.path("without.json")}).exitCode);
    EXPECT_EQ("cancel", readJson(s.path("with.json"))["turns"][0]["end"].asString());
    const Json::Value without = readJson(s.path("without.json"));
    EXPECT_FALSE(without["turns"][0].isMember("end"));
    EXPECT_NE(std::string::npos, notes(without).find("turn 1: the server did not answer and the log does not say"))
        << notes(without);
}

TEST(CaseBuild, AFilteredLogStillGivesACaseWithItsGapsListed)
{
    Scratch s;
    ASSERT_EQ(0, field(s, kScenarios + "/device-data-failing.json", "f").exitCode);
    std::istringstream in(readText(s.path("f/dev/log/dlog.log")));
    std::string kept, l;
    while (std::getline(in, l))
        if (std::regex_search(l, std::regex(R"(^\S+ \S+ [IWEF]/)")))
            kept += l + "\n";
    writeText(s.path("info.log"), kept);
    const ToolRun r = marlCase(s, {"build", s.path("info.log"), "-o", s.path("case.json")});
    ASSERT_EQ(0, r.exitCode) << r.err;
    const Json::Value c = readJson(s.path("case.json"));
    EXPECT_NE(std::string::npos, notes(c).find("gap: the log holds no debug line")) << notes(c);
    EXPECT_NE(std::string::npos, notes(c).find("1 recognition start(s) counted")) << notes(c);
    EXPECT_EQ(1u, c["turns"].size());
    // The failed platform reads come back as the case's injected failures.
    EXPECT_EQ(-5, c["device"]["errors"]["device_battery_get_percent"].asInt()) << c["device"].toStyledString();
    EXPECT_EQ(-5, c["device"]["errors"]["system_settings_get_value_bool"].asInt());
}

TEST(CaseBuild, SeveralSessionsGiveOneCaseEachOrTheOneAskedFor)
{
    Scratch s;
    ASSERT_EQ(0, field(s, kScenarios + "/keep-context.json", "a").exitCode);
    ASSERT_EQ(0, field(s, kScenarios + "/rejected.json", "b").exitCode);
    writeText(s.path("both.log"), readText(s.path("a/dev/log/dlog.log")) + readText(s.path("b/dev/log/dlog.log")));
    const ToolRun all = marlCase(s, {"build", s.path("both.log"), "-o", s.path("case.json")});
    ASSERT_EQ(0, all.exitCode) << all.err;
    EXPECT_EQ(readJson(kScenarios + "/keep-context.json")["turns"].size(), readJson(s.path("case-1.json"))["turns"].size());
    EXPECT_EQ(1u, readJson(s.path("case-2.json"))["turns"].size());
    EXPECT_NE(std::string::npos, all.out.find("session 2 of 2")) << all.out;
    const ToolRun second = marlCase(s, {"build", s.path("both.log"), "--session", "2", "-o", s.path("second.json")});
    ASSERT_EQ(0, second.exitCode) << second.err;
    EXPECT_EQ(played(readJson(s.path("case-2.json"))), played(readJson(s.path("second.json"))));
    const ToolRun third = marlCase(s, {"build", s.path("both.log"), "--session", "3", "-o", s.path("third.json")});
    EXPECT_EQ(2, third.exitCode);
    EXPECT_NE(std::string::npos, third.err.find("the logs hold 2 session(s)")) << third.err;
}

struct BadLog {
    const char* name;
    std::string text;  // empty: the file is not there
    const char* says;
};

class BadLogs : public ::testing::TestWithParam<BadLog>
{
};

TEST_P(BadLogs, AreRefusedWithAClearMessageAndExitTwo)
{
    Scratch s;
    const std::string log = s.path("field.log");
    if (!GetParam().text.empty())
        writeText(log, GetParam().text);
    const ToolRun r = marlCase(s, {"build", log, "-o", s.path("case.json")});
    EXPECT_EQ(2, r.exitCode) << r.out << r.err;
    EXPECT_NE(std::string::npos, r.err.find(GetParam().says)) << r.err;
    EXPECT_FALSE(fs::exists(s.path("case.json")));
}

const std::string kGood = "2024-05-02 14:00:00.000 D/VoiceEnginePlugIn( 9): MarlEnginePlugin.cpp: "
                          "MarlEngine_start(305) > Current Context[2]\n";

INSTANTIATE_TEST_SUITE_P(
    Logs, BadLogs,
    ::testing::Values(BadLog{"Missing", "", "cannot read"},
                      BadLog{"Empty", " \n", "nothing to build from"},
                      BadLog{"OtherTagsOnly", "2024-05-02 14:00:00.000 D/sound( 9): a.c: f(1) > x\n",
                             "among 1 line(s) of other tags: nothing to build from"},
                      BadLog{"Binary", std::string("\x7f" "ELF\x02\x01\x01\0\0\0\n", 11), "NUL byte"},
                      BadLog{"UnknownLine", kGood + "Tue May  2 14:00:01 fridge kernel: usb 1-1: new device\n" + kGood,
                             "field.log:2: not a line of the platform log"},
                      BadLog{"TruncatedLine", kGood + "2024-05-02 14:00:0", "field.log:2: the log ends in the middle"}),
    [](const ::testing::TestParamInfo<BadLog>& info) { return std::string(info.param.name); });

TEST(CaseBuild, LenientPassesOverBadLinesAndNotesThem)
{
    Scratch s;
    writeText(s.path("field.log"), kGood + "garbage\n" + kGood);
    const ToolRun r = marlCase(s, {"build", s.path("field.log"), "--lenient", "-o", s.path("case.json")});
    ASSERT_EQ(0, r.exitCode) << r.err;
    EXPECT_NE(std::string::npos, notes(readJson(s.path("case.json"))).find("passed over: "));
}

TEST(CaseBuild, UsageErrorsExitTwo)
{
    Scratch s;
    EXPECT_EQ(2, marlCase(s, {}).exitCode);
    EXPECT_EQ(2, marlCase(s, {"build", s.path("x.log")}).exitCode);
    const ToolRun r = marlCase(s, {"build", "-o", s.path("c.json")});
    EXPECT_EQ(2, r.exitCode);
    EXPECT_NE(std::string::npos, r.err.find("no log given")) << r.err;
}

TEST(DaemonLog, MarlSimWritesTheDaemonsSideInItsOwnLines)
{
    Scratch s;
    ASSERT_EQ(0, field(s, kScenarios + "/timer-dialogue.json", "f").exitCode);
    const std::string log = readText(s.path("f/daemon.log"));
    for (const char* expected :
         {"D/vcd(", "vcd_engine_agent.c: __load_engine(518) > [Engine Agent] Current engine path : ",
          "[Client Data] Background : id(10) index(0) format(5) command(#org.tizen.Timer) param((null)) domain(0)\n",
          "[Engine Agent SUCCESS] set command\n", "[Server] set recognition mode = 0\n",
          "[Engine Agent] silence is true\n", "[IN] vcd mgr stop : pid(",
          "[Engine agent] ASR result - Event(0), Text(what timers do I have)\n",
          "[Engine agent] Event(0), Count(1) Text(what timers do I have) Nonfixed((null)) Msg(vc.result.message.none)\n",
          "[Engine Agent SUCCESS] Get nlp info : {\"timers\":[{\"id\":\"1\"}]}\n", "[Server]   [0] Result ID(10)\n"})
        EXPECT_NE(std::string::npos, log.find(expected)) << expected << "\nin:\n" << log;
    // The list's outcome follows the walk.
    EXPECT_LT(log.find("[Client Data]"), log.find("[Engine Agent SUCCESS] set command"));

    // The platform's daemon stops by itself when speech ends.
    ASSERT_EQ(0, field(s, kScenarios + "/timer-dialogue.json", "p", {"--daemon", "platform"}).exitCode);
    EXPECT_NE(std::string::npos, readText(s.path("p/daemon.log")).find("===== Silence Detected"));
    const ToolRun bad = run(s, MARL_SIM, {"run", kScenarios + "/timer-dialogue.json", "--device", s.path("d"), "--daemon-log",
                                      s.path("no/such/dir/x.log")});
    EXPECT_EQ(1, bad.exitCode);
    EXPECT_NE(std::string::npos, bad.err.find("cannot write")) << bad.err;
}

}  // namespace
