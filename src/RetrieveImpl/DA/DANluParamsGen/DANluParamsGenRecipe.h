#ifndef DA_NLU_PARAMS_GEN_RECIPE_H
#define DA_NLU_PARAMS_GEN_RECIPE_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGen.h"

#include <string>

// The group "Recipe": whether a recipe app is in front, whether it reads a
// recipe aloud and at which step it stands. Region "EU" asks the web-link
// recipe app of the country; other regions ask the apps of the "Recipe" rows.
class DANluParamsGenRecipe : public DANluParamsGen {
public:
    // Reads the region and country codes, "US" when unreadable.
    DANluParamsGenRecipe();

    void makeParams() override;

private:
    void _makeWebLinkParams();
    void _makeStoredAppParams(const DADeviceDataAutoRefresher::DataMap& rows);

    DADeviceDataAutoRefresher mRefresher;
    std::string mRegion;
    std::string mCountry;
};

#endif
