#ifndef DEVICE_SHOPPING_LIST_DATA_RETRIEVER_IMPL_H
#define DEVICE_SHOPPING_LIST_DATA_RETRIEVER_IMPL_H

#include "RetrieveManager/IDeviceShoppingListDataRetrieve.h"

// Fallback: an empty shopping list.
class DeviceShoppingListDataRetrieverImpl : public IDeviceShoppingListDataRetrieve {
public:
    int currentShoppingListSize() override;
};

#endif
