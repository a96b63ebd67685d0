#include "DeviceFaults.h"

#include <sound_manager.h>

using marltest::TestDevice;

namespace {

const char* kDescription = R"({
  "sound_manager": {
    "SOUND_TYPE_MEDIA": {"volume": 7, "max_volume": 15},
    "3": {"volume": 2, "max_volume": 10},
    "SOUND_TYPE_ALARM": {"volume": {"error": "SOUND_MANAGER_ERROR_PERMISSION_DENIED"}, "max_volume": 10},
    "SOUND_TYPE_VOICE": {"error": "SOUND_MANAGER_ERROR_NOT_SUPPORTED"}
  }
})";

}  // namespace

TEST(SoundManager, MediaVolumeAndMaximumComeFromTheDescription)
{
    TestDevice dev(kDescription);
    int volume = 0, max = 0;
    EXPECT_EQ(SOUND_MANAGER_ERROR_NONE, sound_manager_get_volume(SOUND_TYPE_MEDIA, &volume));
    EXPECT_EQ(SOUND_MANAGER_ERROR_NONE, sound_manager_get_max_volume(SOUND_TYPE_MEDIA, &max));
    EXPECT_EQ(7, volume);
    EXPECT_EQ(15, max);
    EXPECT_EQ(4, SOUND_TYPE_MEDIA);
}

TEST(SoundManager, SoundTypeMayBeGivenByItsNumber)
{
    TestDevice dev(kDescription);
    int volume = 0, max = 0;
    EXPECT_EQ(SOUND_MANAGER_ERROR_NONE, sound_manager_get_volume(SOUND_TYPE_RINGTONE, &volume));
    EXPECT_EQ(SOUND_MANAGER_ERROR_NONE, sound_manager_get_max_volume(SOUND_TYPE_RINGTONE, &max));
    EXPECT_EQ(2, volume);
    EXPECT_EQ(10, max);
}

TEST(SoundManager, SoundTypeMissingFromTheDescriptionIsAnInvalidParameter)
{
    TestDevice dev(kDescription);
    int volume = 9;
    EXPECT_EQ(SOUND_MANAGER_ERROR_INVALID_PARAMETER, sound_manager_get_volume(SOUND_TYPE_CALL, &volume));
    EXPECT_EQ(9, volume);
}

TEST(SoundManager, UnknownSoundTypeIsAnInvalidParameter)
{
    TestDevice dev(kDescription);
    int volume = 9;
    EXPECT_EQ(SOUND_MANAGER_ERROR_INVALID_PARAMETER, sound_manager_get_volume(static_cast<sound_type_e>(8), &volume));
    EXPECT_EQ(SOUND_MANAGER_ERROR_INVALID_PARAMETER, sound_manager_get_volume(static_cast<sound_type_e>(-1), &volume));
    EXPECT_EQ(SOUND_MANAGER_ERROR_INVALID_PARAMETER, sound_manager_get_volume(SOUND_TYPE_MEDIA, nullptr));
}

TEST(SoundManager, ErrorInPlaceOfAVolumeOrOfASoundTypeIsAnswered)
{
    TestDevice dev(kDescription);
    int volume = 0, max = 0;
    EXPECT_EQ(SOUND_MANAGER_ERROR_PERMISSION_DENIED, sound_manager_get_volume(SOUND_TYPE_ALARM, &volume));
    EXPECT_EQ(SOUND_MANAGER_ERROR_NONE, sound_manager_get_max_volume(SOUND_TYPE_ALARM, &max));
    EXPECT_EQ(10, max);
    EXPECT_EQ(SOUND_MANAGER_ERROR_NOT_SUPPORTED, sound_manager_get_max_volume(SOUND_TYPE_VOICE, &max));
}

TEST(SoundManager, InjectedErrorIsReturnedAsIs)
{
    TestDevice dev(kDescription);
    dev.apply(R"({"errors": {"sound_manager_get_max_volume": "SOUND_MANAGER_ERROR_INTERNAL"}})");
    int volume = 0, max = 0;
    EXPECT_EQ(SOUND_MANAGER_ERROR_INTERNAL, sound_manager_get_max_volume(SOUND_TYPE_MEDIA, &max));
    EXPECT_EQ(0, max);
    EXPECT_EQ(SOUND_MANAGER_ERROR_NONE, sound_manager_get_volume(SOUND_TYPE_MEDIA, &volume));
}

TEST(SoundManager, MissingDeviceDirectoryIsAnInternalError)
{
    TestDevice dev(kDescription);
    marltest::removeDevice(dev);
    int volume = 0;
    EXPECT_EQ(SOUND_MANAGER_ERROR_INTERNAL, sound_manager_get_volume(SOUND_TYPE_MEDIA, &volume));
}

TEST(SoundManager, MalformedDescriptionIsAnInternalError)
{
    TestDevice dev(kDescription);
    marltest::breakDescription(dev);
    int volume = 0;
    EXPECT_EQ(SOUND_MANAGER_ERROR_INTERNAL, sound_manager_get_volume(SOUND_TYPE_MEDIA, &volume));
}
