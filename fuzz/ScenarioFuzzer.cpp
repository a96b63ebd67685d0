// marl-sim's scenario files: any text is loaded, or refused with a message.
#include "Scenario.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    sim::Scenario scenario;
    std::string error;
    sim::parseScenario(std::string(reinterpret_cast<const char*>(data), size), "fuzz.json", scenario, error);
    return 0;
}
