#ifndef I_CUSTOMIZED_DATA_RETRIEVE_H
#define I_CUSTOMIZED_DATA_RETRIEVE_H

class ICustomizedDriverResponse;
class ICustomizedNluParams;
class ICustomizedRecognitionMode;
class ICustomizedServerDefines;

// One set of customized retrievers; each result is owned by the set.
class ICustomizedDataRetrieve {
public:
    virtual ~ICustomizedDataRetrieve() {}
    virtual ICustomizedDriverResponse* getDriverResponseRetriever() { return nullptr; }
    virtual ICustomizedNluParams* getNluParamsRetriever() { return nullptr; }
    virtual ICustomizedRecognitionMode* getRecognitionModeRetriever() { return nullptr; }
    virtual ICustomizedServerDefines* getServerDefineRetriever() { return nullptr; }
};

#endif
