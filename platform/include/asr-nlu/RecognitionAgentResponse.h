#ifndef ASR_NLU_RECOGNITION_AGENT_RESPONSE_H
#define ASR_NLU_RECOGNITION_AGENT_RESPONSE_H

#include <string>

// One piece of recognition output that the speech library hands to
// RecognitionListener::onParseAction. A response type of 1 is an NLU result.
class RecognitionAgentResponse {
public:
    RecognitionAgentResponse();

    std::string getEngineType();
    int getResponseType();
    bool getIsLast();
    std::string getData();

    void setEngineType(std::string engineType);
    void setResponseType(int responseType);
    void setIsLast(bool isLast);
    void setData(std::string data);

private:
    std::string mEngineType;
    int mResponseType;
    bool mIsLast;
    std::string mData;
};

#endif
