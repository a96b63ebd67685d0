// The speech library's data classes: what onParseAction carries and what the
// parser hands to its listener.
#include <asr-nlu/AgentActionDataFrame.h>
#include <asr-nlu/OVActionData.h>
#include <asr-nlu/RecognitionAgentResponse.h>
#include <asr-nlu/ResponseData.h>

RecognitionAgentResponse::RecognitionAgentResponse() : mEngineType(), mResponseType(0), mIsLast(false), mData() {}

std::string RecognitionAgentResponse::getEngineType() { return mEngineType; }
int RecognitionAgentResponse::getResponseType() { return mResponseType; }
bool RecognitionAgentResponse::getIsLast() { return mIsLast; }
std::string RecognitionAgentResponse::getData() { return mData; }
void RecognitionAgentResponse::setEngineType(std::string engineType) { mEngineType = engineType; }
void RecognitionAgentResponse::setResponseType(int responseType) { mResponseType = responseType; }
void RecognitionAgentResponse::setIsLast(bool isLast) { mIsLast = isLast; }
void RecognitionAgentResponse::setData(std::string data) { mData = data; }

ResponseData::ResponseData() : mOvActionData(nullptr), mSpokenText() {}

ResponseData::~ResponseData()
{
    delete mOvActionData;
}

OVActionData* ResponseData::getOvActionData() { return mOvActionData; }
std::string ResponseData::getSpokenText() { return mSpokenText; }

void ResponseData::setOvActionData(OVActionData* ovActionData)
{
    if (ovActionData != mOvActionData)
        delete mOvActionData;
    mOvActionData = ovActionData;
}

void ResponseData::setSpokenText(std::string spokenText) { mSpokenText = spokenText; }

OVActionData::OVActionData() : mActionData(nullptr), mActionAgent() {}

OVActionData::~OVActionData()
{
    delete mActionData;
}

AgentActionDataFrame* OVActionData::getActionData() { return mActionData; }
std::string OVActionData::getActionAgent() { return mActionAgent; }

void OVActionData::setActionData(AgentActionDataFrame* actionData)
{
    if (actionData != mActionData)
        delete mActionData;
    mActionData = actionData;
}

void OVActionData::setActionAgent(std::string actionAgent) { mActionAgent = actionAgent; }

AgentActionDataFrame::AgentActionDataFrame() : mActionType(), mRawJson(), mCommandName(), mActionName() {}

std::string AgentActionDataFrame::getActionType() { return mActionType; }
std::string AgentActionDataFrame::getRawJson() { return mRawJson; }
std::string AgentActionDataFrame::getCommandName() { return mCommandName; }
std::string AgentActionDataFrame::getActionName() { return mActionName; }
void AgentActionDataFrame::setActionType(std::string actionType) { mActionType = actionType; }
void AgentActionDataFrame::setRawJson(std::string rawJson) { mRawJson = rawJson; }
void AgentActionDataFrame::setCommandName(std::string commandName) { mCommandName = commandName; }
void AgentActionDataFrame::setActionName(std::string actionName) { mActionName = actionName; }
