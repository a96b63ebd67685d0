// marl-sim talk: the lines of standard input are the turns of one session on
// one device, each told as it ends.
#include "SimRun.h"

#include <gtest/gtest.h>

#include <regex>

namespace
{

using namespace simtest;

SimResult talk(const Scratch& scratch, const std::string& input, const std::vector<std::string>& options = {})
{
    writeText(scratch.path("input.txt"), input);
    std::string command = "env -u MARL_DEVICE_DIR -u MARL_PLUGIN " + quoteArg(MARL_SIM) + " talk --fast";
    for (const std::string& o : options)
        command += " " + quoteArg(o);
    command += " <" + quoteArg(scratch.path("input.txt").string()) + " >" +
               quoteArg(scratch.path("stdout.txt").string()) + " 2>" + quoteArg(scratch.path("stderr.txt").string());
    const int status = std::system(command.c_str());
    SimResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = readText(scratch.path("stdout.txt"));
    result.err = readText(scratch.path("stderr.txt"));
    return result;
}

TEST(Talk, EachLineIsATurnOfOneSessionAndTheSecondFindsTheTimerOfTheFirst)
{
    Scratch scratch;
    const SimResult run = talk(scratch, "set a timer for five minutes\nhow much time is left on the timer\n",
                               {"--device", scratch.path("device").string(), "--clock", "2025-03-03T08:00:00Z"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const std::regex told(
        "device: .*\n\n"
        "heard:  set a timer for five minutes?\n"
        "answer: Timer set for 5 minutes\\.\n"
        "audio:  /home/owner/share/ServerTTS\\.pcm \\(24 kHz\\), as WAV .*/answers/turn-1\\.wav\n"
        "app:    org\\.tizen\\.fridge-timer: timer 1 set for 5 minutes; it runs\n\n"
        "heard:  how (much time|long) is left on (the|my) timer\n"
        "answer: 4 minutes and (5[0-9]|4[0-9]) seconds left on your timer\\.\n"
        "audio:  .*/answers/turn-2\\.wav\n"
        "app:    org\\.tizen\\.fridge-timer: shows its timers \\(\"Show Timer\"\\); nothing changes\n\n");
    EXPECT_TRUE(std::regex_match(run.out, told)) << run.out;
}

TEST(Talk, AnEmptyLineEndsTheSession)
{
    Scratch scratch;
    const SimResult run = talk(scratch, "what timers do i have\n\nset a timer for five minutes\n");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("answer: You have no timers."), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("set a timer"), std::string::npos) << run.out;
}

TEST(Talk, NormalizedFormIsForTheOtherCommands)
{
    Scratch scratch;
    const SimResult run = talk(scratch, "", {"--normalized"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("--normalized is for run, say and listen"), std::string::npos) << run.err;
}

}  // namespace
