#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGenMornigBrief.h"
#include "utils/VconfText.h"

#include "utils/MarlLog.h"

DANluParamsGenMorningBrief::DANluParamsGenMorningBrief()
    : DANluParamsGen("Morning Brief"), mRefresher("MorningBrief"), mInstalled("False")
{
    const std::string region = readVconfText("db/setting/region_code", "US");
    mInstalled = (region == "KR" || region == "EU" || region == "US") ? "True" : "False";
}

void DANluParamsGenMorningBrief::makeParams()
{
    LOGD("");
    std::map<std::string, std::string> row = mRefresher.getDataMap()[0];
    dataNode["isMorningBriefInstalled"] = mInstalled;
    dataNode["isMorningBriefPlaying"] = row["isMorningBriefPlaying"] == "Play" ? "True" : "False";
}
