#ifndef DA_DEVICE_SHOPPING_LIST_DATA_RETRIEVER_IMPL_H
#define DA_DEVICE_SHOPPING_LIST_DATA_RETRIEVER_IMPL_H

#include "RetrieveManager/IDeviceShoppingListDataRetrieve.h"

// The appliance reports an empty list here; the "ShoppingList" table is read
// by the NLU parameters.
class DaDeviceShoppingListDataRetrieverImpl : public IDeviceShoppingListDataRetrieve {
public:
    int currentShoppingListSize() override;
};

#endif
