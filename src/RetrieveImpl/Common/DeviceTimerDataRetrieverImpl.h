#ifndef DEVICE_TIMER_DATA_RETRIEVER_IMPL_H
#define DEVICE_TIMER_DATA_RETRIEVER_IMPL_H

#include "RetrieveManager/IDeviceTimerDataRetrieve.h"

// Fallback: no timer; every answer is the interface's.
class DeviceTimerDataRetrieverImpl : public IDeviceTimerDataRetrieve {
};

#endif
