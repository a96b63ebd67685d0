#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenLaunchApps.h"
#include "utils/VconfText.h"

#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "utils/MarlLog.h"



namespace {

const char* const RECIPES = "1K3CsGDv16.Recipes";
const char* const RECIPES_KR = "Pt0hRTNBBa.RecipeDeliCook";
const char* const RECIPES_EU = "org.tizen.WeblinkApps-Allrecipes";
const char* const RECIPES_NOT_SUPPORTED = "RecipeNotSupported";

}  // namespace

DaDriverResponseGenLaunchApps::DaDriverResponseGenLaunchApps(Json::Value request) : DaDriverResponseGen(request)
{
    if (getActionName() != "App Request") {
        dataNode.clear();
        return;
    }
    std::string package = getParameter("package");
    const std::string region = readVconfText("db/setting/region_code", "US");
    const std::string country = readVconfText("db/setting/country_code", "US");
    LOGD("package[%s], region[%s], country[%s]", package.c_str(), region.c_str(), country.c_str());

    if (package == RECIPES) {
        if (region == "KR")
            package = RECIPES_KR;
        else if (region == "EU")
            package = RECIPES_EU;
        if (country == "SE" || country == "NO")
            package = RECIPES_NOT_SUPPORTED;
    }
    if (Util::AppControl::isInstalled(package))
        dataNode["launched"] = Util::AppControl::isForeground(package) ? "True" : "False";
    else
        dataNode["launched"] = "OtherCountry";
}
