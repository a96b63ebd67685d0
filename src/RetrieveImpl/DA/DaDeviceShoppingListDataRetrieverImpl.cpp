#include "RetrieveImpl/DA/DaDeviceShoppingListDataRetrieverImpl.h"

#include "utils/MarlLog.h"

int DaDeviceShoppingListDataRetrieverImpl::currentShoppingListSize()
{
    LOGD("retv[%d]", 0);
    return 0;
}
