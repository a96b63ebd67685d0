// A driver request from the server, as the parser hands it to the customized
// driver-response retriever: any text, answered without a crash or a hang.
#include "FuzzSupport.h"

#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"

#include <fstream>
#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    std::ifstream in(MARL_FUZZ_DEVICE);
    std::stringstream text;
    text << in.rdbuf();
    marlfuzz::makeDevice(text.str());
    // The generators reach the managers through the engine, loaded as the
    // daemon has it before any request arrives.
    marlfuzz::loadEngine();
    // One empty input first: what the libraries below make once, at their
    // first use, is not an input's leak.
    static const uint8_t kNothing = 0;
    LLVMFuzzerTestOneInput(&kNothing, 0);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string request(reinterpret_cast<const char*>(data), size);
    DaCustomizedDriverResponseRetriever retriever;
    const std::string answer = retriever.getDriverResponse(request);
    return 0;
}
