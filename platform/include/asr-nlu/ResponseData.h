#ifndef ASR_NLU_RESPONSE_DATA_H
#define ASR_NLU_RESPONSE_DATA_H

#include <string>

#include "OVActionData.h"

// What the parser hands to OrvaneParserListener::executeOVAction. Owns its
// OVActionData.
class ResponseData {
public:
    ResponseData();
    ~ResponseData();
    ResponseData(const ResponseData&) = delete;
    ResponseData& operator=(const ResponseData&) = delete;

    OVActionData* getOvActionData();   // null when there is none
    std::string getSpokenText();       // the words the server wants spoken

    void setOvActionData(OVActionData* ovActionData);   // takes ownership
    void setSpokenText(std::string spokenText);

private:
    OVActionData* mOvActionData;
    std::string mSpokenText;
};

#endif
