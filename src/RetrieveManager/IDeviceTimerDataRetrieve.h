#ifndef I_DEVICE_TIMER_DATA_RETRIEVE_H
#define I_DEVICE_TIMER_DATA_RETRIEVE_H

#include <string>
#include <vector>

class TimerData;

// What the device's timer can do and how its timers stand.
class IDeviceTimerDataRetrieve {
public:
    virtual ~IDeviceTimerDataRetrieve() {}
    virtual bool appInstalled() { return false; }
    virtual bool support() { return false; }
    virtual bool supportByAppControl() { return false; }
    virtual bool supportCancel() { return false; }
    virtual bool supportConfirm() { return false; }
    virtual bool supportCreate() { return false; }
    virtual bool supportOwnWidgetControl() { return false; }
    virtual bool supportReset() { return false; }
    virtual bool supportShow() { return false; }
    virtual bool supportStart() { return false; }
    virtual bool supportStop() { return false; }
    virtual bool supportTask() { return false; }
    virtual std::string getTimerAppName() { return std::string(); }
    virtual std::string getTimerTime() { return "00:00:00"; }
    virtual int getTimerStatus() { return 0; }
    virtual bool supportMultipleControl() { return false; }
    // Appends the timers to the caller's list; the caller owns the records.
    virtual bool getTimerList(std::vector<TimerData*>* /*list*/) { return false; }
    virtual int getCurrentTimerCount() { return 0; }
    virtual int getMaxTimerCount() { return 0; }
    virtual int getRunningTimerCount() { return 0; }
    virtual std::string getCreatableTimerId() { return "0"; }
    virtual std::string getCurrentTimerId() { return "0"; }
};

#endif
