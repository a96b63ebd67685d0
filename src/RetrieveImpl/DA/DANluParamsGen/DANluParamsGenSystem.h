#ifndef DA_NLU_PARAMS_GEN_SYSTEM_H
#define DA_NLU_PARAMS_GEN_SYSTEM_H

#include "RetrieveImpl/DA/DANluParamsGen/DANluParamsGen.h"

#include <string>

// The group "System": the broad state of the device. Every key first gets its
// default, then the static system table and the retrievers write over it.
class DANluParamsGenSystem : public DANluParamsGen {
public:
    DANluParamsGenSystem();

    void makeParams() override;
    // Writes the defaults of every key that has one.
    void initDataNode();
};

// "True" for a 24-hour clock, "False" for a 12-hour one; an unreadable
// setting counts as a 24-hour clock.
std::string is24HourFormat();

#endif
