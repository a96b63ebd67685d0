#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_CUSTOM_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_CUSTOM_DATA_H

#include <map>
#include <string>

// json-glib's object type (JsonObject is a typedef of this struct).
struct _JsonObject;

// What the speech library asks the product for: the NLU context parameters
// and the recognition state. Whatever the operations return passes to the
// caller, who frees it. The order of the virtual operations is shared with
// the library; the destructor comes last.
class IEngineRetrieveDeviceCustomData {
public:
    virtual std::map<std::string, _JsonObject*>* getCustomDomainData() { return nullptr; }
    virtual _JsonObject* getCustomRecoStateData() { return nullptr; }
    virtual ~IEngineRetrieveDeviceCustomData() {}
};

#endif
