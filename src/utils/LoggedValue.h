// Answers of the retrievers, logged at debug level on their way out.
#ifndef LOGGED_VALUE_H
#define LOGGED_VALUE_H

#include "utils/MarlLog.h"

#include <string>

inline bool logged(bool retv)
{
    LOGD("retv[%d]", retv);
    return retv;
}

inline std::string loggedName(const char* label, const std::string& name)
{
    LOGD("%s[%s]", label, name.c_str());
    return name;
}

#endif
