#ifndef DA_CUSTOMIZED_RECOGNITION_MODE_RETRIEVER_H
#define DA_CUSTOMIZED_RECOGNITION_MODE_RETRIEVER_H

#include "RetrieveManager/ICustomizedRecognitionMode.h"

// The appliance's recognition mode. No state generator is built yet: the
// interface's answer (no recognition state) stands.
class DaCustomizedRecognitionModeRetriever : public ICustomizedRecognitionMode {
};

#endif
