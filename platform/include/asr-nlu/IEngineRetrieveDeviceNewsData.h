#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_NEWS_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_NEWS_DATA_H

#include <string>

// What the speech library asks the device about news. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes last.
class IEngineRetrieveDeviceNewsData {
public:
    virtual std::string isFlipboardInstalled() { return "False"; }
    virtual ~IEngineRetrieveDeviceNewsData() {}
};

#endif
