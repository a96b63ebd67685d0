#ifndef DA_CUSTOMIZED_SERVER_DEFINE_RETRIEVER_H
#define DA_CUSTOMIZED_SERVER_DEFINE_RETRIEVER_H

#include "RetrieveManager/ICustomizedServerDefines.h"

// The appliance's server definitions, read afresh from the key store at each call.
class DaCustomizedServerDefineRetriever : public ICustomizedServerDefines {
public:
    bool useServerTts() override;
    bool userPlayServerTts() override;
    std::string getServerTtsAudioPath() override;
    std::string getAsrRampcode() override;
    std::string getNluRampcode() override;
    int getServerTtsTeller() override;
    int getTargetServerIndex() override;
};

#endif
