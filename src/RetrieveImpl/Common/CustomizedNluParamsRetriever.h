#ifndef CUSTOMIZED_NLU_PARAMS_RETRIEVER_H
#define CUSTOMIZED_NLU_PARAMS_RETRIEVER_H

#include "RetrieveManager/ICustomizedNluParams.h"

// Fallback: composes no NLU parameters and leaves the map alone.
class CustomizedNluParamsRetriever : public ICustomizedNluParams {
public:
    bool getNluParams(std::map<std::string, _JsonObject*>* list) override;
};

#endif
