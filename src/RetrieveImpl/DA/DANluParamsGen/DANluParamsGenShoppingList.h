#ifndef DA_NLU_PARAMS_GEN_SHOPPING_LIST_H
#define DA_NLU_PARAMS_GEN_SHOPPING_LIST_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGen.h"

// The group "ShoppingList": how long the shopping list is and whether a
// default list exists, from the "ShoppingList" table.
class DANluParamsGenShoppingList : public DANluParamsGen {
public:
    DANluParamsGenShoppingList();

    void makeParams() override;

private:
    DADeviceDataAutoRefresher mRefresher;
};

#endif
