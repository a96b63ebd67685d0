#ifndef CUSTOMIZED_SERVER_DEFINE_RETRIEVER_H
#define CUSTOMIZED_SERVER_DEFINE_RETRIEVER_H

#include "RetrieveManager/ICustomizedServerDefines.h"

// Fallback server definitions: server speech on and played by the plug-in,
// the voice "M01", the Korean quality-assurance server.
class CustomizedServerDefineRetriever : public ICustomizedServerDefines {
public:
    bool useServerTts() override { return true; }
    bool userPlayServerTts() override { return false; }
    int getServerTtsTeller() override { return 1; }
    int getTargetServerIndex() override { return 50; }
};

#endif
