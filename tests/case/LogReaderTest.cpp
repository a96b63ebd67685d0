// The platform log's text forms, read into lines, and the plug-in's lines cut
// into sessions and turns.
#include "Model.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using marlcase::LogLine;
using marlcase::LogRead;

LogRead read(const std::string& text)
{
    LogRead out;
    marlcase::readLog(text, "log", 0, out);
    return out;
}

TEST(LogReader, ReadsTheApplianceForm)
{
    const LogRead r = read("2024-05-02 14:03:07.512 I/VoiceEnginePlugIn( 4711): MarlEnginePlugin.cpp: "
                           "vcp_load_engine(120) > ====== START vcp_load_engine ======\n");
    ASSERT_EQ(1u, r.lines.size());
    const LogLine& l = r.lines[0];
    EXPECT_EQ(LogLine::Dated, l.clock);
    EXPECT_EQ('I', l.level);
    EXPECT_EQ("VoiceEnginePlugIn", l.tag);
    EXPECT_EQ(4711, l.pid);
    EXPECT_EQ(-1, l.tid);
    EXPECT_EQ("MarlEnginePlugin.cpp", l.source);
    EXPECT_EQ("vcp_load_engine", l.function);
    EXPECT_EQ(120, l.sourceLine);
    EXPECT_EQ("====== START vcp_load_engine ======", l.text);
    // 2024-05-02 is day 19845 since the epoch.
    EXPECT_EQ(19845LL * 86400000 + ((14 * 60 + 3) * 60 + 7) * 1000 + 512, l.ms);
    EXPECT_TRUE(r.problems.empty());
}

TEST(LogReader, ReadsTheTimeFormWithAndWithoutAZone)
{
    const LogRead r = read("05-02 14:03:07.512+0900 D/vcd     ( 4711): vcd_server.c: vcd_server_mgr_start(1112) > "
                           "[Server] set recognition mode = 1\n"
                           "05-02 14:03:07.600 E/vcd     (  12): vcd_server.c: f(1) > x\n");
    ASSERT_EQ(2u, r.lines.size()) << (r.problems.empty() ? "" : r.problems[0]);
    EXPECT_EQ(LogLine::YearLess, r.lines[0].clock);
    EXPECT_TRUE(r.lines[0].zoned);
    EXPECT_EQ(9 * 60, r.lines[0].zoneMinutes);
    EXPECT_EQ("vcd", r.lines[0].tag);
    EXPECT_EQ("[Server] set recognition mode = 1", r.lines[0].text);
    EXPECT_FALSE(r.lines[1].zoned);
    EXPECT_EQ(12, r.lines[1].pid);
    EXPECT_EQ(88, r.lines[1].ms - r.lines[0].ms);
}

TEST(LogReader, ReadsBothThreadtimeForms)
{
    const LogRead r = read("05-02 14:03:07.512+0000 D/VoiceEnginePlugIn(P 4711, T 4720): A.cpp: f(3) > one\n"
                           "05-02 14:03:07.513  4711  4721 W VoiceEnginePlugIn: A.cpp: g(4) > two\n");
    ASSERT_EQ(2u, r.lines.size()) << (r.problems.empty() ? "" : r.problems[0]);
    EXPECT_EQ(4711, r.lines[0].pid);
    EXPECT_EQ(4720, r.lines[0].tid);
    EXPECT_EQ("one", r.lines[0].text);
    EXPECT_EQ(4721, r.lines[1].tid);
    EXPECT_EQ('W', r.lines[1].level);
    EXPECT_EQ("VoiceEnginePlugIn", r.lines[1].tag);
    EXPECT_EQ("g", r.lines[1].function);
}

TEST(LogReader, ReadsKerneltimeAndBrief)
{
    const LogRead r = read("  123.456+0000 D/vcd(P   1, T   2): a.c: f(1) > k\nI/vcd     (   7): a.c: f(1) > b\n");
    ASSERT_EQ(2u, r.lines.size());
    EXPECT_EQ(LogLine::Boot, r.lines[0].clock);
    EXPECT_EQ(123456, r.lines[0].ms);
    EXPECT_EQ(LogLine::None, r.lines[1].clock);
    EXPECT_EQ(7, r.lines[1].pid);
}

TEST(LogReader, PutsAMessageWithANewlineBackTogetherInEachForm)
{
    // The appliance writes the rest of the message as it stands; the reader's
    // forms repeat the prefix on the message's next line.
    const LogRead appliance = read("2024-05-02 14:03:07.512 D/VoiceEnginePlugIn( 1): R.cpp: getDriverResponse(22) > "
                                   "driverResponse[{\"a\":1}\n]\n");
    ASSERT_EQ(1u, appliance.lines.size());
    EXPECT_EQ("driverResponse[{\"a\":1}\n]", appliance.lines[0].text);
    const LogRead threadtime = read("05-02 14:03:07.512+0000 D/VoiceEnginePlugIn(P    1, T    2): R.cpp: "
                                    "getDriverResponse(22) > driverResponse[{\"a\":1}\n"
                                    "05-02 14:03:07.512+0000 D/VoiceEnginePlugIn(P    1, T    2): ]\n");
    ASSERT_EQ(1u, threadtime.lines.size());
    EXPECT_EQ(appliance.lines[0].text, threadtime.lines[0].text);
}

TEST(LogReader, NamesEachLineItCannotRead)
{
    const LogRead r = read("--------- beginning of main\n"
                           "this is not a log line\n"
                           "05-02 14:03:07.512+0000 D/vcd(P 1, T 2): a.c: f(1) > fine\n"
                           "13-40 99:03:07.512 D/vcd( 1): bad date\n"
                           "05-02 14:03:0");
    EXPECT_EQ(1u, r.lines.size());
    ASSERT_EQ(3u, r.problems.size());
    EXPECT_NE(std::string::npos, r.problems[0].find("log:2: not a line of the platform log")) << r.problems[0];
    EXPECT_NE(std::string::npos, r.problems[1].find("log:4:")) << r.problems[1];
    EXPECT_NE(std::string::npos, r.problems[2].find("log:5: the log ends in the middle of this line")) << r.problems[2];
    EXPECT_EQ(1u, r.otherLines);
}

TEST(LogReader, RefusesBinaryData)
{
    const LogRead r = read(std::string("\x7f" "ELF\x02\x01\x01\0\0\0", 10) + "\n");
    EXPECT_TRUE(r.lines.empty());
    ASSERT_EQ(1u, r.problems.size());
    EXPECT_NE(std::string::npos, r.problems[0].find("NUL")) << r.problems[0];
}

TEST(LogReader, ReadsASecureLogLineAsWhatItSays)
{
    const LogRead r = read("05-02 14:03:07.512+0000 D/vcd     (P  12, T  12): vcd_server.c: f(9) > [SECURE_LOG] "
                           "[Server] set recognition mode = 0\n");
    ASSERT_EQ(1u, r.lines.size());
    EXPECT_EQ("[Server] set recognition mode = 0", r.lines[0].text);
}

TEST(LogReader, SplitsTheLocationOfAMessage)
{
    std::string source, function, text;
    int line = 0;
    ASSERT_TRUE(marlcase::splitLocation("ServerTtsManager.cpp: ~ServerTtsManager(12) > bye", source, function, line, text));
    EXPECT_EQ("ServerTtsManager.cpp", source);
    EXPECT_EQ("~ServerTtsManager", function);
    EXPECT_EQ(12, line);
    EXPECT_EQ("bye", text);
    EXPECT_FALSE(marlcase::splitLocation("[Server] Event(0), Text(a: b(1) > c)", source, function, line, text));
    EXPECT_FALSE(marlcase::splitLocation("a.c: f(x) > y", source, function, line, text));
}

// The plug-in's lines of a small session, in the appliance's form.
std::string pluginLog(int pid, const std::string& day = "2024-05-02")
{
    std::string log;
    int ms = 0;
    auto add = [&](const std::string& where, const std::string& text) {
        char stamp[64];
        std::snprintf(stamp, sizeof stamp, "%s 14:00:%02d.%03d D/VoiceEnginePlugIn(%5d): ", day.c_str(), ms / 1000,
                      ms % 1000, pid);
        log += stamp + where + " > " + text + "\n";
        ms += 1;
    };
    add("MarlEnginePlugin.cpp: vcp_load_engine(105)", "====== START vcp_load_engine ======");
    add("MarlEngineWrapper.cpp: setLanguage(221)", "Language changes is : en-US ");
    add("MarlEngineWrapper.cpp: setLanguage(221)", "Language changes is : en_GB ");
    add("MarlEnginePlugin.cpp: MarlEngine_set_commands(389)", "====== MarlEngine_set_commands ======");
    add("MarlEnginePlugin.cpp: vcpd_foreach_command_cb_local(348)", "type (1) format(3)");
    add("MarlEnginePlugin.cpp: vcpd_foreach_command_cb_local(361)", "current_count[1]");
    add("MarlEnginePlugin.cpp: vcpd_foreach_command_cb_local(371)", "commandText[set the fridge to], length of commandText[17]");
    add("MarlEnginePlugin.cpp: MarlEngine_set_commands(411)", "MarlEngine_set_commands json array is ready...");
    add("MarlEnginePlugin.cpp: MarlEngine_set_private_data(447)", "====== Set private data ======");
    add("DaDeviceMusicDataRetrieverImpl.cpp: setVolumeLevel(27)", "volumeLevel[7]");
    add("MarlEnginePlugin.cpp: MarlEngine_start(305)", "Current Context[2]");
    for (int i = 0; i < 5; ++i)
        add("MarlEngineWrapper.cpp: processAudio(394)", "epd[0]");
    add("MarlEngineWrapper.cpp: onBeginningOfSpeech(518)", "");
    add("MarlEngineWrapper.cpp: processAudio(394)", "epd[0]");
    ms += 500;
    add("MarlEngineWrapper.cpp: onPartialResult(440)", "Partial asr_result[set the]");
    add("MarlEngineWrapper.cpp: onASRResult(455)", "asr_result[set the fridge to 3], engineType[CLOUD], confidence[1]");
    add("MarlEngineWrapper.cpp: onNLUResult(472)", "nlu_result[{\"a\":1}], engineType[CLOUD], confidence[1]");
    add("MarlEngineWrapper.cpp: onNLUResult(473)", "ttsBuffer[0x55d0], ttsBufferLen[4800], isTTSLast[1]");
    add("MarlEngineWrapper.cpp: onParseAction(539)", "engine Type[CLOUD], response Type[1], isLast[1]");
    add("OrvaneCloudParserHandle.cpp: executeOVAction(81)", "actionType[Keep Context]");
    add("OrvaneCloudParserHandle.cpp: executeOVAction(94)",
        "agentName[Fridge], commandName[Set], actionName[Set Temp], spokenText[Done], really]");
    add("MarlEngineWrapper.cpp: executeParserAction(578)", "NLU result[{\"t\":3}] agentName[Fridge] commandName[Set]");
    add("MarlEnginePlugin.cpp: MarlEngine_start(305)", "Current Context[1]");
    add("MarlEngineWrapper.cpp: onError(500)", "errorCode[7], errorMsg[no network]");
    return log;
}

std::vector<marlcase::Session> sessions(const std::vector<std::string>& texts, std::vector<std::string>& warnings)
{
    static marlcase::Logs logs;  // the sessions point into its lines
    logs = marlcase::Logs();
    for (size_t i = 0; i < texts.size(); ++i) {
        logs.names.push_back("log" + std::to_string(i));
        logs.reads.emplace_back();
        marlcase::readLog(texts[i], logs.names.back(), i, logs.reads.back());
    }
    std::vector<std::string> problems;
    auto out = marlcase::sessionsOf(logs, problems, warnings);
    EXPECT_TRUE(problems.empty()) << problems.front();
    return out;
}

TEST(Sessions, TurnsHoldTheServersEventsAsThePlugInLoggedThem)
{
    std::vector<std::string> warnings;
    const auto s = sessions({pluginLog(4711)}, warnings);
    ASSERT_EQ(1u, s.size());
    EXPECT_EQ("en_GB", s[0].language);
    ASSERT_EQ(1u, s[0].commands.size());
    EXPECT_EQ("set the fridge to", s[0].commands[0].text);
    EXPECT_EQ(3, s[0].commands[0].format);
    EXPECT_EQ(1, s[0].commands[0].id);
    ASSERT_EQ(1u, s[0].privateData.size());
    EXPECT_EQ("MediaVolume", s[0].privateData[0]["key"].asString());
    EXPECT_EQ("7", s[0].privateData[0]["data"].asString());
    ASSERT_EQ(2u, s[0].turns.size());
    const marlcase::Turn& t = s[0].turns[0];
    EXPECT_EQ(6, t.chunks);
    EXPECT_EQ(5, t.beginAfter);
    EXPECT_EQ(-1, t.endAfter);
    std::vector<std::string> types;
    for (const auto& e : t.events)
        types.push_back(e.json["type"].asString());
    EXPECT_EQ((std::vector<std::string>{"wait", "partial", "asr", "nlu", "action"}), types);
    EXPECT_EQ(500, t.events[0].json["ms"].asInt());
    EXPECT_EQ(4800, t.events[3].json["speechBytes"].asInt());
    EXPECT_TRUE(t.events[3].json["last"].asBool());
    const Json::Value& action = t.events[4].json;
    EXPECT_EQ("Fridge", action["agent"].asString());
    EXPECT_EQ("Done], really", action["spokenText"].asString());
    EXPECT_EQ("{\"t\":3}", action["rawJson"].asString());
    EXPECT_EQ("Keep Context", action["actionType"].asString());
    // asr callbacks: the partial and the final text.
    ASSERT_EQ(2u, t.callbacks.size());
    EXPECT_EQ(1, t.callbacks[0].json["event"].asInt());
    // An error before any text reaches the daemon.
    const marlcase::Turn& second = s[0].turns[1];
    ASSERT_EQ(1u, second.callbacks.size());
    EXPECT_EQ("error", second.callbacks[0].json["kind"].asString());
    EXPECT_EQ(-1048628, second.callbacks[0].json["code"].asInt());
}

TEST(Sessions, TheDaemonsLinesGiveTheCommandsTheStopsAndTheResults)
{
    const std::string d = "2024-05-02 14:00:00.000 D/vcd( 4711): ";
    const std::string daemon =
        d + "vcd_engine_agent.c: __foreach_command(448) > [Engine Agent] Request foreach command from engine\n" + d +
        "vcd_client_data.c: vcd_client_foreach_command(554) > [Client Data] System : id(31) index(0) format(3) domain(2) "
        "command(set the fridge to) param(temp)\n" +
        d + "vcd_server.c: vcd_server_mgr_start(1112) > [Server] set recognition mode = 1\n" + d +
        "vcd_dbus_server.c: vcd_dbus_server_mgr_cancel(641) > [IN] vcd mgr cancel : pid(4711)\n" + d +
        "vcd_engine_agent.c: __result_cb(491) > [Engine Agent SUCCESS] Get nlp info : {\"n\":1}\n" + d +
        "vcd_server.c: __vcd_server_result_cb(296) > [Server] Event(0), Text(set the fridge to 3) Nonfixed((null)) "
        "Msg(vc.result.message.none) Result count(1)\n" +
        d + "vcd_server.c: __vcd_server_result_cb(380) > [Server]   [0] Result ID(31)\n" + d +
        "vcd_server.c: vcd_server_mgr_start(1112) > [Server] set recognition mode = 1\n";
    std::vector<std::string> warnings;
    const auto s = sessions({pluginLog(4711), daemon}, warnings);
    ASSERT_EQ(1u, s.size());
    ASSERT_EQ(1u, s[0].commands.size());
    EXPECT_EQ(31, s[0].commands[0].id);
    EXPECT_EQ(4, s[0].commands[0].type);
    EXPECT_EQ(2, s[0].commands[0].domain);
    EXPECT_EQ("temp", s[0].commands[0].param.asString());
    EXPECT_EQ(1, s[0].recognitionMode);
    ASSERT_EQ(2u, s[0].turns.size());
    EXPECT_EQ("cancel", s[0].turns[0].end);
    ASSERT_EQ(1u, s[0].turns[0].callbacks.size());
    const Json::Value& result = s[0].turns[0].callbacks[0].json;
    EXPECT_EQ("set the fridge to 3", result["allResult"].asString());
    EXPECT_TRUE(result["nonFixedResult"].isNull());
    EXPECT_EQ("{\"n\":1}", result["nluResult"].asString());
    EXPECT_EQ(31, result["ids"][0].asInt());
    EXPECT_TRUE(s[0].turns[1].callbacks.empty());
}

TEST(Sessions, AnNlpInfoLineAfterANewTurnWaitsForTheServersResult)
{
    // The engine agent tells a result, a new turn starts before the server's
    // line, and the agent's nlp info comes then: it belongs to the result the
    // server tells next, not to the new turn's (still empty) callbacks.
    const std::string d = "2024-05-02 14:00:00.000 D/vcd( 4711): ";
    const std::string daemon =
        d + "vcd_server.c: vcd_server_mgr_start(1112) > [Server] set recognition mode = 1\n" + d +
        "vcd_engine_agent.c: __result_cb(480) > [Engine agent] Event(0), Count(1) Text(set the fridge to 3) "
        "Nonfixed((null)) Msg(vc.result.message.none)\n" +
        d + "vcd_server.c: vcd_server_mgr_start(1112) > [Server] set recognition mode = 1\n" + d +
        "vcd_engine_agent.c: __result_cb(491) > [Engine Agent SUCCESS] Get nlp info : {\"n\":2}\n" + d +
        "vcd_server.c: __vcd_server_result_cb(296) > [Server] Event(0), Text(set the fridge to 4) Nonfixed((null)) "
        "Msg(vc.result.message.none) Result count(1)\n";
    std::vector<std::string> warnings;
    const auto s = sessions({pluginLog(4711), daemon}, warnings);
    ASSERT_EQ(1u, s.size());
    ASSERT_EQ(2u, s[0].turns.size());
    ASSERT_EQ(1u, s[0].turns[0].callbacks.size());
    EXPECT_FALSE(s[0].turns[0].callbacks[0].json.isMember("nluResult"));
    ASSERT_EQ(1u, s[0].turns[1].callbacks.size());
    EXPECT_EQ("set the fridge to 4", s[0].turns[1].callbacks[0].json["allResult"].asString());
    EXPECT_EQ("{\"n\":2}", s[0].turns[1].callbacks[0].json["nluResult"].asString());
}

TEST(Sessions, TakesTheLinesOfEachProcessApartAndSaysSo)
{
    // Two processes logging at once, their lines interleaved.
    const std::string a = pluginLog(100), b = pluginLog(200);
    std::string mixed;
    size_t i = 0, j = 0;
    while (i < a.size() || j < b.size()) {
        const size_t ni = a.find('\n', i), nj = b.find('\n', j);
        if (i < a.size())
            mixed += a.substr(i, ni - i + 1), i = ni + 1;
        if (j < b.size())
            mixed += b.substr(j, nj - j + 1), j = nj + 1;
    }
    std::vector<std::string> warnings;
    const auto s = sessions({mixed}, warnings);
    ASSERT_EQ(2u, s.size());
    EXPECT_EQ(2u, s[0].turns.size());
    EXPECT_EQ(2u, s[1].turns.size());
    ASSERT_EQ(1u, warnings.size());
    EXPECT_NE(std::string::npos, warnings[0].find("2 processes (100, 200)")) << warnings[0];
}

// A turn whose chunks come `paceMs` apart.
std::string pacedTurn(int paceMs)
{
    std::string log = "2024-05-02 14:00:00.000 D/VoiceEnginePlugIn(  9): MarlEnginePlugin.cpp: MarlEngine_start(305) > "
                      "Current Context[2]\n";
    for (int i = 0; i < 20; ++i) {
        char line[160];
        std::snprintf(line, sizeof line,
                      "2024-05-02 14:00:%02d.%03d D/VoiceEnginePlugIn(  9): MarlEngineWrapper.cpp: processAudio(394) > epd[0]\n",
                      (i + 1) * paceMs / 1000, (i + 1) * paceMs % 1000);
        log += line;
    }
    return log;
}

TEST(Sessions, AudioFedInRealTimeTellsTheDaemonByItsPace)
{
    std::vector<std::string> warnings;
    EXPECT_TRUE(sessions({pacedTurn(10)}, warnings)[0].platformDaemon);
    EXPECT_FALSE(sessions({pacedTurn(20)}, warnings)[0].platformDaemon);
    EXPECT_FALSE(sessions({pacedTurn(0)}, warnings)[0].platformDaemon);
}

TEST(Sessions, SeveralLoadsAreSeveralSessions)
{
    std::vector<std::string> warnings;
    const auto s = sessions({pluginLog(5) + pluginLog(5)}, warnings);
    EXPECT_EQ(2u, s.size());
    EXPECT_TRUE(warnings.empty());
}

TEST(Sessions, LinesOfOtherTagsOnlyAreNothingToBuildFrom)
{
    marlcase::Logs logs;
    logs.reads.emplace_back();
    marlcase::readLog("2024-05-02 14:00:00.000 D/sound( 9): a.c: f(1) > x\n", "log", 0, logs.reads.back());
    std::vector<std::string> problems, warnings;
    EXPECT_TRUE(marlcase::sessionsOf(logs, problems, warnings).empty());
    ASSERT_EQ(1u, problems.size());
    EXPECT_NE(std::string::npos, problems[0].find("nothing to build from")) << problems[0];
}

}  // namespace
