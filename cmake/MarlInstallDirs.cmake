# Where the product goes on the appliance, one variable per folder, all under
# the platform's read-only shared data root. The platform's packages pass that
# root as -DTZ_SYS_RO_SHARE=%TZ_SYS_RO_SHARE (/usr/share on the appliance); a
# relative root lies under the install prefix.
set(TZ_SYS_RO_SHARE share CACHE STRING "The platform's read-only shared data root (relative: under the install prefix)")

# The daemon loads every plug-in of this folder.
set(MARL_ENGINE_INSTALL_DIR ${TZ_SYS_RO_SHARE}/voice/vc/1.0/engine)
# The daemon's configuration reads every engine's description from here.
set(MARL_ENGINE_INFO_INSTALL_DIR ${TZ_SYS_RO_SHARE}/voice/vc/1.0/engine-info)
# The engine's read-only American English data, copied by the plug-in's load
# into the daemon user's home (the path that the plug-in's load names).
set(MARL_ENGINE_DATA_INSTALL_DIR ${TZ_SYS_RO_SHARE}/voice/vc/1.0/engine-data/marl/shared/res/en_US)
# The platform's packages put their license file here, named after the package.
set(MARL_PACKAGE_NAME vc-engine-marl)
set(MARL_LICENSE_INSTALL_DIR ${TZ_SYS_RO_SHARE}/license)

set(MARL_ENGINE_DATA_SOURCE_DIR "" CACHE PATH
  "Folder whose content is installed as the engine's data (the speech library's resources); empty installs the folder alone")
