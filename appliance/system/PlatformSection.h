// What the host platform libraries (system, media, network, location,
// vc_setting) share: reading one call's section of device.json, values that
// stand in for an error code, and the handles that the libraries give out.
#pragma once

#include "vappliance/Device.h"

#include <tizen_error.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace vapp {

inline void platformWarning(const std::string& message)
{
    std::fprintf(stderr, "vappliance: %s\n", message.c_str());
}

// {"error": CODE} in place of a value: true, with the code. An unknown code
// is reported on stderr and answered as TIZEN_ERROR_UNKNOWN.
inline bool errorInPlace(const Json::Value& value, const std::string& where, int* code)
{
    if (!value.isObject() || !value.isMember("error"))
        return false;
    if (!errorCodeFromJson(value["error"], code)) {
        Json::StreamWriterBuilder builder;
        builder["indentation"] = "";
        platformWarning(where + ": unknown error code " + Json::writeString(builder, value["error"]) +
                        ", answering TIZEN_ERROR_UNKNOWN");
        *code = TIZEN_ERROR_UNKNOWN;
    }
    return true;
}

// Typed reads of one described value, as system_info, runtime_info and
// system_settings answer them: the value, the code of an {"error": CODE} in
// its place, or TIZEN_ERROR_INVALID_PARAMETER when it is missing or of
// another type (the platform's answer for a key it does not know, and for a
// key read with the getter of another type).
inline int readValue(const Json::Value& value, const std::string& where, bool* out)
{
    int code = 0;
    if (errorInPlace(value, where, &code))
        return code;
    if (!value.isBool())
        return TIZEN_ERROR_INVALID_PARAMETER;
    *out = value.asBool();
    return TIZEN_ERROR_NONE;
}

inline int readValue(const Json::Value& value, const std::string& where, int* out)
{
    int code = 0;
    if (errorInPlace(value, where, &code))
        return code;
    if (!value.isInt() || value.isBool())
        return TIZEN_ERROR_INVALID_PARAMETER;
    *out = value.asInt();
    return TIZEN_ERROR_NONE;
}

inline int readValue(const Json::Value& value, const std::string& where, double* out)
{
    int code = 0;
    if (errorInPlace(value, where, &code))
        return code;
    if (!value.isDouble() || value.isBool())
        return TIZEN_ERROR_INVALID_PARAMETER;
    *out = value.asDouble();
    return TIZEN_ERROR_NONE;
}

// The text is allocated with malloc; the caller frees it.
inline int readValue(const Json::Value& value, const std::string& where, char** out)
{
    int code = 0;
    if (errorInPlace(value, where, &code))
        return code;
    if (!value.isString())
        return TIZEN_ERROR_INVALID_PARAMETER;
    char* copy = ::strdup(value.asCString());
    if (!copy)
        return TIZEN_ERROR_OUT_OF_MEMORY;
    *out = copy;
    return TIZEN_ERROR_NONE;
}

// One call's view of its section of device.json. The read fails with the
// code that "errors" injects for the function, or with `unavailable` when
// there is no device directory, device.json is malformed, or the section is
// not an object. An absent section reads as an empty one.
class PlatformRead {
public:
    PlatformRead(const char* function, const char* sectionName, int unavailable)
        : mName(sectionName)
    {
        static const Json::Value kEmpty(Json::objectValue);
        mDescription = vapp::description();
        int code = 0;
        if (mDescription && injectedError(*mDescription, function, &code)) {
            mCode = code;
            return;
        }
        if (!mDescription) {
            mCode = unavailable;
            return;
        }
        // The section is read where it is, in the shared description.
        mSection = mDescription->find(sectionName, sectionName + std::strlen(sectionName));
        if (!mSection || mSection->isNull())
            mSection = &kEmpty;
        if (!mSection->isObject()) {
            platformWarning(std::string("device.json: \"") + sectionName + "\" must be an object");
            mSection = &kEmpty;
            mCode = unavailable;
            return;
        }
        mOk = true;
    }

    bool ok() const { return mOk; }
    int code() const { return mCode; }
    const Json::Value& section() const { return *mSection; }

    // The member named `name`, else the one named `alternate` (an enum's
    // number as text); null when there is neither.
    const Json::Value& member(const std::string& name, const std::string& alternate = "") const
    {
        static const Json::Value none;
        if (const Json::Value* found = mSection->find(name.data(), name.data() + name.size()))
            return *found;
        if (!alternate.empty()) {
            if (const Json::Value* found = mSection->find(alternate.data(), alternate.data() + alternate.size()))
                return *found;
        }
        return none;
    }

    // "section.key", for messages.
    std::string where(const std::string& key) const { return mName + "." + key; }

private:
    std::string mName;
    std::shared_ptr<const Json::Value> mDescription;  // keeps mSection alive
    const Json::Value* mSection = &Json::Value::nullSingleton();
    bool mOk = false;
    int mCode = TIZEN_ERROR_UNKNOWN;
};

// The objects behind a library's opaque handles. A handle is the object's
// address; an unknown or destroyed handle finds nothing, so that a stale
// handle is an invalid parameter rather than a crash. Callers hold the
// shared pointer while they use the object.
template <class T>
class HandleTable {
public:
    void* add(std::shared_ptr<T> object)
    {
        std::lock_guard<std::mutex> lock(mMutex);
        void* handle = object.get();
        mObjects[handle] = std::move(object);
        return handle;
    }
    std::shared_ptr<T> find(const void* handle) const
    {
        std::lock_guard<std::mutex> lock(mMutex);
        auto found = mObjects.find(handle);
        return found == mObjects.end() ? nullptr : found->second;
    }
    std::shared_ptr<T> take(const void* handle)
    {
        std::lock_guard<std::mutex> lock(mMutex);
        auto found = mObjects.find(handle);
        if (found == mObjects.end())
            return nullptr;
        auto object = found->second;
        mObjects.erase(found);
        return object;
    }

private:
    mutable std::mutex mMutex;
    std::map<const void*, std::shared_ptr<T>> mObjects;
};

}  // namespace vapp
