// Device descriptions, as marl-device and a scenario's "device" apply them to
// a device directory: any JSON is applied, or refused with a message.
#include "FuzzSupport.h"

#include "vappliance/Device.h"

#include <json/json.h>

#include <sstream>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    marlfuzz::makeDevice("{}");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Json::Value json;
    Json::CharReaderBuilder builder;
    std::string errors;
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    if (!Json::parseFromStream(builder, in, &json, &errors))
        return 0;
    std::string error;
    // "from" files are read relative to the fuzzer's own folder.
    vapp::applyDescription(json, MARL_FUZZ_DIR, &error);
    return 0;
}
