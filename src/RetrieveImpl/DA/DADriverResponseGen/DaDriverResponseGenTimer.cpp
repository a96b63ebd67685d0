#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenTimer.h"

#include "RetrieveImpl/DA/DaDeviceTimerDataRetrieverImpl.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

typedef std::map<std::string, std::string> Row;
typedef DADeviceDataAutoRefresher::DataMap Rows;

// 99:59:59, the longest time a timer can hold.
const long long MAX_TIMER_SECONDS = 359999;

std::string formatSecondsAsClock(std::string seconds)
{
    const int total = atoi(seconds.c_str());
    char buffer[128] = {0};
    snprintf(buffer, sizeof(buffer), "%02d:%02d:%02d", total / 3600, total / 60 % 60, total % 60);
    return buffer;
}

// The time left: for a running timer until it rings, for a paused one what was
// left when it was last touched, otherwise the stored delay. Past the ringing
// time the result is negative.
int computeRemainingSeconds(const Row& row)
{
    const time_t now = time(nullptr);
    int remaining = atoi(row.at("delayTime").c_str());
    if (row.at("isrunning") == "1")
        remaining = static_cast<int>(atoi(row.at("expectedRingingTimeStamp").c_str()) - now);
    else if (row.at("isrunning") == "0" && row.at("expectedRingingTimeStamp") != "0")
        remaining = atoi(row.at("expectedRingingTimeStamp").c_str()) - atoi(row.at("lastUpdateTimeStamp").c_str());
    return remaining;
}

void makeTimerBlock(Json::Value& target, const Row& row, const std::string& seconds)
{
    target["id"] = row.at("id");
    target["isRunning"] = row.at("isrunning") == "1" ? "True" : "False";
    target["isRinging"] = row.at("isringing") == "1" ? "True" : "False";
    target["time"] = formatSecondsAsClock(seconds);
}

void makeTimerBlockByDelay(Json::Value& target, const Row& row)
{
    makeTimerBlock(target, row, row.at("delayTime"));
}

void makeTimerBlockByRemaining(Json::Value& target, const Row& row)
{
    makeTimerBlock(target, row, std::to_string(computeRemainingSeconds(row)));
}

int countRingingTimers(Rows& rows)
{
    int count = 0;
    for (auto& entry : rows) {
        if (entry.second["isringing"] == "1")
            ++count;
    }
    return count;
}

int countRunningNotRingingTimers(Rows& rows)
{
    int count = 0;
    for (auto& entry : rows) {
        if (entry.second["isrunning"] == "1" && entry.second["isringing"] == "0")
            ++count;
    }
    return count;
}

// The rows of the appliance's timer retriever; false when another retriever
// is in force.
bool readTimerRows(DeviceDataRetrieveManager* manager, Rows* rows)
{
    DaDeviceTimerDataRetrieverImpl* retriever = dynamic_cast<DaDeviceTimerDataRetrieverImpl*>(
        manager ? manager->getTimerRetriever() : nullptr);
    if (!retriever) {
        LOGE("timer retriever is not the appliance's");
        return false;
    }
    *rows = retriever->getDataMap();
    LOGD("timer count[%zu]", rows->size());
    return true;
}

}  // namespace

int strTimeToInt(const char* text)
{
    static const long long FACTORS[] = {31536000, 2592000, 86400, 3600, 60, 1};
    char* copy = text ? strdup(text) : nullptr;
    if (!copy)
        return 0;
    long long total = 0;
    char* rest = nullptr;
    char* token = strtok_r(copy, ", ", &rest);
    for (int i = 0; token && i < 6; ++i) {
        total += atoi(token) * FACTORS[i];
        token = strtok_r(nullptr, ", ", &rest);
    }
    free(copy);
    if (total > INT_MAX)
        return INT_MAX;
    if (total < INT_MIN)
        return INT_MIN;
    return static_cast<int>(total);
}

DaDriverResponseGenTimer::DaDriverResponseGenTimer(Json::Value request) : DaDriverResponseGen(request)
{
    const std::string actionName = getActionName();
    LOGD("action[%s]", actionName.c_str());
    if (actionName == "Cancel Timer Request")
        makeCancelTimerReply();
    else if (actionName == "Information Timer Request")
        makeInfomationTimerReply();
    else if (actionName == "Timer Request")
        makeTimerReply();
    else if (actionName == "Extend Timer Request")
        makeExtendTimerReply();
}

void DaDriverResponseGenTimer::makeExtendTimerReply()
{
    Rows rows;
    if (!readTimerRows(getWrapper()->getDeviceDataRetrieveManager(), &rows))
        return;
    const std::string id = getParameter("id");
    const std::string extendTime = getParameter("extendTime");
    LOGD("id[%s], extendTime[%s]", id.c_str(), extendTime.c_str());

    dataNode["status"] = "No Timer";
    if (rows.empty())
        return;
    dataNode["status"] = "Not Found";

    if (id.empty() && rows.size() > 1) {
        Json::Value items(Json::arrayValue);
        for (auto& entry : rows) {
            Json::Value item;
            item["id"] = entry.second["id"];
            items.append(item);
        }
        dataNode["status"] = "Multiple Found";
        dataNode["items"] = items;
        return;
    }

    // A lone timer is the one meant, whatever id the request names.
    for (auto& entry : rows) {
        Row& row = entry.second;
        if (row["id"] != id && rows.size() != 1)
            continue;
        makeTimerBlockByDelay(dataNode, row);
        const long long total = static_cast<long long>(atoi(row["delayTime"].c_str())) +
                                strTimeToInt(extendTime.c_str());
        LOGD("extended time[%lld]", total);
        if (total > MAX_TIMER_SECONDS) {
            dataNode["status"] = "Single Found InValid";
        } else {
            dataNode["status"] = "Single Found Valid";
            dataNode["id"] = row["id"];
        }
    }
}

void DaDriverResponseGenTimer::makeCancelTimerReply()
{
    Rows rows;
    if (!readTimerRows(getWrapper()->getDeviceDataRetrieveManager(), &rows))
        return;
    const int ringing = countRingingTimers(rows);
    const int running = countRunningNotRingingTimers(rows);
    const std::string id = getParameter("id");
    LOGD("id[%s], ringing[%d], running[%d]", id.c_str(), ringing, running);

    if (!id.empty()) {
        dataNode["status"] = "Not Found";
        for (auto& entry : rows) {
            if (entry.second["id"] != id)
                continue;
            makeTimerBlockByDelay(dataNode, entry.second);
            dataNode["status"] = "Single Found";
        }
        return;
    }
    if (rows.empty()) {
        dataNode["status"] = "No Timer";
        return;
    }
    if (ringing == 0 && running == 0) {
        dataNode["status"] = "No Running Timers";
        return;
    }

    // A ringing timer is the one to cancel before any that only runs.
    const char* const column = ringing > 0 ? "isringing" : "isrunning";
    if (ringing == 1 || (ringing == 0 && running == 1)) {
        dataNode["status"] = "Single Found";
        for (auto& entry : rows) {
            if (entry.second[column] == "1")
                makeTimerBlockByDelay(dataNode, entry.second);
        }
        return;
    }
    Json::Value timers(Json::arrayValue);
    for (auto& entry : rows) {
        if (entry.second[column] != "1")
            continue;
        Json::Value block;
        makeTimerBlockByDelay(block, entry.second);
        timers.append(block);
    }
    dataNode["status"] = ringing > 1 ? "Multiple Ringing" : "Multiple Running";
    dataNode["Timers"] = timers;
}

void DaDriverResponseGenTimer::makeInfomationTimerReply()
{
    Rows rows;
    if (!readTimerRows(getWrapper()->getDeviceDataRetrieveManager(), &rows))
        return;
    if (rows.empty()) {
        dataNode["status"] = "Not Found";
        return;
    }
    Json::Value timers(Json::arrayValue);
    for (const auto& entry : rows) {
        Json::Value block;
        makeTimerBlockByDelay(block, entry.second);
        timers.append(block);
    }
    dataNode["status"] = "Found";
    dataNode["Timers"] = timers;
}

void DaDriverResponseGenTimer::makeTimerReply()
{
    Rows rows;
    if (!readTimerRows(getWrapper()->getDeviceDataRetrieveManager(), &rows))
        return;
    const std::string id = getParameter("id");
    LOGD("id[%s]", id.c_str());

    if (!id.empty()) {
        dataNode["status"] = "Not Found";
        for (auto& entry : rows) {
            if (entry.second["id"] != id)
                continue;
            dataNode["status"] = "Single Found";
            makeTimerBlockByRemaining(dataNode, entry.second);
        }
        return;
    }
    if (rows.empty()) {
        dataNode["status"] = "Not Found";
        return;
    }
    if (rows.size() == 1) {
        dataNode["status"] = "Single Found";
        makeTimerBlockByRemaining(dataNode, rows.begin()->second);
        return;
    }
    Json::Value timers(Json::arrayValue);
    for (const auto& entry : rows) {
        Json::Value block;
        makeTimerBlockByRemaining(block, entry.second);
        timers.append(block);
    }
    dataNode["status"] = "Multiple Found";
    dataNode["Timers"] = timers;
}
