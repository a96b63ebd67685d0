/* The media, system, network, location and voice-control setting headers,
 * compiled as C and as C++14, with the numbers the plug-in passes. */
#include <audio_io.h>
#include <device/battery.h>
#include <locations.h>
#include <net_connection.h>
#include <nfc.h>
#include <runtime_info.h>
#include <sound_manager.h>
#include <system_info.h>
#include <system_settings.h>
#include <voice_control_setting.h>
#include <wifi.h>

#ifdef __cplusplus
#define CHECK(condition) static_assert(condition, #condition)
#else
#define CHECK(condition) _Static_assert(condition, #condition)
#endif

CHECK(AUDIO_CHANNEL_MONO == 128);
CHECK(AUDIO_SAMPLE_TYPE_S16_LE == 113);
CHECK(SOUND_TYPE_MEDIA == 4);
CHECK(RUNTIME_INFO_KEY_BLUETOOTH_ENABLED == 2);
CHECK(RUNTIME_INFO_KEY_WIFI_HOTSPOT_ENABLED == 3);
CHECK(RUNTIME_INFO_KEY_VIBRATION_ENABLED == 12);
CHECK(RUNTIME_INFO_KEY_GPS_STATUS == 18);
CHECK(RUNTIME_INFO_KEY_AUTO_ROTATION_ENABLED == 26);
CHECK(SYSTEM_SETTINGS_KEY_3G_DATA_NETWORK_ENABLED == 8);
CHECK(SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE == 18);
CHECK(SYSTEM_SETTINGS_KEY_NETWORK_FLIGHT_MODE == 24);
CHECK(WIFI_CONNECTION_STATE_CONNECTED == 3);
CHECK(LOCATIONS_METHOD_HYBRID == 0);
CHECK(CONNECTION_ADDRESS_FAMILY_IPV4 == 0);
CHECK(AUDIO_IO_ERROR_INVALID_STATE < 0 && WIFI_ERROR_NO_CONNECTION < 0 && VC_ERROR_INVALID_STATE < 0);

int platform_headers_check(void)
{
    return 0;
}
