// A driver request from the server, as the parser hands it to the customized
// driver-response retriever: any text, answered without a crash or a hang.
#include "FuzzSupport.h"

#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"


extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    marlfuzz::loadEngineOnTheFuzzDevice();
    marlfuzz::runEmptyInput(LLVMFuzzerTestOneInput);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string request(reinterpret_cast<const char*>(data), size);
    DaCustomizedDriverResponseRetriever retriever;
    const std::string answer = retriever.getDriverResponse(request);
    return 0;
}
