#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImplStatus.h"

#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceStatusDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

bool RetrieveDeviceDataParserImplStatus::isChineseCustomer()
{
    IDeviceStatusDataRetrieve* retriever = getWrapper()->getDeviceDataRetrieveManager()->getStatusRetriever();
    bool retv = retriever ? retriever->useChineseContentsProvider() : false;
    LOGD("retv[%d]", retv);
    return retv;
}

bool RetrieveDeviceDataParserImplStatus::isContactPlmSyncDone()
{
    return true;
}

bool RetrieveDeviceDataParserImplStatus::useCustomDriverReply()
{
    IDeviceStatusDataRetrieve* retriever = getWrapper()->getDeviceDataRetrieveManager()->getStatusRetriever();
    bool retv = retriever ? retriever->useCustomizedDriverResponse() : false;
    LOGD("retv[%d]", retv);
    return retv;
}
