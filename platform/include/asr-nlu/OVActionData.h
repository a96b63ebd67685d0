#ifndef ASR_NLU_OV_ACTION_DATA_H
#define ASR_NLU_OV_ACTION_DATA_H

#include <string>

#include "AgentActionDataFrame.h"

// An agent's action. Owns its AgentActionDataFrame.
class OVActionData {
public:
    OVActionData();
    ~OVActionData();
    OVActionData(const OVActionData&) = delete;
    OVActionData& operator=(const OVActionData&) = delete;

    AgentActionDataFrame* getActionData();   // null when there is none
    std::string getActionAgent();

    void setActionData(AgentActionDataFrame* actionData);   // takes ownership
    void setActionAgent(std::string actionAgent);

private:
    AgentActionDataFrame* mActionData;
    std::string mActionAgent;
};

#endif
