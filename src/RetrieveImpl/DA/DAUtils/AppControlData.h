#ifndef UTIL_APP_CONTROL_DATA_H
#define UTIL_APP_CONTROL_DATA_H

#include <list>
#include <string>
#include <utility>

namespace Util {

// One launch or terminate request of an app. The setters return the record,
// so that calls chain.
class AppControlData {
public:
    AppControlData();
    virtual ~AppControlData();

    AppControlData& setPackageName(const std::string& packageName);
    AppControlData& setOperation(const std::string& operation);
    AppControlData& setUri(const std::string& uri);
    AppControlData& addExtraData(const std::string& key, const std::string& value);
    AppControlData& clearExtraData();
    AppControlData& setTerminateRequest(bool terminateRequest);

    // Null when the text is empty.
    const char* getPackageName() const;
    const char* getOperation() const;
    const char* getUri() const;
    // The pairs stay the record's.
    std::list<std::pair<std::string, std::string>*> getExtraDataList() const;
    bool getTerminateRequest() const;

    AppControlData(const AppControlData&) = delete;
    AppControlData& operator=(const AppControlData&) = delete;

private:
    std::string mPackageName;
    std::string mOperation;
    std::string mUri;
    std::list<std::pair<std::string, std::string>*> mExtraData;
    bool mTerminateRequest;
};

}  // namespace Util

#endif
