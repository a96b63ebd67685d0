#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplConfig.h"

#include "ClientManager/OrvaneVocabulary.h"
#include "RetrieveManager/DeviceDataRetrieveManager.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

#include <map>

namespace {

typedef std::map<std::string, std::string> DefineMap;

const char* const RECO_STATE = "Reco State";
const char* const ASR_RAMP_CODE = "ASR Ramp Code";
const char* const NLU_RAMP_CODE = "NLU Ramp Code";

// Profile name to its defines; every row is a map of its own.
const std::map<std::string, DefineMap> sProfileTable = {
    {DeviceProfileNames::HUB_HEARTHLINK,
     {{RECO_STATE, RecognitionStateNames::SORREL_RECO_STATE},
      {ASR_RAMP_CODE, ServerNames::ASR_RAMPCODE_DEFAULT},
      {NLU_RAMP_CODE, ServerNames::NLU_RAMPCODE_DEFAULT}}},
    {DeviceProfileNames::REFRIGERATOR,
     {{RECO_STATE, RecognitionStateNames::DA_GLOBAL},
      {ASR_RAMP_CODE, ServerNames::ASR_RAMPCODE_DA},
      {NLU_RAMP_CODE, ServerNames::NLU_RAMPCODE_DA}}},
    {DeviceProfileNames::WEARABLE_1_0,
     {{RECO_STATE, RecognitionStateNames::QUOIN_MODE},
      {ASR_RAMP_CODE, ServerNames::ASR_RAMPCODE_DEFAULT},
      {NLU_RAMP_CODE, ServerNames::NLU_RAMPCODE_DEFAULT}}},
    {DeviceProfileNames::WEARABLE_1_1,
     {{RECO_STATE, RecognitionStateNames::QUOIN_MODE},
      {ASR_RAMP_CODE, ServerNames::ASR_RAMPCODE_DEFAULT},
      {NLU_RAMP_CODE, ServerNames::NLU_RAMPCODE_DEFAULT}}},
    {RecognitionStateNames::COMMON,
     {{RECO_STATE, RecognitionStateNames::MARL_GLOBAL},
      {ASR_RAMP_CODE, ServerNames::ASR_RAMPCODE_DEFAULT},
      {NLU_RAMP_CODE, ServerNames::NLU_RAMPCODE_DEFAULT}}},
};

// The define map that each lookup found last; never reset.
const DefineMap* sRecoStateDefines = nullptr;
const DefineMap* sAsrRampCodeDefines = nullptr;
const DefineMap* sNluRampCodeDefines = nullptr;

// Looks `define` up for `profile`, remembering a found profile in `kept`.
// The result starts as "Marl Global". False when no profile has ever been
// found by this lookup.
bool lookUpDefine(const std::string& profile, const char* define, const DefineMap*& kept, std::string& result)
{
    result = RecognitionStateNames::MARL_GLOBAL;
    if (sProfileTable.empty()) {
        LOGI("map is empty");
    } else {
        auto row = sProfileTable.find(profile);
        if (row == sProfileTable.end())
            LOGI("[%s] is not defined", profile.c_str());
        else
            kept = &row->second;
    }
    if (!kept) {
        LOGE("profile Not found");
        return false;
    }
    if (kept->empty()) {
        LOGI("define is empty");
    } else {
        auto value = kept->find(define);
        if (value == kept->end())
            LOGI("define is not set");
        else
            result = value->second;
    }
    return true;
}

}  // namespace

RetrieveDeviceDataEngineImplConfig::RetrieveDeviceDataEngineImplConfig()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplConfig::~RetrieveDeviceDataEngineImplConfig()
{
    LOGD("");
}

std::string RetrieveDeviceDataEngineImplConfig::getCurrentVerbosity()
{
    LOGD("");
    return "0";
}

std::string RetrieveDeviceDataEngineImplConfig::getDeviceProfileName()
{
    LOGD("");
    std::string result = getWrapper()->getDeviceProfile();
    LOGD("Profile Name[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplConfig::getRecoStateName()
{
    LOGD("");
    std::string result;
    if (lookUpDefine(getDeviceProfileName(), RECO_STATE, sRecoStateDefines, result))
        LOGD("Reco State[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplConfig::getAsrRampCode()
{
    LOGD("");
    std::string result;
    if (lookUpDefine(getDeviceProfileName(), ASR_RAMP_CODE, sAsrRampCodeDefines, result))
        LOGD("asr rampcode[%s]", result.c_str());
    return result;
}

std::string RetrieveDeviceDataEngineImplConfig::getNluRampCode()
{
    LOGD("");
    std::string result;
    if (lookUpDefine(getDeviceProfileName(), NLU_RAMP_CODE, sNluRampCodeDefines, result))
        LOGD("nlu rampcode[%s]", result.c_str());
    return result;
}

// The status retriever is fetched but has no say: the client never does the
// dialogue processing itself.
bool RetrieveDeviceDataEngineImplConfig::useClientDP()
{
    LOGD("");
    getWrapper()->getDeviceDataRetrieveManager()->getStatusRetriever();
    LOGD("useClientDP[%d]", 0);
    return false;
}
