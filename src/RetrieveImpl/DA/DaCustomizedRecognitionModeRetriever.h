#ifndef DA_CUSTOMIZED_RECOGNITION_MODE_RETRIEVER_H
#define DA_CUSTOMIZED_RECOGNITION_MODE_RETRIEVER_H

#include "RetrieveManager/ICustomizedRecognitionMode.h"

// The appliance's recognition state, from the first generator that applies,
// asked in the order morning brief, recipe, commerce.
class DaCustomizedRecognitionModeRetriever : public ICustomizedRecognitionMode {
public:
    // A new json-glib object owned by the caller, or null when none applies.
    _JsonObject* getRecognitionMode() override;
};

#endif
