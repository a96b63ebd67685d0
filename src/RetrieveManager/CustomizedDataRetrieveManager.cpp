#include "RetrieveManager/CustomizedDataRetrieveManager.h"

#include "RetrieveImpl/Common/CustomizedDataRetrieverImpl.h"
#include "RetrieveImpl/DA/DaCustomizedDataRetrieverImpl.h"
#include "RetrieveManager/RetrieverChoice.h"
#include "utils/MarlLog.h"

CustomizedDataRetrieveManager::CustomizedDataRetrieveManager()
    : mUserRetriever(nullptr), mInternalRetriever(nullptr)
{
    LOGD("");
    setUserRetriever(_createDivisonDataRetriever());
}

CustomizedDataRetrieveManager::~CustomizedDataRetrieveManager()
{
    delete mUserRetriever;
    mUserRetriever = nullptr;
    delete mInternalRetriever;
    mInternalRetriever = nullptr;
}

ICustomizedDataRetrieve* CustomizedDataRetrieveManager::_createDivisonDataRetriever()
{
    return new DaCustomizedDataRetrieverImpl();
}

void CustomizedDataRetrieveManager::setUserRetriever(ICustomizedDataRetrieve* retriever)
{
    if (!retriever) {
        LOGE("parameter is empty");
        return;
    }
    delete mUserRetriever;
    mUserRetriever = retriever;
}

ICustomizedDataRetrieve* CustomizedDataRetrieveManager::getUserRetriever()
{
    return mUserRetriever;
}

ICustomizedDataRetrieve* CustomizedDataRetrieveManager::getInternalRetriever()
{
    if (!mInternalRetriever)
        mInternalRetriever = new CustomizedDataRetrieverImpl();
    return mInternalRetriever;
}

ICustomizedDriverResponse* CustomizedDataRetrieveManager::getDriverResponseRetriever()
{
    return CHOOSE_RETRIEVER(getUserRetriever(), getInternalRetriever(),
                            &ICustomizedDataRetrieve::getDriverResponseRetriever, "userDrRetriever",
                            "internalDrRetriever", "retDrRetriever");
}

ICustomizedNluParams* CustomizedDataRetrieveManager::getNluParamsRetriever()
{
    return CHOOSE_RETRIEVER(getUserRetriever(), getInternalRetriever(),
                            &ICustomizedDataRetrieve::getNluParamsRetriever, "userNluParamsRetriever",
                            "internalNluParamsRetriever", "retNluParamsRetriever");
}

ICustomizedRecognitionMode* CustomizedDataRetrieveManager::getRecognitionModeRetriever()
{
    return CHOOSE_RETRIEVER(getUserRetriever(), getInternalRetriever(),
                            &ICustomizedDataRetrieve::getRecognitionModeRetriever,
                            "userRecoModeRetriever", "internalRecoModeRetriever",
                            "retRecoModeRetriever");
}

ICustomizedServerDefines* CustomizedDataRetrieveManager::getServerDefineRetriever()
{
    return CHOOSE_RETRIEVER(getUserRetriever(), getInternalRetriever(),
                            &ICustomizedDataRetrieve::getServerDefineRetriever, "userServerDefRet",
                            "innerServerDefRet", "retServerDefineRetriever");
}
