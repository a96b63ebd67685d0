#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplContacts.h"

#include "utils/MarlLog.h"

RetrieveDeviceDataEngineImplContacts::RetrieveDeviceDataEngineImplContacts()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplContacts::~RetrieveDeviceDataEngineImplContacts()
{
    LOGD("");
}

std::string RetrieveDeviceDataEngineImplContacts::isContactsSupported()
{
    LOGD("");
    return "True";
}
