#include "RetrieveImpl/Common/DeviceShoppingListDataRetrieverImpl.h"

#include "utils/MarlLog.h"

int DeviceShoppingListDataRetrieverImpl::currentShoppingListSize()
{
    LOGD("retv[%d]", 0);
    return 0;
}
