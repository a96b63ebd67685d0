#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_TIMER_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_TIMER_DATA_H

#include <string>

// What the speech library asks the device about the timer. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes first.
class IEngineRetrieveDeviceTimerData {
public:
    virtual ~IEngineRetrieveDeviceTimerData() {}
    virtual bool supportMultipleControl() { return false; }
    virtual int getTimerActivatedCount() { return 0; }
    virtual int getTimerMaxCount() { return 0; }
    virtual std::string getTimerCancelEnabled() { return "False"; }
    virtual std::string getTimerConfirmationEnabled() { return "False"; }
    virtual std::string getTimerCreatableId() { return ""; }
    virtual std::string getTimerCreateEnabled() { return "False"; }
    virtual std::string getTimerCurrentId() { return ""; }
    virtual std::string getTimerEnabled() { return "False"; }
    virtual std::string getTimerResetEnabled() { return "False"; }
    virtual std::string getTimerShowEnabled() { return "False"; }
    virtual std::string getTimerStartEnabled() { return "False"; }
    virtual std::string getTimerStopEnabled() { return "False"; }
    virtual std::string getTimerTaskEnabled() { return "False"; }
    virtual std::string isTimerRunning() { return "False"; }
    virtual std::string isTimerWidgetActive() { return "False"; }
    virtual std::string setTimerSetFromApp() { return "False"; }
    virtual std::string setTimerTime() { return ""; }
};

#endif
