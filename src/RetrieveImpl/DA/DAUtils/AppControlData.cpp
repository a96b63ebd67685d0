#include "RetrieveImpl/DA/DAUtils/AppControlData.h"

namespace Util {

namespace {
const char* textOrNull(const std::string& text)
{
    return text.empty() ? nullptr : text.c_str();
}
}  // namespace

AppControlData::AppControlData() : mTerminateRequest(false)
{
}

AppControlData::~AppControlData()
{
    clearExtraData();
}

AppControlData& AppControlData::setPackageName(const std::string& packageName)
{
    mPackageName = packageName;
    return *this;
}

AppControlData& AppControlData::setOperation(const std::string& operation)
{
    mOperation = operation;
    return *this;
}

AppControlData& AppControlData::setUri(const std::string& uri)
{
    mUri = uri;
    return *this;
}

AppControlData& AppControlData::addExtraData(const std::string& key, const std::string& value)
{
    mExtraData.push_back(new std::pair<std::string, std::string>(key, value));
    return *this;
}

AppControlData& AppControlData::clearExtraData()
{
    for (auto* pair : mExtraData)
        delete pair;
    mExtraData.clear();
    return *this;
}

AppControlData& AppControlData::setTerminateRequest(bool terminateRequest)
{
    mTerminateRequest = terminateRequest;
    return *this;
}

const char* AppControlData::getPackageName() const
{
    return textOrNull(mPackageName);
}

const char* AppControlData::getOperation() const
{
    return textOrNull(mOperation);
}

const char* AppControlData::getUri() const
{
    return textOrNull(mUri);
}

std::list<std::pair<std::string, std::string>*> AppControlData::getExtraDataList() const
{
    return mExtraData;
}

bool AppControlData::getTerminateRequest() const
{
    return mTerminateRequest;
}

}  // namespace Util
