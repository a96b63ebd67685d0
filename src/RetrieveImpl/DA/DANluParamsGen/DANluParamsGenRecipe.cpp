#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenRecipe.h"
#include "utils/VconfText.h"

#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "utils/MarlLog.h"

namespace {

const char* const RECIPE_NOT_SUPPORTED = "RecipeNotSupported";
const char* const RECIPES = "1K3CsGDv16.Recipes";
const char* const RECIPES_KR = "Pt0hRTNBBa.RecipeDeliCook";
const char* const RECIPES_WEB_LINK = "org.tizen.WeblinkApps-Allrecipes";
const char* const RECIPES_WEB_LINK_FR = "org.tizen.WeblinkApps-Marmiton";

// The row's value of `column`, or `fallback` when it is empty or missing.
std::string valueOr(const std::map<std::string, std::string>& row, const char* column, const char* fallback)
{
    const auto found = row.find(column);
    if (found == row.end() || found->second.empty())
        return fallback;
    return found->second;
}

}  // namespace

DANluParamsGenRecipe::DANluParamsGenRecipe()
    : DANluParamsGen("Recipe"), mRefresher("Recipe"), mRegion("US"), mCountry("US")
{
    mRegion = readVconfText("db/setting/region_code", mRegion);
    mCountry = readVconfText("db/setting/country_code", mCountry);
}

void DANluParamsGenRecipe::makeParams()
{
    const DADeviceDataAutoRefresher::DataMap rows = mRefresher.getDataMap();

    dataNode["isRecipeOpen"] = "False";
    dataNode["isRecipeOpenStartReadOutReadOutPlaying"] = "False,False,False";
    dataNode["currentStep"] = "First";
    dataNode["isLoggedIn"] = "False";
    dataNode["recipeSearchEnabled"] = "False";

    LOGD("region[%s], country[%s], rows[%zu]", mRegion.c_str(), mCountry.c_str(), rows.size());
    if (mRegion == "EU")
        _makeWebLinkParams();
    else
        _makeStoredAppParams(rows);
}

void DANluParamsGenRecipe::_makeWebLinkParams()
{
    std::string package = RECIPES_WEB_LINK;
    if (mCountry == "FR")
        package = RECIPES_WEB_LINK_FR;
    else if (mCountry == "SE" || mCountry == "NO")
        package = RECIPE_NOT_SUPPORTED;

    if (package == RECIPE_NOT_SUPPORTED)
        dataNode["isRecipeOpen"] = "NotSupported";
    else if (Util::AppControl::isForeground(package))
        dataNode["isRecipeOpen"] = "True";
}

void DANluParamsGenRecipe::_makeStoredAppParams(const DADeviceDataAutoRefresher::DataMap& rows)
{
    for (const auto& entry : rows) {
        const std::map<std::string, std::string>& row = entry.second;
        std::string package = valueOr(row, "appName", "");
        if (package == "Unknown" && (mRegion == "US" || mRegion == "AU"))
            package = RECIPES;
        if (package == "Unknown" && mRegion == "KR")
            package = RECIPES_KR;

        dataNode["isLoggedIn"] = valueOr(row, "isLoggedIn", "False");
        if (mRegion == "KR")
            dataNode["isLoggedIn"] = "True";

        if (!Util::AppControl::isForeground(package))
            continue;

        const std::string states = valueOr(row, "isRecipeOpen", "False") + "," +
                                   valueOr(row, "StartReadOut", "False") + "," +
                                   valueOr(row, "ReadOutPlaying", "False");
        dataNode["recipeForegroundPkg"] = package;
        dataNode["isRecipeOpen"] = "True";
        dataNode["isRecipeOpenStartReadOutReadOutPlaying"] = states;
        dataNode["currentStep"] = valueOr(row, "currentStep", "First");
        return;
    }
}
