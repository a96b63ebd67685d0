#include "ClientManager/OrvaneMaster.h"

#include "utils/MarlLog.h"

MarlEngineWrapper* OrvaneMaster::smWrapper = nullptr;

OrvaneMaster::OrvaneMaster()
{
}

OrvaneMaster::~OrvaneMaster()
{
    LOGD("");
}

MarlEngineWrapper* OrvaneMaster::getWrapper()
{
    return smWrapper;
}
