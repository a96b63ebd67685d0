#include "RetrieveImpl/DA/DaCustomizedNluParamsRetriever.h"

#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGen.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenMornigBrief.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenRecipe.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenShoppingList.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenSystem.h"
#include "utils/MarlLog.h"
#include "utils/VcEngineJsonConverter.h"

#include <memory>
#include <vector>

bool DaCustomizedNluParamsRetriever::getNluParams(std::map<std::string, _JsonObject*>* list)
{
    VcEngineJsonConverter converter;
    // Owned here alone: a std::shared_ptr would export libstdc++ type information
    // from the plug-in, and a library that binds to it keeps the plug-in loaded.
    std::vector<std::unique_ptr<DANluParamsGen>> generators;
    generators.push_back(std::unique_ptr<DANluParamsGen>(new DANluParamsGenRecipe()));
    generators.push_back(std::unique_ptr<DANluParamsGen>(new DANluParamsGenMorningBrief()));
    generators.push_back(std::unique_ptr<DANluParamsGen>(new DANluParamsGenSystem()));
    generators.push_back(std::unique_ptr<DANluParamsGen>(new DANluParamsGenShoppingList()));

    for (const auto& generator : generators) {
        if (!generator)
            continue;
        const std::string name = generator->getAgentName();
        JsonObject* group = converter.stringToJson(generator->getNluParams());
        // Every generator runs; only a map can receive what they composed.
        const bool kept = list && list->insert(std::make_pair(name, group)).second;
        if (!kept && group)
            json_object_unref(group);
    }
    if (!list)
        LOGE("list is NULL");
    return true;
}
