// The daemon's command walk into MarlEngine_set_commands, and a recognised text
// matched against what it gave. The input's first line is the text; each
// further line is one command: id, type, format, text, param and domain,
// separated by tabs ("<null>" for a null text).
#include "FuzzSupport.h"

#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <cstdlib>

namespace {

MarlEngineWrapper* gWrapper = nullptr;

int number(const std::vector<std::string>& fields, size_t index)
{
    return index < fields.size() ? static_cast<int>(std::strtol(fields[index].c_str(), nullptr, 10)) : 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    gWrapper = marlfuzz::loadEngineOnTheFuzzDevice();
    marlfuzz::runEmptyInput(LLVMFuzzerTestOneInput);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::vector<std::string> lines = marlfuzz::splitOn(std::string(reinterpret_cast<const char*>(data), size), '\n');
    auto& commands = marlfuzz::commands();
    commands.clear();
    for (size_t i = 1; i < lines.size() && commands.size() < 256; ++i) {
        const std::vector<std::string> f = marlfuzz::splitOn(lines[i], '\t');
        marlfuzz::Command c{number(f, 0), number(f, 1), number(f, 2), f.size() > 3 && f[3] == "<null>",
                            f.size() > 3 ? f[3] : "", f.size() > 4 ? f[4] : "", number(f, 5)};
        commands.push_back(c);
    }
    MarlEngine_set_commands(1);
    gWrapper->cloudResults.asrResult = lines[0];
    gWrapper->cloudResults.confidence = 1;
    gWrapper->determineResult("", "", "");
    MarlEngine_unset_commands();
    return 0;
}
