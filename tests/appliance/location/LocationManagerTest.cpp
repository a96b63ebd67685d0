#include "DeviceFaults.h"

#include <locations.h>

#include <string>
#include <vector>

using marltest::TestDevice;

namespace {

const char* kDescription = R"({
  "location": {
    "methods": {"LOCATIONS_METHOD_HYBRID": true, "1": false, "LOCATIONS_METHOD_WPS": {"error": "LOCATIONS_ERROR_ACCESSIBILITY_NOT_ALLOWED"}}
  }
})";

std::vector<std::string> serviceEvents()
{
    std::vector<std::string> events;
    for (const auto& entry : vapp::readJournal()) {
        const std::string event = entry["event"].asString();
        if (event == "location_start" || event == "location_stop")
            events.push_back(event + " " + entry["method"].asString());
    }
    return events;
}

}  // namespace

TEST(LocationManager, MethodStatesComeFromTheDescription)
{
    TestDevice dev(kDescription);
    bool hybrid = false, gps = true;
    EXPECT_EQ(0, LOCATIONS_METHOD_HYBRID);
    EXPECT_EQ(LOCATIONS_ERROR_NONE, location_manager_is_enabled_method(LOCATIONS_METHOD_HYBRID, &hybrid));
    EXPECT_TRUE(hybrid);
    // "1" names LOCATIONS_METHOD_GPS by its number.
    EXPECT_EQ(LOCATIONS_ERROR_NONE, location_manager_is_enabled_method(LOCATIONS_METHOD_GPS, &gps));
    EXPECT_FALSE(gps);
}

TEST(LocationManager, MethodMissingFromTheDescriptionIsNotSupported)
{
    TestDevice dev(kDescription);
    bool passive = true;
    EXPECT_EQ(LOCATIONS_ERROR_NOT_SUPPORTED, location_manager_is_enabled_method(LOCATIONS_METHOD_PASSIVE, &passive));
    location_manager_h manager = nullptr;
    EXPECT_EQ(LOCATIONS_ERROR_NOT_SUPPORTED, location_manager_create(LOCATIONS_METHOD_PASSIVE, &manager));
    EXPECT_EQ(nullptr, manager);
}

TEST(LocationManager, StartAndStopOfTheServiceAreJournaled)
{
    TestDevice dev(kDescription);
    location_manager_h manager = nullptr;
    ASSERT_EQ(LOCATIONS_ERROR_NONE, location_manager_create(LOCATIONS_METHOD_HYBRID, &manager));
    EXPECT_TRUE(serviceEvents().empty());
    EXPECT_EQ(LOCATIONS_ERROR_NONE, location_manager_start(manager));
    EXPECT_EQ(LOCATIONS_ERROR_NONE, location_manager_stop(manager));
    EXPECT_EQ(LOCATIONS_ERROR_NONE, location_manager_destroy(manager));
    EXPECT_EQ((std::vector<std::string>{"location_start LOCATIONS_METHOD_HYBRID", "location_stop LOCATIONS_METHOD_HYBRID"}),
              serviceEvents());
}

TEST(LocationManager, DestroyStopsAStartedManager)
{
    TestDevice dev(kDescription);
    location_manager_h manager = nullptr;
    ASSERT_EQ(LOCATIONS_ERROR_NONE, location_manager_create(LOCATIONS_METHOD_HYBRID, &manager));
    ASSERT_EQ(LOCATIONS_ERROR_NONE, location_manager_start(manager));
    EXPECT_EQ(LOCATIONS_ERROR_NONE, location_manager_destroy(manager));
    EXPECT_EQ((std::vector<std::string>{"location_start LOCATIONS_METHOD_HYBRID", "location_stop LOCATIONS_METHOD_HYBRID"}),
              serviceEvents());
}

TEST(LocationManager, StartingAMethodThatIsOffAnswersSettingOff)
{
    TestDevice dev(kDescription);
    location_manager_h manager = nullptr;
    ASSERT_EQ(LOCATIONS_ERROR_NONE, location_manager_create(LOCATIONS_METHOD_GPS, &manager));
    EXPECT_EQ(LOCATIONS_ERROR_SETTING_OFF, location_manager_start(manager));
    EXPECT_EQ(LOCATIONS_ERROR_NONE, location_manager_destroy(manager));
    EXPECT_TRUE(serviceEvents().empty());
}

TEST(LocationManager, NullUnknownAndDestroyedManagersAreInvalidParameters)
{
    TestDevice dev(kDescription);
    EXPECT_EQ(LOCATIONS_ERROR_INVALID_PARAMETER, location_manager_stop(nullptr));
    EXPECT_EQ(LOCATIONS_ERROR_INVALID_PARAMETER, location_manager_destroy(nullptr));
    EXPECT_EQ(LOCATIONS_ERROR_INVALID_PARAMETER, location_manager_start(nullptr));
    location_manager_h manager = nullptr;
    ASSERT_EQ(LOCATIONS_ERROR_NONE, location_manager_create(LOCATIONS_METHOD_HYBRID, &manager));
    ASSERT_EQ(LOCATIONS_ERROR_NONE, location_manager_destroy(manager));
    EXPECT_EQ(LOCATIONS_ERROR_INVALID_PARAMETER, location_manager_stop(manager));
    EXPECT_EQ(LOCATIONS_ERROR_INVALID_PARAMETER, location_manager_destroy(manager));
    bool enabled = false;
    EXPECT_EQ(LOCATIONS_ERROR_INVALID_PARAMETER,
              location_manager_is_enabled_method(LOCATIONS_METHOD_NONE, &enabled));
    EXPECT_EQ(LOCATIONS_ERROR_INVALID_PARAMETER, location_manager_is_enabled_method(LOCATIONS_METHOD_HYBRID, nullptr));
}

TEST(LocationManager, ErrorInPlaceOfAMethodStateIsAnswered)
{
    TestDevice dev(kDescription);
    bool wps = true;
    EXPECT_EQ(LOCATIONS_ERROR_ACCESSIBILITY_NOT_ALLOWED, location_manager_is_enabled_method(LOCATIONS_METHOD_WPS, &wps));
    EXPECT_TRUE(wps);
}

TEST(LocationManager, InjectedErrorIsReturnedAsIs)
{
    TestDevice dev(kDescription);
    dev.apply(R"({"errors": {"location_manager_is_enabled_method": "LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE",
                             "location_manager_start": "LOCATIONS_ERROR_NETWORK_FAILED"}})");
    bool hybrid = false;
    EXPECT_EQ(LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE, location_manager_is_enabled_method(LOCATIONS_METHOD_HYBRID, &hybrid));
    location_manager_h manager = nullptr;
    ASSERT_EQ(LOCATIONS_ERROR_NONE, location_manager_create(LOCATIONS_METHOD_HYBRID, &manager));
    EXPECT_EQ(LOCATIONS_ERROR_NETWORK_FAILED, location_manager_start(manager));
    EXPECT_EQ(LOCATIONS_ERROR_NONE, location_manager_destroy(manager));
    EXPECT_TRUE(serviceEvents().empty());
}

TEST(LocationManager, MissingDeviceDirectoryIsServiceNotAvailable)
{
    TestDevice dev(kDescription);
    location_manager_h manager = nullptr;
    ASSERT_EQ(LOCATIONS_ERROR_NONE, location_manager_create(LOCATIONS_METHOD_HYBRID, &manager));
    marltest::removeDevice(dev);
    bool hybrid = false;
    EXPECT_EQ(LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE, location_manager_is_enabled_method(LOCATIONS_METHOD_HYBRID, &hybrid));
    EXPECT_EQ(LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE, location_manager_start(manager));
    location_manager_h another = nullptr;
    EXPECT_EQ(LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE, location_manager_create(LOCATIONS_METHOD_HYBRID, &another));
    // The manager that exists can still be released.
    EXPECT_EQ(LOCATIONS_ERROR_NONE, location_manager_stop(manager));
    EXPECT_EQ(LOCATIONS_ERROR_NONE, location_manager_destroy(manager));
}

TEST(LocationManager, MalformedDescriptionIsServiceNotAvailable)
{
    TestDevice dev(kDescription);
    marltest::breakDescription(dev);
    bool hybrid = false;
    EXPECT_EQ(LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE, location_manager_is_enabled_method(LOCATIONS_METHOD_HYBRID, &hybrid));
}
