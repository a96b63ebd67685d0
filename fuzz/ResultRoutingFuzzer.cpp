// The server's events as the speech library hands them to the engine: a
// recognised text, an NLU text with a piece of speech, and the data of a parse
// (an action with its raw JSON, or a driver request), then the result routed to
// the daemon. The input is cut at lines "--" into the recognised text, the NLU
// text, the parse data and the speech bytes.
#include "FuzzSupport.h"

#include "fwWrapper/MarlEnginePlugin.h"
#include "fwWrapper/MarlEngineWrapper.h"

#include <asr-nlu/RecognitionAgentResponse.h>
#include <standin/SpeechStandIn.h>


namespace {
MarlEngineWrapper* gWrapper = nullptr;
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    gWrapper = marlfuzz::loadEngineOnTheFuzzDevice();
    marlfuzz::commands() = {{1, 1, 0, false, "open the fridge", "", 0},
                            {2, 2, 5, false, "#org.tizen.Timer", "", 0},
                            {3, 2, 5, false, "#org.tizen.Music", "", 0},
                            {4, 1, 3, false, "set", "", 0},
                            {5, 1, 4, false, "timer", "", 0}};
    MarlEngine_set_commands(1);
    marlfuzz::runEmptyInput(LLVMFuzzerTestOneInput);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::vector<std::string> p = marlfuzz::pieces(data, size, 4);
    gWrapper->onASRResult(p[0], "CLOUD", 1);
    gWrapper->onNLUResult(p[1], "CLOUD", 1, p[3].empty() ? nullptr : p[3].data(),
                          static_cast<unsigned int>(p[3].size()), true);
    RecognitionAgentResponse response;
    response.setEngineType("CLOUD");
    response.setResponseType(1);
    response.setIsLast(true);
    response.setData(p[2]);
    gWrapper->onParseAction(&response);
    marlfuzz::pumpMainLoop(3);
    gWrapper->determineResult("", "", "");
    MarlEngine_cancel();
    marlfuzz::pumpMainLoop(3);
    // A routed result may start a recognition: its device-data pull ends
    // before the next input (or the end of the process) comes.
    speech_standin_wait_idle(5000);
    return 0;
}
