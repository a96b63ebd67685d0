#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_SERVER_TTS_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_SERVER_TTS_DATA_H

#include <string>

// What the speech library asks the device about speech synthesised by the server. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes first.
class IEngineRetrieveDeviceServerTtsData {
public:
    virtual ~IEngineRetrieveDeviceServerTtsData() {}
    virtual bool getEnalbed() { return false; }
    virtual std::string getTeller() { return ""; }
};

#endif
