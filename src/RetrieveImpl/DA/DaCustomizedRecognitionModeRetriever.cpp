#include "RetrieveImpl/DA/DaCustomizedRecognitionModeRetriever.h"

#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGen.h"
#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGenCommerce.h"
#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGenMorningBrief.h"
#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGenRecipe.h"
#include "utils/MarlLog.h"
#include "utils/VcEngineJsonConverter.h"

#include <memory>
#include <vector>

_JsonObject* DaCustomizedRecognitionModeRetriever::getRecognitionMode()
{
    VcEngineJsonConverter converter;
    // Owned here alone: a std::shared_ptr would export libstdc++ type information
    // from the plug-in, and a library that binds to it keeps the plug-in loaded.
    std::vector<std::unique_ptr<DARecognitionModeGen>> generators;
    generators.push_back(std::unique_ptr<DARecognitionModeGen>(new DARecognitionModeGenMorningBrief()));
    generators.push_back(std::unique_ptr<DARecognitionModeGen>(new DARecognitionModeGenRecipe()));
    generators.push_back(std::unique_ptr<DARecognitionModeGen>(new DARecognitionModeGenCommerce()));

    for (const auto& generator : generators) {
        if (generator && generator->isValid())
            return converter.stringToJson(generator->getRecognitionMode());
    }
    LOGD("no recognition state applies");
    return nullptr;
}
