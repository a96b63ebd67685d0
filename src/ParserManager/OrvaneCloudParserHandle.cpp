#include "ParserManager/OrvaneCloudParserHandle.h"

#include "OrvaneParser/ParserInterfaceImpl/RetrieveDeviceDataParserImpl.h"
#include "ServerTts/ServerTtsManager.h"
#include "fwWrapper/MarlEngineWrapper.h"
#include "utils/MarlLog.h"

#include <asr-nlu/AgentActionDataFrame.h>
#include <asr-nlu/OVActionData.h>
#include <asr-nlu/ResponseData.h>
#include <orvane-parser/OrvaneParser.h>

OrvaneCloudParserHandle::OrvaneCloudParserHandle() : mParser(nullptr), mParserDataRetriever(nullptr)
{
    _createParser();
}

OrvaneCloudParserHandle::~OrvaneCloudParserHandle()
{
    LOGD("");
    _removeParser();
}

OrvaneParser* OrvaneCloudParserHandle::getParser()
{
    LOGD("");
    if (!mParser)
        mParser = new OrvaneParser();
    return mParser;
}

IParserRetrieveDeviceData* OrvaneCloudParserHandle::getParserDataRetriever()
{
    LOGD("");
    if (!mParserDataRetriever) {
        mParserDataRetriever = new RetrieveDeviceDataParserImpl();
        LOGD("created");
    }
    return mParserDataRetriever;
}

void OrvaneCloudParserHandle::_createParser()
{
    LOGD("");
    if (mParser) {
        LOGE("there is already alive parser");
        return;
    }
    mParser = new OrvaneParser();
    mParser->setParserListener(this);
    mParser->setParserDataRetriever(getParserDataRetriever());
}

void OrvaneCloudParserHandle::_removeParser()
{
    delete mParserDataRetriever;
    mParserDataRetriever = nullptr;
    delete mParser;
    mParser = nullptr;
}

void OrvaneCloudParserHandle::executeOVAction(ResponseData* data)
{
    LOGD("");
    if (!data) {
        LOGE("data is NULL");
        return;
    }
    OVActionData* ovActionData = data->getOvActionData();
    if (!ovActionData) {
        LOGE("ovActionData is NULL");
        return;
    }
    AgentActionDataFrame* agentActionData = ovActionData->getActionData();
    if (!agentActionData) {
        LOGE("agentActionData is NULL");
        return;
    }

    const std::string actionType = agentActionData->getActionType();
    LOGD("actionType[%s]", actionType.c_str());
    VoiceContextActionType contextType = VOICE_CONTEXT_NONE;
    if (actionType == "Follow-Up")
        contextType = VOICE_CONTEXT_FOLLOW_UP;
    else if (actionType == "Keep Context")
        contextType = VOICE_CONTEXT_KEEP;
    getWrapper()->getSessionManager()->setContextType(contextType);

    const std::string rawJson = agentActionData->getRawJson();
    const std::string commandName = agentActionData->getCommandName();
    const std::string actionName = agentActionData->getActionName();
    const std::string agentName = ovActionData->getActionAgent();
    const std::string spokenText = data->getSpokenText();
    LOGD("agentName[%s], commandName[%s], actionName[%s], spokenText[%s]", agentName.c_str(),
         commandName.c_str(), actionName.c_str(), spokenText.c_str());

    ServerTtsManager* tts = getWrapper()->getServerTtsManager();
    const bool enabled = tts->getEnabled();
    const bool userPlay = tts->getUserPlay();
    const bool received = tts->getReceived();
    if (enabled && userPlay && !received && !spokenText.empty())
        getWrapper()->delayingParserActionForServerTts(rawJson, agentName, commandName);
    else
        getWrapper()->executeParserAction(rawJson, agentName, commandName);
}

void OrvaneCloudParserHandle::executeDriverResponse(std::string driverResponse)
{
    LOGD("driverResponse[%s]", driverResponse.c_str());
    getWrapper()->sendDriverResponse(driverResponse);
}
