#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_CUSTOM_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_CUSTOM_H

#include "ClientManager/OrvaneMaster.h"

#include <asr-nlu/IEngineRetrieveDeviceCustomData.h>

#include <map>
#include <string>

// The product's own data for the speech library: the NLU parameter set and
// the recognition state, passed on from the customized retrievers. What it
// returns belongs to the caller.
class RetrieveDeviceDataEngineImplCustom : public IEngineRetrieveDeviceCustomData, public OrvaneMaster {
public:
    RetrieveDeviceDataEngineImplCustom();
    ~RetrieveDeviceDataEngineImplCustom() override;

    std::map<std::string, _JsonObject*>* getCustomDomainData() override;
    _JsonObject* getCustomRecoStateData() override;
};

#endif
