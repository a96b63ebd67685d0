// What lasts from one recognition to the next: the voice context that the last
// server action asked for, and two identifiers.
#ifndef SESSION_MANAGER_H
#define SESSION_MANAGER_H

#include <string>

enum VoiceContextActionType {
    VOICE_CONTEXT_KEEP = 1,
    VOICE_CONTEXT_NONE = 2,
    VOICE_CONTEXT_FOLLOW_UP = 3,
};

class SessionManager {
public:
    SessionManager();
    ~SessionManager();

    VoiceContextActionType getContextType();
    void setContextType(VoiceContextActionType contextType);
    bool getOnDriverResponse();
    void setOnDriverResponse(bool onDriverResponse);
    std::string getContextId();
    void setContextId(std::string contextId);
    std::string getPlmId();
    void setPlmId(std::string plmId);

private:
    void _clearSessionData();

    bool mOnDriverResponse;
    VoiceContextActionType mContextType;
    std::string mContextId;
    std::string mPlmId;
};

#endif
