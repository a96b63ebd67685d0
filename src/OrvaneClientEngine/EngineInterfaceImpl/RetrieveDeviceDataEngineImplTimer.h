#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_TIMER_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_TIMER_H

#include "ClientManager/OrvaneMaster.h"

#include <asr-nlu/IEngineRetrieveDeviceTimerData.h>

#include <string>

class IDeviceTimerDataRetrieve;

// The timer facet: what the timer can do and how it stands, asked of the
// current timer retriever on every call. setTimerSetFromApp and setTimerTime
// change nothing: they read a capability and the timer's time.
class RetrieveDeviceDataEngineImplTimer : public IEngineRetrieveDeviceTimerData, public OrvaneMaster {
public:
    RetrieveDeviceDataEngineImplTimer();
    ~RetrieveDeviceDataEngineImplTimer() override;

    bool supportMultipleControl() override;
    int getTimerActivatedCount() override;
    int getTimerMaxCount() override;
    std::string getTimerCancelEnabled() override;
    std::string getTimerConfirmationEnabled() override;
    std::string getTimerCreatableId() override;
    std::string getTimerCreateEnabled() override;
    std::string getTimerCurrentId() override;
    std::string getTimerEnabled() override;
    std::string getTimerResetEnabled() override;
    std::string getTimerShowEnabled() override;
    std::string getTimerStartEnabled() override;
    std::string getTimerStopEnabled() override;
    std::string getTimerTaskEnabled() override;
    std::string isTimerRunning() override;
    std::string isTimerWidgetActive() override;
    std::string setTimerSetFromApp() override;
    std::string setTimerTime() override;

private:
    IDeviceTimerDataRetrieve* _getRetriever();
};

#endif
