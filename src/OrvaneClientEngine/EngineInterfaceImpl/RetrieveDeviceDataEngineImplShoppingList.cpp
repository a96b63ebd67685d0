#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplShoppingList.h"

#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "RetrieveManager/IDeviceShoppingListDataRetrieve.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImplShoppingList::RetrieveDeviceDataEngineImplShoppingList()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplShoppingList::~RetrieveDeviceDataEngineImplShoppingList()
{
    LOGD("");
}

int RetrieveDeviceDataEngineImplShoppingList::getCurrentShoppingListSize()
{
    int result = 0;
    IDeviceShoppingListDataRetrieve* retriever =
        getWrapper()->getDeviceDataRetrieveManager()->getShoppingListRetriever();
    if (!retriever)
        return result;
    result = retriever->currentShoppingListSize();
    LOGD("retv[%d]", result);
    return result;
}
