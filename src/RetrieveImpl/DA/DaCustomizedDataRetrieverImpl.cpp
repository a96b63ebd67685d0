#include "RetrieveImpl/DA/DaCustomizedDataRetrieverImpl.h"

ICustomizedDriverResponse* DaCustomizedDataRetrieverImpl::getDriverResponseRetriever()
{
    return &mDriverResponse;
}

ICustomizedNluParams* DaCustomizedDataRetrieverImpl::getNluParamsRetriever()
{
    return &mNluParams;
}

ICustomizedRecognitionMode* DaCustomizedDataRetrieverImpl::getRecognitionModeRetriever()
{
    return &mRecognitionMode;
}

ICustomizedServerDefines* DaCustomizedDataRetrieverImpl::getServerDefineRetriever()
{
    return &mServerDefine;
}
