#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGenRecipe.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "utils/MarlLog.h"

DARecognitionModeGenRecipe::DARecognitionModeGenRecipe() : mRefresher("Recipe"), mRegion(readRegion())
{
}

bool DARecognitionModeGenRecipe::makeRecoState()
{
    LOGD("region[%s]", mRegion.c_str());
    DADeviceDataAutoRefresher::DataMap rows = mRefresher.getDataMap();

    bool inFront = false;
    for (auto& entry : rows) {
        std::string appName = entry.second["appName"];
        if (appName == "Unknown") {
            if (mRegion == "US" || mRegion == "AU")
                appName = "1K3CsGDv16.Recipes";
            else if (mRegion == "KR")
                appName = "Pt0hRTNBBa.RecipeDeliCook";
        }
        if (Util::AppControl::isForeground(appName))
            inFront = true;
    }
    if (!inFront)
        return false;

    LOGD("Set recipe reco");
    mRecoState["name"] = RecognitionStateNames::DA_GLOBAL;
    mRecoState["context"].append(makeContext("Recipe", "Recipe Control"));
    return true;
}
