// Every interface header, built at the plug-in's language level.
#include <asr-nlu/AgentActionDataFrame.h>
#include <asr-nlu/Config.h>
#include <asr-nlu/IEngineRetrieveDeviceData.h>
#include <asr-nlu/OVActionData.h>
#include <asr-nlu/RecognitionAgentResponse.h>
#include <asr-nlu/RecognitionListener.h>
#include <asr-nlu/RecognitionManager.h>
#include <asr-nlu/ResponseData.h>
#include <asr-nlu/SpeechDetectionListener.h>
#include <asr-nlu/Tessel.h>
#include <orvane-da-db/odb_manager.h>
#include <orvane-parser/IParserRetrieveDeviceData.h>
#include <orvane-parser/OrvaneEmbeddedParser.h>
#include <orvane-parser/OrvaneParser.h>
#include <orvane-parser/OrvaneParserListener.h>

#include "ConfigLayout.h"

#if __cplusplus != 201402L
#error "this unit is meant to be built as C++14"
#endif

ConfigLayout configLayoutInCxx14()
{
    return configLayoutOfThisUnit();
}

Config defaultConfigInCxx14()
{
    return Config();
}

std::size_t settingsTableSizeInCxx14()
{
    IEngineRetrieveDeviceDependentStaticData facet;
    return facet.getSettingsStaticDeviceData()->size();
}
