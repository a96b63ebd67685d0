#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_SHOPPING_LIST_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_SHOPPING_LIST_H

#include "ClientManager/OrvaneMaster.h"

#include <asr-nlu/IEngineRetrieveDeviceShoppingListData.h>

// The shopping list facet: the list's size, as the shopping list retriever tells.
class RetrieveDeviceDataEngineImplShoppingList : public IEngineRetrieveDeviceShoppingListData,
                                                 public OrvaneMaster {
public:
    RetrieveDeviceDataEngineImplShoppingList();
    ~RetrieveDeviceDataEngineImplShoppingList() override;

    int getCurrentShoppingListSize() override;
};

#endif
