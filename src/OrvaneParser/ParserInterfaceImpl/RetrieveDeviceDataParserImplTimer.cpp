#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplTimer.h"

#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceTimerDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

bool RetrieveDeviceDataParserImplTimer::getActivatedTimerList(std::vector<TimerData*>* timerList)
{
    IDeviceTimerDataRetrieve* retriever = getWrapper()->getDeviceDataRetrieveManager()->getTimerRetriever();
    if (!retriever)
        return false;
    bool retv = retriever->getTimerList(timerList);
    LOGD("Retrieved timer count[%d]", timerList ? static_cast<int>(timerList->size()) : 0);
    return retv;
}
