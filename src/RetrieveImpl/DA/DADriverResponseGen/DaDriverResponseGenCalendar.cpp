#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGenCalendar.h"

#include "utils/MarlLog.h"

#include <cctype>
#include <cstdlib>

namespace {

typedef DADeviceDataAutoRefresher::DataMap Rows;

const int DEFAULT_TASK_LIMIT = 50;

const char* const EMPTY_ITEM_MEMBERS[] = {
    "month", "priority", "day", "dueYear", "location", "time24", "recurrenceOrdinals", "reminderDay", "subject",
    "id", "dueMonthNum", "recurrenceMonthList", "duration", "dueDay", "dueMonth", "monthNum", "isOrganizer",
    "reminderYear", "year", "taskStatus", "time12", "recurrence", "recurrenceWeekDayList", "reminderMonth",
    "reminderTime12", "reminderTime24", "reminderMonthNum"};

std::string toLower(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

DaDriverResponseGenCalendar::DaDriverResponseGenCalendar(Json::Value request)
    : DaDriverResponseGen(request), mTaskData("Task"), mProfileData("Profile")
{
    const std::string actionName = getActionName();
    LOGD("action[%s]", actionName.c_str());
    if (actionName == "Calendar Profile Request")
        makeProfileInfoReply();
    else if (actionName == "Profile Task Full Check Request")
        makeAddTaskReply();
    else if (actionName == "Calendar Profile Task Lookup Request")
        makeSearchTaskReply();
    else if (actionName == "Calendar Profile Item Lookup Request")
        makeSearchCalendarReply();
}

void DaDriverResponseGenCalendar::makeProfileInfoReply()
{
    Rows rows = mProfileData.getDataMap();
    LOGD("profile count[%zu]", rows.size());
    if (rows.empty()) {
        dataNode["status"] = "NoFound";
        return;
    }
    std::string userName = getParameter("userName");
    if (!userName.empty())
        userName = toLower(userName);
    LOGD("userName[%s]", userName.c_str());

    // The first profile whose name matches in any case is the one meant.
    Json::Value items(Json::arrayValue);
    for (auto& entry : rows) {
        Json::Value item;
        item["userId"] = entry.second["userId"];
        item["username"] = entry.second["userName"];
        items.append(item);
        if (toLower(entry.second["userName"]) == userName) {
            items.clear();
            items.append(item);
            dataNode["status"] = "OneFound";
            dataNode["items"] = items;
            return;
        }
    }
    dataNode["status"] = "ManyFound";
    dataNode["items"] = items;
}

void DaDriverResponseGenCalendar::makeAddTaskReply()
{
    Rows rows = mTaskData.getDataMap();
    LOGD("task row count[%zu]", rows.size());
    if (rows.empty()) {
        dataNode["status"] = "Not Found";
        return;
    }
    int limit = DEFAULT_TASK_LIMIT;
    int count = 0;
    std::string username = getParameter("username");
    if (!username.empty())
        username = toLower(username);
    LOGD("username[%s]", username.c_str());

    // The limit is the one of the table's first row.
    for (auto& entry : rows) {
        if (toLower(entry.second["userName"]) != username)
            continue;
        limit = atoi(rows[0]["maxItemCounts"].c_str());
        count = atoi(entry.second["itemCounts"].c_str());
        LOGD("itemCounts[%d], maxItemCounts[%d]", count, limit);
        break;
    }
    dataNode["status"] = count < limit ? "Not Full" : "Full";
}

void DaDriverResponseGenCalendar::makeSearchTaskReply()
{
    Rows rows = mTaskData.getDataMap();
    LOGD("task row count[%zu]", rows.size());
    if (rows.empty()) {
        dataNode["status"] = "No Tasks";
        return;
    }
    const std::string username = getParameter("username");
    const std::string userId = getParameter("userId");
    LOGD("username[%s], userId[%s]", username.c_str(), userId.c_str());

    // The last row of the user decides.
    for (auto& entry : rows) {
        if (entry.second["userName"] != username || entry.second["userId"] != userId)
            continue;
        const int itemCounts = atoi(entry.second["itemCounts"].c_str());
        const int activatedItemCounts = atoi(entry.second["activatedItemCounts"].c_str());
        LOGD("itemCounts[%d], activatedItemCounts[%d]", itemCounts, activatedItemCounts);
        dataNode["status"] = itemCounts < 1 || activatedItemCounts < 1 ? "No Tasks" : "Multiple Tasks";
    }
    Json::Value item;
    setDefaultResponseValue(item, userId, username);
    Json::Value items(Json::arrayValue);
    items.append(item);
    dataNode["items"] = items;
}

void DaDriverResponseGenCalendar::makeSearchCalendarReply()
{
    const std::string username = getParameter("username");
    const std::string userId = getParameter("userId");
    LOGD("username[%s], userId[%s]", username.c_str(), userId.c_str());
    Json::Value item;
    setDefaultResponseValue(item, userId, username);
    Json::Value items(Json::arrayValue);
    items.append(item);
    items.append(item);
    dataNode["items"] = items;
    dataNode["status"] = "Multiple Items";
}

void DaDriverResponseGenCalendar::setDefaultResponseValue(Json::Value& item, std::string userId, std::string username)
{
    item["username"] = username;
    item["userId"] = userId;
    for (const char* member : EMPTY_ITEM_MEMBERS)
        item[member] = "";
}
