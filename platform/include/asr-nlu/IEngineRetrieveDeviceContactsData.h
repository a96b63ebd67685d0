#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_CONTACTS_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_CONTACTS_DATA_H

#include <string>

// What the speech library asks the device about contacts. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes last.
class IEngineRetrieveDeviceContactsData {
public:
    virtual std::string isContactsSupported() { return "False"; }
    virtual ~IEngineRetrieveDeviceContactsData() {}
};

#endif
