#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenMusic.h"

#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "RetrieveImpl/DA/DaDeviceMusicDataRetrieverImpl.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

namespace {

typedef DADeviceDataAutoRefresher::DataMap Rows;

const char* const PANDORA_APP = "g5kOHeKOMQ.Pandora";

// The rows of the appliance's music retriever; false when another retriever
// is in force.
bool readMusicRows(DeviceDataRetrieveManager* manager, Rows* rows)
{
    DaDeviceMusicDataRetrieverImpl* retriever = dynamic_cast<DaDeviceMusicDataRetrieverImpl*>(
        manager ? manager->getMusicRetriever() : nullptr);
    if (!retriever) {
        LOGE("music retriever is not the appliance's");
        return false;
    }
    *rows = retriever->getDataMap();
    LOGD("music app count[%zu]", rows->size());
    return true;
}

}  // namespace

DaDriverResponseGenMusic::DaDriverResponseGenMusic(Json::Value request) : DaDriverResponseGen(request)
{
    const std::string actionName = getActionName();
    LOGD("action[%s]", actionName.c_str());
    if (actionName == "Music App Request")
        makeMusicAppReply();
    else if (actionName == "Song Rating Status Check Request")
        makeSongRatingStatusCheckReply();
}

void DaDriverResponseGenMusic::makeMusicAppReply()
{
    Rows rows;
    if (!readMusicRows(getWrapper()->getDeviceDataRetrieveManager(), &rows))
        return;
    const std::string musicApp = getParameter("music_app");
    LOGD("music_app[%s]", musicApp.c_str());

    // Every app counts as available, even one without a row.
    dataNode["music_app"] = musicApp;
    dataNode["available"] = "Yes";
    dataNode["last_station"] = "Not Found";
    dataNode["is_login"] = "False";
    for (auto& entry : rows) {
        std::map<std::string, std::string>& row = entry.second;
        if (row["appName"] != musicApp)
            continue;
        // TuneIn needs no account.
        if (musicApp == "TuneIn")
            row["isLoggedIn"] = "1";
        if (row["isLoggedIn"] == "1")
            dataNode["is_login"] = "True";
        if (row["isLoggedIn"] == "1" && !row["stationName"].empty())
            dataNode["last_station"] = "Found";
    }
}

void DaDriverResponseGenMusic::makeSongRatingStatusCheckReply()
{
    Rows rows;
    if (!readMusicRows(getWrapper()->getDeviceDataRetrieveManager(), &rows))
        return;
    dataNode["status"] = "Disabled";
    dataNode["ratingStatus"] = "None";
    // Only a Pandora station that plays, or that is paused in front, can be rated.
    for (auto& entry : rows) {
        std::map<std::string, std::string>& row = entry.second;
        if (row["appName"] != "Pandora" || row["stationName"].empty() || row["isLoggedIn"] != "1")
            continue;
        if (row["musicPlaying"] != "1" && !Util::AppControl::isForeground(PANDORA_APP))
            continue;
        dataNode["status"] = "Enabled";
        if (row["currentSongRating"] == "1")
            dataNode["ratingStatus"] = "Liked";
    }
}
