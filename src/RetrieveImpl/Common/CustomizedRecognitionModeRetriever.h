#ifndef CUSTOMIZED_RECOGNITION_MODE_RETRIEVER_H
#define CUSTOMIZED_RECOGNITION_MODE_RETRIEVER_H

#include "RetrieveManager/ICustomizedRecognitionMode.h"

// Fallback: no recognition mode.
class CustomizedRecognitionModeRetriever : public ICustomizedRecognitionMode {
public:
    _JsonObject* getRecognitionMode() override;
};

#endif
