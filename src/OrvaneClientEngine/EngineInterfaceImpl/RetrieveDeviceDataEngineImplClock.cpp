#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplClock.h"

#include "utils/MarlLog.h"

#include <time.h>

RetrieveDeviceDataEngineImplClock::RetrieveDeviceDataEngineImplClock()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplClock::~RetrieveDeviceDataEngineImplClock()
{
    LOGD("");
}

// The offset as strftime's "%z" gives it: a sign and four digits.
std::string RetrieveDeviceDataEngineImplClock::getTimezone()
{
    LOGD("");
    char buffer[32] = {0};
    tzset();
    time_t now = time(nullptr);
    struct tm* local = localtime(&now);
    if (local)
        strftime(buffer, sizeof(buffer), "%z", local);
    LOGD("Timezone(%s)", buffer);
    return buffer;
}
