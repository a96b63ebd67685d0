#ifndef DA_DRIVER_RESPONSE_GEN_VIEW_INSIDE_APP_CONTROL_H
#define DA_DRIVER_RESPONSE_GEN_VIEW_INSIDE_APP_CONTROL_H

#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

#include <string>

// Answers the view-inside app's questions: is it in front, does the item list
// have room, does the named compartment exist on this model.
class DaDriverResponseGenViewInsideAppControl : public DaDriverResponseGen {
public:
    explicit DaDriverResponseGenViewInsideAppControl(Json::Value request);

    void makeViewInsideStatusCheckReply();
    void makeViewInsideItemCheckReply(std::string locationName);
    int checkItemCount();
    bool isExistRoom(std::string locationName);
};

#endif
