#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGenCommerce.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "utils/MarlLog.h"

namespace {

const char* const COMMERCE = "Commerce";

}  // namespace

const std::map<std::string, std::vector<std::string>> DARecognitionModeGenCommerce::gShoppingApps = {
    {"US", {"com.mastercard.tizen"}},
    {"KR",
     {"qLH6zwTE25.Emart", "org.tizen.WeblinkApps-LotteMart", "org.tizen.WeblinkApps-HomePlus",
      "org.tizen.WeblinkApps-thehyundai", "org.tizen.WeblinkApps-NaverFoodWindow"}},
};

DARecognitionModeGenCommerce::DARecognitionModeGenCommerce() : mRefresher(COMMERCE), mRegion(readRegion())
{
}

bool DARecognitionModeGenCommerce::makeRecoState()
{
    const auto apps = gShoppingApps.find(mRegion);
    if (apps == gShoppingApps.end())
        return false;
    for (const auto& app : apps->second) {
        if (!Util::AppControl::isForeground(app))
            continue;
        LOGD("shopping app[%s] in front", app.c_str());
        return mRegion == "KR" ? implMakeRecoStateKR() : implMakeRecoStateUS();
    }
    return false;
}

bool DARecognitionModeGenCommerce::implMakeRecoStateUS()
{
    std::map<std::string, std::string> row = mRefresher.getDataMap()[0];
    const std::string viewType = row["currentViewType"];
    if (viewType.empty() || viewType == "0")
        return false;

    const char* control = "Shopping App Control";
    if (viewType == "1")
        control = "Product Control";
    else if (viewType == "2")
        control = "Cart Control";

    mRecoState["name"] = RecognitionStateNames::DA_GLOBAL;
    mRecoState["context"] = Json::Value(Json::arrayValue);
    mRecoState["context"].append(makeContext(COMMERCE, control));
    return true;
}

bool DARecognitionModeGenCommerce::implMakeRecoStateKR()
{
    static const std::vector<std::string> controls = {"Cart Control", "Product Control", "Shopping App Control"};
    mRecoState["context"] = Json::Value(Json::arrayValue);
    for (const auto& control : controls)
        mRecoState["context"].append(makeContext(COMMERCE, control.c_str()));
    mRecoState["name"] = RecognitionStateNames::DA_GLOBAL;
    return true;
}
