#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplServerTts.h"

#include "RetrieveManager/CustomizedDataRetrieveManager.h"
#include "RetrieveManager/ICustomizedServerDefines.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImplServerTts::RetrieveDeviceDataEngineImplServerTts()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplServerTts::~RetrieveDeviceDataEngineImplServerTts()
{
    LOGD("");
}

bool RetrieveDeviceDataEngineImplServerTts::getEnalbed()
{
    bool result = false;
    ICustomizedServerDefines* retriever =
        getWrapper()->getCustomizedDataRetrieveManager()->getServerDefineRetriever();
    if (retriever)
        result = retriever->useServerTts();
    LOGD("retv[%d]", result);
    return result;
}

// The voice of the server's speech: 1 is "M01", 2 is "F02", anything else "F01".
std::string RetrieveDeviceDataEngineImplServerTts::getTeller()
{
    int teller = 0;
    ICustomizedServerDefines* retriever =
        getWrapper()->getCustomizedDataRetrieveManager()->getServerDefineRetriever();
    if (retriever)
        teller = retriever->getServerTtsTeller();

    std::string result = "F01";
    if (teller == 1)
        result = "M01";
    else if (teller == 2)
        result = "F02";
    LOGD("retv[%s]", result.c_str());
    return result;
}
