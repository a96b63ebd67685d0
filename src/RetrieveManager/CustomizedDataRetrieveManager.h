#ifndef CUSTOMIZED_DATA_RETRIEVE_MANAGER_H
#define CUSTOMIZED_DATA_RETRIEVE_MANAGER_H

#include "ClientManager/OrvaneMaster.h"
#include "RetrieveManager/ICustomizedDataRetrieve.h"

// Two sets of customized retrievers: the appliance's, preferred, and a built-in
// fallback that composes nothing. Each getter answers with the appliance's
// retriever when it has one, otherwise with the fallback's.
class CustomizedDataRetrieveManager : public OrvaneMaster {
public:
    CustomizedDataRetrieveManager();
    virtual ~CustomizedDataRetrieveManager();

    void setUserRetriever(ICustomizedDataRetrieve* retriever);
    ICustomizedDataRetrieve* getUserRetriever();
    ICustomizedDataRetrieve* getInternalRetriever();

    ICustomizedDriverResponse* getDriverResponseRetriever();
    ICustomizedNluParams* getNluParamsRetriever();
    ICustomizedRecognitionMode* getRecognitionModeRetriever();
    ICustomizedServerDefines* getServerDefineRetriever();

private:
    ICustomizedDataRetrieve* _createDivisonDataRetriever();

    ICustomizedDataRetrieve* mUserRetriever;
    ICustomizedDataRetrieve* mInternalRetriever;
};

#endif
