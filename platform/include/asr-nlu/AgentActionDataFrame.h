#ifndef ASR_NLU_AGENT_ACTION_DATA_FRAME_H
#define ASR_NLU_AGENT_ACTION_DATA_FRAME_H

#include <string>

// The action part of a parsed server answer.
class AgentActionDataFrame {
public:
    AgentActionDataFrame();

    std::string getActionType();    // "Follow-Up", "Keep Context", ...
    std::string getRawJson();       // the action as JSON text
    std::string getCommandName();
    std::string getActionName();

    void setActionType(std::string actionType);
    void setRawJson(std::string rawJson);
    void setCommandName(std::string commandName);
    void setActionName(std::string actionName);

private:
    std::string mActionType;
    std::string mRawJson;
    std::string mCommandName;
    std::string mActionName;
};

#endif
