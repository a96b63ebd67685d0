#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_MEMO_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_MEMO_DATA_H

#include <string>

// What the speech library asks the device about voice memos. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes last.
class IEngineRetrieveDeviceMemoData {
public:
    virtual std::string isVoiceMemoSupported() { return "False"; }
    virtual std::string isMemoStorageAvailable() { return "False"; }
    virtual std::string isMemoInstalled() { return "False"; }
    virtual ~IEngineRetrieveDeviceMemoData() {}
};

#endif
