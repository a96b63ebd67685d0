#ifndef I_DEVICE_SHOPPING_LIST_DATA_RETRIEVE_H
#define I_DEVICE_SHOPPING_LIST_DATA_RETRIEVE_H

class IDeviceShoppingListDataRetrieve {
public:
    virtual ~IDeviceShoppingListDataRetrieve() {}
    virtual int currentShoppingListSize() { return 0; }
};

#endif
