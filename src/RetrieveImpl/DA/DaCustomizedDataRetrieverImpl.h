#ifndef DA_CUSTOMIZED_DATA_RETRIEVER_IMPL_H
#define DA_CUSTOMIZED_DATA_RETRIEVER_IMPL_H

#include "RetrieveImpl/DA/DaCustomizedDriverResponseRetriever.h"
#include "RetrieveImpl/DA/DaCustomizedNluParamsRetriever.h"
#include "RetrieveImpl/DA/DaCustomizedRecognitionModeRetriever.h"
#include "RetrieveImpl/DA/DaCustomizedServerDefineRetriever.h"
#include "RetrieveManager/ICustomizedDataRetrieve.h"

// The appliance's set of customized retrievers.
class DaCustomizedDataRetrieverImpl : public ICustomizedDataRetrieve {
public:
    ICustomizedDriverResponse* getDriverResponseRetriever() override;
    ICustomizedNluParams* getNluParamsRetriever() override;
    ICustomizedRecognitionMode* getRecognitionModeRetriever() override;
    ICustomizedServerDefines* getServerDefineRetriever() override;

private:
    DaCustomizedDriverResponseRetriever mDriverResponse;
    DaCustomizedNluParamsRetriever mNluParams;
    DaCustomizedRecognitionModeRetriever mRecognitionMode;
    DaCustomizedServerDefineRetriever mServerDefine;
};

#endif
