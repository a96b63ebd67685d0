#include "RetrieveImpl/DA/DaDeviceTimerDataRetrieverImpl.h"

#include "utils/LoggedValue.h"
#include "utils/MarlLog.h"

#include <orvane-parser/TimerData.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace {

const int STATUS_NO_TIMER = 1;
const int STATUS_RUNNING = 10;
const int STATUS_STOPPED = 12;
const int MAX_TIMER_COUNT = 20;
const int MAX_TIMER_ID = 1000;

}  // namespace

DaDeviceTimerDataRetrieverImpl::DaDeviceTimerDataRetrieverImpl() : DADeviceDataAutoRefresher("Timer")
{
    LOGD("");
}

DaDeviceTimerDataRetrieverImpl::~DaDeviceTimerDataRetrieverImpl()
{
    LOGD("");
}

bool DaDeviceTimerDataRetrieverImpl::appInstalled()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::support()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::supportByAppControl()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::supportCancel()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::supportConfirm()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::supportCreate()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::supportOwnWidgetControl()
{
    return LOGGED(false);
}

bool DaDeviceTimerDataRetrieverImpl::supportReset()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::supportShow()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::supportStart()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::supportStop()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::supportTask()
{
    return LOGGED(true);
}

std::string DaDeviceTimerDataRetrieverImpl::getTimerAppName()
{
    std::string timerAppName = "org.tizen.fridge-timer";
    LOGD("timerAppName[%s]", timerAppName.c_str());
    return timerAppName;
}

std::string DaDeviceTimerDataRetrieverImpl::getTimerTime()
{
    std::string timerTime = "00:00:00";
    LOGD("timerTime[%s]", timerTime.c_str());
    return timerTime;
}

int DaDeviceTimerDataRetrieverImpl::getTimerStatus()
{
    DataMap rows = getDataMap();
    int status = rows.empty() ? STATUS_NO_TIMER : STATUS_STOPPED;
    for (auto& row : rows) {
        if (row.second["isrunning"] == "1")
            status = STATUS_RUNNING;
    }
    LOGD("status[%d]", status);
    return status;
}

bool DaDeviceTimerDataRetrieverImpl::supportMultipleControl()
{
    return LOGGED(true);
}

bool DaDeviceTimerDataRetrieverImpl::getTimerList(std::vector<TimerData*>* list)
{
    DataMap rows = getDataMap();
    if (!list) {
        LOGE("list is NULL");
        return false;
    }
    bool retv = !rows.empty();
    for (auto& row : rows) {
        TimerData* timer = new (std::nothrow) TimerData();
        if (!timer) {
            LOGE("TimerData allocation failed");
            return false;
        }
        timer->setId(row.second["id"]);
        timer->setIsRunning(row.second["isrunning"] == "1" ? "True" : "False");
        // A negative delay goes through the same arithmetic as any other.
        const int seconds = _toInt(row.second["delayTime"]);
        char timerTime[128] = {0};
        snprintf(timerTime, sizeof(timerTime), "%02d:%02d:%02d", (seconds / 3600) % 24, (seconds / 60) % 60,
                 seconds % 60);
        timer->setTimerTime(timerTime);
        list->push_back(timer);
    }
    LOGD("retv[%d]", retv);
    return retv;
}

int DaDeviceTimerDataRetrieverImpl::getCurrentTimerCount()
{
    int timerCount = static_cast<int>(getDataMap().size());
    LOGD("timerCount[%d]", timerCount);
    return timerCount;
}

int DaDeviceTimerDataRetrieverImpl::getMaxTimerCount()
{
    LOGD("maxTimerCount[%d]", MAX_TIMER_COUNT);
    return MAX_TIMER_COUNT;
}

int DaDeviceTimerDataRetrieverImpl::getRunningTimerCount()
{
    DataMap rows = getDataMap();
    int count = 0;
    for (auto& row : rows) {
        if (row.second["isrunning"] == "1" && row.second["isringing"] == "0")
            ++count;
    }
    return count;
}

std::string DaDeviceTimerDataRetrieverImpl::getCreatableTimerId()
{
    DataMap rows = getDataMap();
    int top = 1;
    for (auto& row : rows) {
        int id = _toInt(row.second["id"]);
        if (id >= top)
            top = id;
    }
    if (top > MAX_TIMER_ID)
        top = MAX_TIMER_ID;

    std::vector<bool> used(top + 2, false);
    for (auto& row : rows) {
        int id = _toInt(row.second["id"]);
        if (id >= 0 && id <= MAX_TIMER_ID)
            used[id] = true;
    }
    int creatable = 1;
    for (size_t index = 1; index < used.size(); ++index) {
        if (!used[index]) {
            creatable = static_cast<int>(index);
            break;
        }
    }
    return std::to_string(creatable);
}

std::string DaDeviceTimerDataRetrieverImpl::getCurrentTimerId()
{
    std::string currentTimerId;
    LOGD("currentTimerId[%s]", currentTimerId.c_str());
    return currentTimerId;
}

int DaDeviceTimerDataRetrieverImpl::_toInt(const std::string& text)
{
    errno = 0;
    char* end = nullptr;
    long value = strtol(text.c_str(), &end, 10);
    if (end == text.c_str()) {
        LOGD("not a number[%s], taken as 0", text.c_str());
        return 0;
    }
    if (errno == ERANGE || value > INT_MAX || value < INT_MIN) {
        LOGD("out of range[%s], taken as 0", text.c_str());
        return 0;
    }
    return static_cast<int>(value);
}
