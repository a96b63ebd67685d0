#ifndef CUSTOMIZED_DATA_RETRIEVER_IMPL_H
#define CUSTOMIZED_DATA_RETRIEVER_IMPL_H

#include "RetrieveImpl/Common/CustomizedDriverResponseRetriever.h"
#include "RetrieveImpl/Common/CustomizedNluParamsRetriever.h"
#include "RetrieveImpl/Common/CustomizedRecognitionModeRetriever.h"
#include "RetrieveImpl/Common/CustomizedServerDefineRetriever.h"
#include "RetrieveManager/ICustomizedDataRetrieve.h"

// The built-in fallback set of customized retrievers.
class CustomizedDataRetrieverImpl : public ICustomizedDataRetrieve {
public:
    ICustomizedDriverResponse* getDriverResponseRetriever() override { return &mDriverResponse; }
    ICustomizedNluParams* getNluParamsRetriever() override { return &mNluParams; }
    ICustomizedRecognitionMode* getRecognitionModeRetriever() override { return &mRecognitionMode; }
    ICustomizedServerDefines* getServerDefineRetriever() override { return &mServerDefine; }

private:
    CustomizedDriverResponseRetriever mDriverResponse;
    CustomizedNluParamsRetriever mNluParams;
    CustomizedRecognitionModeRetriever mRecognitionMode;
    CustomizedServerDefineRetriever mServerDefine;
};

#endif
