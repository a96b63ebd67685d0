#ifndef DA_DRIVER_RESPONSE_GEN_TIMER_H
#define DA_DRIVER_RESPONSE_GEN_TIMER_H

#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

// Seconds of a duration text of up to six fields, from the year down to the
// second, separated by commas and blanks: "0, 0, 0, 1, 30, 0" is 5400. A sum
// beyond the range of int is held at its limit.
int strTimeToInt(const char* text);

// Answers the server's questions about the kitchen timers: which timer an
// extension, a cancel or a plain timer command means, and which timers exist.
// Reads the "Timer" rows of the appliance's timer retriever; changes nothing.
class DaDriverResponseGenTimer : public DaDriverResponseGen {
public:
    explicit DaDriverResponseGenTimer(Json::Value request);

    void makeExtendTimerReply();
    void makeCancelTimerReply();
    void makeInfomationTimerReply();
    void makeTimerReply();
};

#endif
