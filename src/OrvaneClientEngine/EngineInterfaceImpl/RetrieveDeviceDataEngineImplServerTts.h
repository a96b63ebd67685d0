#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_SERVER_TTS_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_SERVER_TTS_H

#include "ClientManager/OrvaneMaster.h"

#include <asr-nlu/IEngineRetrieveDeviceServerTtsData.h>

#include <string>

// The server speech facet: whether the server speaks, and with which voice,
// as the server defines of the customized retrievers tell.
class RetrieveDeviceDataEngineImplServerTts : public IEngineRetrieveDeviceServerTtsData, public OrvaneMaster {
public:
    RetrieveDeviceDataEngineImplServerTts();
    ~RetrieveDeviceDataEngineImplServerTts() override;

    bool getEnalbed() override;
    std::string getTeller() override;
};

#endif
