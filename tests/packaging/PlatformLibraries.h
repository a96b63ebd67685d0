// The libraries that the plug-in needs, by the names that the appliance's
// image gives them. Each platform library with its soname, the file that the
// platform's package installs, and where its public packaging sets them (the
// repositories are tizenorg's on GitHub; MAJORVER and FULLVER are the first
// number and the whole of the recipe's Version). The closed libraries keep
// their unversioned names. scripts/package.sh reads the sonames of this file.
#pragma once

namespace packaging {

struct NamedLibrary {
    const char* soname;
    const char* file;
    const char* source;
};

inline const NamedLibrary kPlatformLibraries[] = {
    {"libdlog.so.0", "libdlog.so.0.0.0",
     "platform.core.system.dlog: packaging/dlog.spec %files libdlog.so.0 and libdlog.so.0.0.0"},
    {"libvconf.so.0", "libvconf.so.0.2.45",
     "platform.core.appfw.vconf: CMakeLists.txt VERSION_MAJOR 0, VERSION 0.2.45, SOVERSION ${VERSION_MAJOR}"},
    {"libtzplatform-config-2.0.so.2", "libtzplatform-config-2.0.so.2.0.0",
     "platform.core.system.tizen-platform-config: configure.ac LIBTZPLATFORM_CONFIG_VERSION 2.0 and "
     "SO_VERSION 2:0:0, src/Makefile.am libtzplatform-config-@LIBTZPLATFORM_CONFIG_VERSION@.la"},
    {"libcapi-appfw-app-control.so.0", "libcapi-appfw-app-control.so.0.1.0",
     "platform.core.api.application: app_control/CMakeLists.txt SOVERSION ${MAJORVER}, "
     "packaging/capi-appfw-application.spec Version 0.1.0"},
    {"libcapi-appfw-app-manager.so.0", "libcapi-appfw-app-manager.so.0.2.4",
     "platform.core.api.app-manager: CMakeLists.txt SOVERSION ${MAJORVER}, "
     "packaging/capi-appfw-app-manager.spec Version 0.2.4"},
    {"libaul.so.0", "libaul.so.0.0.300",
     "platform.core.appfw.aul-1: CMakeLists.txt SOVERSION ${MAJORVER}, packaging/aul.spec Version 0.0.300"},
    {"libcapi-media-audio-io.so.0", "libcapi-media-audio-io.so.0.3.39",
     "platform.core.api.audio-io: CMakeLists.txt SOVERSION ${MAJORVER}, "
     "packaging/capi-media-audio-io.spec Version 0.3.39"},
    {"libcapi-media-sound-manager.so.0", "libcapi-media-sound-manager.so.0.3.57",
     "platform.core.api.sound-manager: CMakeLists.txt SOVERSION ${MAJORVER}, "
     "packaging/capi-media-sound-manager.spec Version 0.3.57"},
    {"libcapi-system-info.so.0", "libcapi-system-info.so.0.2.0",
     "platform.core.api.system-info: CMakeLists.txt SOVERSION ${MAJORVER}, "
     "packaging/capi-system-info.spec Version 0.2.0"},
    {"libcapi-system-runtime-info.so.0", "libcapi-system-runtime-info.so.0.0.3",
     "platform.core.api.runtime-info: CMakeLists.txt SOVERSION ${MAJORVER}, "
     "packaging/capi-system-runtime-info.spec Version 0.0.3"},
    {"libcapi-system-system-settings.so.0", "libcapi-system-system-settings.so.0.0.2",
     "platform.core.api.system-settings: CMakeLists.txt SOVERSION ${MAJORVER}, "
     "packaging/capi-system-system-settings.spec Version 0.0.2"},
    {"libcapi-system-device.so.0", "libcapi-system-device.so.0.1.0",
     "platform.core.api.device: CMakeLists.txt SOVERSION ${MAJORVER}, packaging/capi-system-device.spec Version 0.1.0"},
    {"libcapi-network-wifi.so.1", "libcapi-network-wifi.so.1.0.77",
     "platform.core.api.wifi: CMakeLists.txt SOVERSION ${MAJORVER}, packaging/capi-network-wifi.spec Version 1.0.77"},
    {"libcapi-network-connection.so.1", "libcapi-network-connection.so.1.0.92",
     "platform.core.api.connection: CMakeLists.txt SOVERSION ${MAJORVER}, "
     "packaging/capi-network-connection.spec Version 1.0.92"},
    {"libcapi-network-nfc.so.0", "libcapi-network-nfc.so.0.3.4",
     "platform.core.api.nfc: CMakeLists.txt SOVERSION ${MAJORVER}, packaging/capi-network-nfc.spec Version 0.3.4"},
    {"libcapi-location-manager.so.0", "libcapi-location-manager.so.0.7.2",
     "platform.core.api.location-manager: CMakeLists.txt SOVERSION ${MAJORVER}, "
     "packaging/capi-location-manager.spec Version 0.7.2"},
    {"libvc_setting.so", "libvc_setting.so",
     "platform.core.uifw.voice-control: client/CMakeLists.txt ADD_LIBRARY(\"${PROJECT_NAME}_setting\") with no "
     "SOVERSION, packaging/voice-control.spec %files libvc_setting.so"},
};

// The closed speech, parser and data-store libraries: their own names, unversioned.
inline const NamedLibrary kClosedLibraries[] = {
    {"libasr-nlu.so", "libasr-nlu.so", "the closed speech library"},
    {"liborvaneparser.so", "liborvaneparser.so", "the closed parser library"},
    {"liborvane-da-db.so", "liborvane-da-db.so", "the closed data-store library"},
};

// The open libraries, by their soname without its version, which is the
// image's (here the sysroot's or the build machine's).
inline const char* const kOpenLibraries[] = {
    "libjson-glib-1.0.so", "libgobject-2.0.so", "libglib-2.0.so", "libjsoncpp.so", "libsqlite3.so",
    "libcrypto.so",        "libecore.so",       "libeina.so",     "libstdc++.so",  "libgcc_s.so",
    "libc.so",
};

}  // namespace packaging
