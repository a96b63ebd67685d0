#ifndef DA_DEVICE_TIMER_DATA_RETRIEVER_IMPL_H
#define DA_DEVICE_TIMER_DATA_RETRIEVER_IMPL_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveManager/IDeviceTimerDataRetrieve.h"

// The appliance's timers: what the timer app "org.tizen.fridge-timer" can do,
// and its timers as published in the "Timer" table, one row per timer.
class DaDeviceTimerDataRetrieverImpl : public IDeviceTimerDataRetrieve, public DADeviceDataAutoRefresher {
public:
    DaDeviceTimerDataRetrieverImpl();
    ~DaDeviceTimerDataRetrieverImpl() override;

    bool appInstalled() override;
    bool support() override;
    bool supportByAppControl() override;
    bool supportCancel() override;
    bool supportConfirm() override;
    bool supportCreate() override;
    bool supportOwnWidgetControl() override;
    bool supportReset() override;
    bool supportShow() override;
    bool supportStart() override;
    bool supportStop() override;
    bool supportTask() override;
    std::string getTimerAppName() override;
    std::string getTimerTime() override;
    int getTimerStatus() override;
    bool supportMultipleControl() override;
    bool getTimerList(std::vector<TimerData*>* list) override;
    int getCurrentTimerCount() override;
    int getMaxTimerCount() override;
    int getRunningTimerCount() override;
    std::string getCreatableTimerId() override;
    std::string getCurrentTimerId() override;

private:
    static int _toInt(const std::string& text);
};

#endif
