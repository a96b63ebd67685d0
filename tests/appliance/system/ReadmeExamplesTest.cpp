// The device.json examples in the READMEs of the media, system, network,
// location and vcsetting libraries are descriptions that apply as written.
#include "TestDevice.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> jsonBlocks(const std::string& path)
{
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    std::vector<std::string> blocks;
    const std::string content = text.str();
    for (size_t at = content.find("```json\n"); at != std::string::npos; at = content.find("```json\n", at)) {
        const size_t begin = at + 8;
        const size_t end = content.find("```", begin);
        if (end == std::string::npos)
            break;
        blocks.push_back(content.substr(begin, end - begin));
        at = end + 3;
    }
    return blocks;
}

}  // namespace

TEST(ReadmeExamples, DeviceDescriptionsApplyAsWritten)
{
    const char* source = std::getenv("MARL_SOURCE_DIR");
    ASSERT_NE(nullptr, source);
    for (const char* family : {"media", "system", "network", "location", "vcsetting"}) {
        const std::string readme = std::string(source) + "/appliance/" + family + "/README.md";
        const auto blocks = jsonBlocks(readme);
        EXPECT_FALSE(blocks.empty()) << readme;
        for (const auto& block : blocks) {
            Json::Value description;
            Json::CharReaderBuilder builder;
            std::string errors;
            std::istringstream in(block);
            ASSERT_TRUE(Json::parseFromStream(builder, in, &description, &errors)) << readme << "\n" << block << errors;
            marltest::TestDevice dev;
            std::string error;
            EXPECT_TRUE(vapp::applyDescription(description, dev.dir(), &error)) << readme << ": " << error;
        }
    }
}
