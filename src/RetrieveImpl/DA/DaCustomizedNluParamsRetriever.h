#ifndef DA_CUSTOMIZED_NLU_PARAMS_RETRIEVER_H
#define DA_CUSTOMIZED_NLU_PARAMS_RETRIEVER_H

#include "RetrieveManager/ICustomizedNluParams.h"

// The appliance's NLU parameter set. Its parameter groups are not composed yet:
// the interface's answer (no valid map) stands.
class DaCustomizedNluParamsRetriever : public ICustomizedNluParams {
};

#endif
