// Answers of the retrievers, logged at debug level on their way out, under
// the name of the operation that answers.
#ifndef LOGGED_VALUE_H
#define LOGGED_VALUE_H

#include "utils/MarlLog.h"

#include <string>

#define LOGGED(retv) loggedAt(MARL_LOG_SITE, retv)
#define LOGGED_NAME(label, name) loggedNameAt(MARL_LOG_SITE, label, name)

inline bool loggedAt(const MarlLogSite& site, bool retv)
{
    LOGD_AT(site, "retv[%d]", retv);
    return retv;
}

inline std::string loggedNameAt(const MarlLogSite& site, const char* label, const std::string& name)
{
    LOGD_AT(site, "%s[%s]", label, name.c_str());
    return name;
}

#endif
