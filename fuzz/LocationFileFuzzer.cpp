// The location files another program writes on the device: the position file
// read by the engine-side and the parser-side location getters, and the
// weather file read for the weather agent's answers. The input becomes both
// files, and every reader of them is asked.
#include "FuzzSupport.h"

#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplLocation.h"
#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplLocation.h"
#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"

#include <tzplatform_config.h>


namespace {
std::string gPositionFile;
std::string gWeatherFile;
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    marlfuzz::loadEngineOnTheFuzzDevice();
    gPositionFile = tzplatform_mkpath(TZ_USER_DATA, "AccInfoData.txt");
    gWeatherFile = tzplatform_mkpath(TZ_USER_DATA, "AccInfoPrev.txt");
    marlfuzz::runEmptyInput(LLVMFuzzerTestOneInput);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    marlfuzz::writeApplianceFile(gPositionFile, text);
    marlfuzz::writeApplianceFile(gWeatherFile, text);

    RetrieveDeviceDataEngineImplLocation engineSide;
    engineSide.getLatitude();
    engineSide.getLongitude();
    engineSide.getLatLong();

    RetrieveDeviceDataParserImplLocation parserSide;
    parserSide.getLatitude();
    parserSide.getLongitude();

    DaCustomizedDriverResponseRetriever retriever;
    for (const char* action : {"Location Request", "Forecast Request"})
        retriever.getDriverResponse(std::string("{\"Server Reqeust\": {\"agent\": \"Weather\", \"action\": {\"name\": \"") +
                                    action + "\"}}}");
    return 0;
}
