#include "RetrieveImpl/DA/DARecognitionModeGen/DARecognitionModeGenMorningBrief.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "utils/MarlLog.h"

DARecognitionModeGenMorningBrief::DARecognitionModeGenMorningBrief() : mRefresher("MorningBrief"), mAppId()
{
    const std::string region = readRegion();
    if (region == "KR" || region == "EU" || region == "US")
        mAppId = "org.tizen.morningBrief";
}

bool DARecognitionModeGenMorningBrief::makeRecoState()
{
    std::map<std::string, std::string> row = mRefresher.getDataMap()[0];
    if (!Util::AppControl::isForeground(mAppId))
        return false;

    // Any word but "False" or nothing counts as playing.
    const std::string playing = row["isMorningBriefPlaying"];
    if (playing == "False" || playing.empty())
        return false;

    mRecoState["name"] = RecognitionStateNames::DA_GLOBAL;
    mRecoState["context"].append(makeContext("Morning Brief", "Morning Brief Control"));
    return true;
}
