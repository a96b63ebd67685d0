#include "RetrieveManager/DeviceDataRetrieveManager.h"

#include "RetrieveImpl/Common/DeviceDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaDeviceDataRetrieverImpl.h"
#include "RetrieveManager/RetrieverChoice.h"

DeviceDataRetrieveManager::DeviceDataRetrieveManager()
    : mUserRetriever(nullptr), mInternalRetriever(nullptr)
{
    LOGD("");
    setUserDeviceDataRetriever(_createDivisonDataRetriever());
}

DeviceDataRetrieveManager::~DeviceDataRetrieveManager()
{
    delete mUserRetriever;
    mUserRetriever = nullptr;
    delete mInternalRetriever;
    mInternalRetriever = nullptr;
}

IDeviceDataRetrieve* DeviceDataRetrieveManager::_createDivisonDataRetriever()
{
    return new DaDeviceDataRetrieverImpl();
}

void DeviceDataRetrieveManager::setUserDeviceDataRetriever(IDeviceDataRetrieve* retriever)
{
    if (!retriever) {
        LOGE("parameter is empty");
        return;
    }
    delete mUserRetriever;
    mUserRetriever = retriever;
}

IDeviceDataRetrieve* DeviceDataRetrieveManager::getUserDeviceDataRetriever()
{
    return mUserRetriever;
}

IDeviceDataRetrieve* DeviceDataRetrieveManager::getInternalDeviceDataRetriever()
{
    if (!mInternalRetriever)
        mInternalRetriever = new DeviceDataRetrieverImpl();
    return mInternalRetriever;
}

IDeviceMorningBriefDataRetrieve* DeviceDataRetrieveManager::getMorningBriefRetriever()
{
    return CHOOSE_RETRIEVER(getUserDeviceDataRetriever(), getInternalDeviceDataRetriever(),
                            &IDeviceDataRetrieve::getDeviceMorningBriefDataRetriever,
                            "userMorningBriefRetriever", "internalMorningBriefRetriever",
                            "retMorningBriefRetriever");
}

IDeviceMusicDataRetrieve* DeviceDataRetrieveManager::getMusicRetriever()
{
    return CHOOSE_RETRIEVER(getUserDeviceDataRetriever(), getInternalDeviceDataRetriever(),
                            &IDeviceDataRetrieve::getDeviceMusicDataRetriever, "userMusicRetriever",
                            "internalMusicRetriever", "retMusicRetriever");
}

IDeviceShoppingListDataRetrieve* DeviceDataRetrieveManager::getShoppingListRetriever()
{
    return CHOOSE_RETRIEVER(getUserDeviceDataRetriever(), getInternalDeviceDataRetriever(),
                            &IDeviceDataRetrieve::getDeviceShoppingListDataRetriever,
                            "userShoppingListRetriever", "internalShoppingListRetriever",
                            "retShoppingListRetriever");
}

IDeviceStatusDataRetrieve* DeviceDataRetrieveManager::getStatusRetriever()
{
    return CHOOSE_RETRIEVER(getUserDeviceDataRetriever(), getInternalDeviceDataRetriever(),
                            &IDeviceDataRetrieve::getDeviceStatusDataRetriever, "userStatusRetriever",
                            "internalStatusRetriever", "retStatusRetriever");
}

IDeviceTimerDataRetrieve* DeviceDataRetrieveManager::getTimerRetriever()
{
    return CHOOSE_RETRIEVER(getUserDeviceDataRetriever(), getInternalDeviceDataRetriever(),
                            &IDeviceDataRetrieve::getDeviceTimerDataRetriever, "userTimerRetriever",
                            "internalTimerRetriever", "retTimerRetriever");
}
