#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_SHOPPING_LIST_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_SHOPPING_LIST_DATA_H

// What the speech library asks the device about the shopping list. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes first.
class IEngineRetrieveDeviceShoppingListData {
public:
    virtual ~IEngineRetrieveDeviceShoppingListData() {}
    virtual int getCurrentShoppingListSize() { return 0; }
};

#endif
