// A fresh device directory for one test: made on construction, named in
// MARL_DEVICE_DIR for this process, removed on destruction.
#pragma once

#include "vappliance/Device.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

namespace marltest {

class TestDevice {
public:
    // `description` is a device description in JSON text; empty for a bare device.
    explicit TestDevice(const std::string& description = "{}")
    {
        const char* tmp = std::getenv("MARL_TEST_TMP");
        std::filesystem::path base = tmp && *tmp ? tmp : std::filesystem::temp_directory_path();
        std::filesystem::create_directories(base);
        std::string pattern = (base / "device-XXXXXX").string();
        mDir = ::mkdtemp(pattern.data()) ? pattern : std::string();
        ::setenv("MARL_DEVICE_DIR", mDir.c_str(), 1);
        apply(description);
    }
    ~TestDevice()
    {
        std::error_code ec;
        if (!mDir.empty() && !std::getenv("MARL_KEEP_TEST_DEVICES"))
            std::filesystem::remove_all(mDir, ec);
    }
    TestDevice(const TestDevice&) = delete;
    TestDevice& operator=(const TestDevice&) = delete;

    void apply(const std::string& description)
    {
        Json::Value json;
        Json::CharReaderBuilder builder;
        std::string errors;
        std::istringstream in(description);
        ASSERT_TRUE(Json::parseFromStream(builder, in, &json, &errors)) << errors;
        std::string error;
        ASSERT_TRUE(vapp::applyDescription(json, mDir, &error)) << error;
    }

    const std::string& dir() const { return mDir; }
    std::string path(const std::string& relative) const { return mDir + "/" + relative; }

private:
    std::string mDir;
};

}  // namespace marltest
