// Replays every session in scenarios/ and compares marl-sim's normalized
// transcript with the expected one stored beside it (NAME.expected).
//
// To take a new transcript as the expected one, run with
// MARL_UPDATE_EXPECTED=1: the test writes NAME.expected and is skipped; read
// the file (git diff) before keeping it.
#include "SimRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

namespace
{

using namespace simtest;

std::vector<std::string> scenarioNames()
{
    std::vector<std::string> names;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(MARL_SCENARIO_DIR, ec))
        if (entry.path().extension() == ".json")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

class ScenarioReplay : public ::testing::TestWithParam<std::string>
{
};

TEST_P(ScenarioReplay, TranscriptIsTheExpectedOne)
{
    const fs::path dir = MARL_SCENARIO_DIR;
    const fs::path scenario = dir / (GetParam() + ".json");
    const fs::path expected = dir / (GetParam() + ".expected");
    Scratch scratch;
    const SimResult run = runSim(scratch, {"run", scenario.string(), "--fast", "--normalized",
                                           "--device", scratch.path("device").string()});
    if (const char* update = std::getenv("MARL_UPDATE_EXPECTED"); update && *update == '1') {
        writeText(expected, run.out);
        GTEST_SKIP() << "wrote " << expected << " (exit " << run.exitCode
                     << "); read it before keeping it";
    }
    ASSERT_TRUE(fs::exists(expected)) << expected << " is missing; see sim/README.md";
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(readText(expected), run.out) << "stderr:\n" << run.err;
}

std::string testName(const ::testing::TestParamInfo<std::string>& info)
{
    std::string name;
    bool upper = true;
    for (char c : info.param) {
        if (!std::isalnum(static_cast<unsigned char>(c))) {
            upper = true;
            continue;
        }
        name += upper ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
        upper = false;
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioReplay, ::testing::ValuesIn(scenarioNames()), testName);

}  // namespace
