#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplTimer.h"

#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceTimerDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImplTimer::RetrieveDeviceDataEngineImplTimer()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplTimer::~RetrieveDeviceDataEngineImplTimer()
{
    LOGD("");
}

IDeviceTimerDataRetrieve* RetrieveDeviceDataEngineImplTimer::_getRetriever()
{
    return getWrapper()->getDeviceDataRetrieveManager()->getTimerRetriever();
}

bool RetrieveDeviceDataEngineImplTimer::supportMultipleControl()
{
    bool result = false;
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportMultipleControl();
    LOGD("retv[%d]", result);
    return result;
}

int RetrieveDeviceDataEngineImplTimer::getTimerActivatedCount()
{
    int result = 0;
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->getCurrentTimerCount();
    LOGD("timerCount[%d]", result);
    return result;
}

int RetrieveDeviceDataEngineImplTimer::getTimerMaxCount()
{
    int result = 0;
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->getMaxTimerCount();
    LOGD("maxTimerCount[%d]", result);
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerCancelEnabled()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportCancel() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerConfirmationEnabled()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportConfirm() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerCreatableId()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->getCreatableTimerId();
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerCreateEnabled()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportCreate() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerCurrentId()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->getCurrentTimerId();
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerEnabled()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->support() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerResetEnabled()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportReset() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerShowEnabled()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportShow() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerStartEnabled()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportStart() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerStopEnabled()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportStop() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::getTimerTaskEnabled()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportTask() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::isTimerRunning()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->getRunningTimerCount() >= 1 ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::isTimerWidgetActive()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportOwnWidgetControl() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::setTimerSetFromApp()
{
    LOGD("");
    std::string result = "False";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->supportByAppControl() ? "True" : "False";
    LOGD("retv[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplTimer::setTimerTime()
{
    LOGD("");
    std::string result = "00:00:00";
    IDeviceTimerDataRetrieve* retriever = _getRetriever();
    if (!retriever)
        return result;
    result = retriever->getTimerTime();
    LOGD("retv[%s]", result.c_str());
    return result;
}
