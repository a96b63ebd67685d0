#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"

#include "utils/MarlLog.h"

#include <new>

namespace {

const char* const CLIENT_NAME = "PRIVATE Orvane";

std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds> now()
{
    return std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now());
}

}  // namespace

DADeviceDataAutoRefresher::DADeviceDataAutoRefresher(std::string tableName)
    : mDataMap(), mLastUpdate(), mTableName(tableName), mHandle(new (std::nothrow) odb_manager_h(nullptr))
{
    mLastUpdate = now() - std::chrono::milliseconds(2000);
    clearData();
    int ret = odb_manager_create(mHandle, CLIENT_NAME);
    if (ret != ODB_ERROR_NONE)
        LOGD("odb_manager_create failed : %d", ret);
}

DADeviceDataAutoRefresher::~DADeviceDataAutoRefresher()
{
    int ret = odb_manager_destroy(mHandle ? *mHandle : nullptr);
    if (ret != ODB_ERROR_NONE)
        LOGD("odb_manager_destroy failed : %d", ret);
    delete mHandle;
    mHandle = nullptr;
}

DADeviceDataAutoRefresher::DataMap DADeviceDataAutoRefresher::getDataMap()
{
    if (isInvalidData())
        refreshData();
    return mDataMap;
}

bool DADeviceDataAutoRefresher::isInvalidData()
{
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(now() - mLastUpdate);
    return elapsed.count() > 999;
}

void DADeviceDataAutoRefresher::refreshData()
{
    clearData();
    int ret = odb_manager_foreach_table(mHandle ? *mHandle : nullptr, mTableName.c_str(), foreachCb, this);
    if (ret != ODB_ERROR_NONE) {
        LOGD("odb_manager_foreach_table failed : %d", ret);
        return;
    }
    mLastUpdate = now();
}

void DADeviceDataAutoRefresher::clearData()
{
    mDataMap.clear();
}

void DADeviceDataAutoRefresher::foreachCb(int row, int type, const char* column, const char* textValue,
                                          int intValue, void* userData)
{
    DADeviceDataAutoRefresher* self = static_cast<DADeviceDataAutoRefresher*>(userData);
    if (!self || !column) {
        LOGE("row[%d] without refresher or column name", row);
        return;
    }
    if (type == ODB_VALUE_TYPE_TEXT)
        self->mDataMap[row][column] = textValue ? textValue : "";
    else
        self->mDataMap[row][column] = std::to_string(intValue);
}
