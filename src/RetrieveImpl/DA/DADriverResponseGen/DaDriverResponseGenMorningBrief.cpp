#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenMorningBrief.h"

#include "utils/MarlLog.h"

DaDriverResponseGenMorningBrief::DaDriverResponseGenMorningBrief(Json::Value request)
    : DaDriverResponseGen(request), mProfileData("Profile")
{
    const std::string actionName = getActionName();
    LOGD("action[%s]", actionName.c_str());
    if (actionName == "Morning Brief Profiles Request")
        makeProfileInfoReply();
}

void DaDriverResponseGenMorningBrief::makeProfileInfoReply()
{
    dataNode["status"] = "One Profile";
    dataNode["title"] = "Common";
    dataNode["id"] = "1";
}
