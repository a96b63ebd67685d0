#ifndef DA_DRIVER_RESPONSE_GEN_CALENDAR_H
#define DA_DRIVER_RESPONSE_GEN_CALENDAR_H

#include "RetrieveImpl/DA/DADeviceDataAutoRefresher.h"
#include "RetrieveImpl/DA/DADriverResponseGen/DaDriverResponseGen.h"

#include <string>

// Answers which user profile the server means, whether its task list has
// room and whether it holds tasks, from the data store's "Task" and "Profile"
// tables. Touches no task.
class DaDriverResponseGenCalendar : public DaDriverResponseGen {
public:
    explicit DaDriverResponseGenCalendar(Json::Value request);

    void makeProfileInfoReply();
    void makeAddTaskReply();
    void makeSearchTaskReply();
    void makeSearchCalendarReply();
    // An item of empty members but for the user's id and name.
    void setDefaultResponseValue(Json::Value& item, std::string userId, std::string username);

private:
    DADeviceDataAutoRefresher mTaskData;
    DADeviceDataAutoRefresher mProfileData;
};

#endif
