#ifndef DA_CUSTOMIZED_NLU_PARAMS_RETRIEVER_H
#define DA_CUSTOMIZED_NLU_PARAMS_RETRIEVER_H

#include "RetrieveManager/ICustomizedNluParams.h"

#include <map>
#include <string>

// The appliance's NLU parameter set: the groups "Recipe", "Morning Brief",
// "System" and "ShoppingList", composed afresh on every call. A group that
// composed nothing stands in the map with a null object.
class DaCustomizedNluParamsRetriever : public ICustomizedNluParams {
public:
    bool getNluParams(std::map<std::string, _JsonObject*>* list) override;
};

#endif
