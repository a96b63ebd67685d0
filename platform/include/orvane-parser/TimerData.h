#ifndef ORVANE_PARSER_TIMER_DATA_H
#define ORVANE_PARSER_TIMER_DATA_H

#include <string>

// One timer as the parser asks for it, all fields text. The parser library
// implements every member function.
class TimerData {
public:
    TimerData();

    void setId(std::string id);
    void setIsRunning(std::string isRunning);   // "True" or "False"
    void setTimerTime(std::string timerTime);   // "hh:mm:ss"

    std::string getId();
    std::string getIsRunning();
    std::string getTimerTime();

private:
    std::string mId;
    std::string mIsRunning;
    std::string mTimerTime;
};

#endif
