#ifndef DA_DEVICE_DATA_AUTO_REFRESHER_H
#define DA_DEVICE_DATA_AUTO_REFRESHER_H

#include <orvane-da-db/odb_manager.h>

#include <chrono>
#include <map>
#include <string>

// Reads one table of the appliance data store and keeps a copy of its rows,
// read again on demand once the copy is a second old. Every value is held as
// text; rows are keyed by their row number.
class DADeviceDataAutoRefresher {
public:
    typedef std::map<int, std::map<std::string, std::string>> DataMap;

    explicit DADeviceDataAutoRefresher(std::string tableName);
    virtual ~DADeviceDataAutoRefresher();

    // A copy of the rows, read again first when the cache is stale.
    DataMap getDataMap();
    bool isInvalidData();
    void refreshData();
    void clearData();

    static void foreachCb(int row, int type, const char* column, const char* textValue, int intValue,
                          void* userData);

private:
    friend class PluginTestAccess;

    DADeviceDataAutoRefresher(const DADeviceDataAutoRefresher&) = delete;
    DADeviceDataAutoRefresher& operator=(const DADeviceDataAutoRefresher&) = delete;

    DataMap mDataMap;
    std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds> mLastUpdate;
    std::string mTableName;
    odb_manager_h* mHandle;
};

#endif
