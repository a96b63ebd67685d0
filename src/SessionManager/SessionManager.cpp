#include "SessionManager/SessionManager.h"

#include "utils/MarlLog.h"

SessionManager::SessionManager()
    : mOnDriverResponse(false), mContextType(VOICE_CONTEXT_NONE), mContextId(""), mPlmId("")
{
    _clearSessionData();
}

SessionManager::~SessionManager()
{
}

VoiceContextActionType SessionManager::getContextType()
{
    LOGD("mContextType[%d]", mContextType);
    return mContextType;
}

void SessionManager::setContextType(VoiceContextActionType contextType)
{
    LOGD("contextType[%d]", contextType);
    mContextType = contextType;
}

bool SessionManager::getOnDriverResponse()
{
    LOGD("mOnDriverResponse[%d]", mOnDriverResponse);
    return mOnDriverResponse;
}

void SessionManager::setOnDriverResponse(bool onDriverResponse)
{
    LOGD("onDriverResponse[%d]", onDriverResponse);
    mOnDriverResponse = onDriverResponse;
}

std::string SessionManager::getContextId()
{
    // The identifier is logged through a number placeholder, as its length.
    LOGD("mContextId[%d]", static_cast<int>(mContextId.size()));
    return mContextId;
}

void SessionManager::setContextId(std::string contextId)
{
    LOGD("contextId[%s]", contextId.c_str());
    mContextId = contextId;
}

std::string SessionManager::getPlmId()
{
    LOGD("mPlmId[%d]", static_cast<int>(mPlmId.size()));
    return mPlmId;
}

void SessionManager::setPlmId(std::string plmId)
{
    LOGD("plmId[%s]", plmId.c_str());
    mPlmId = plmId;
}

void SessionManager::_clearSessionData()
{
    LOGD("clear session data");
    setContextType(VOICE_CONTEXT_NONE);
    setContextId("");
    setPlmId("");
}
