# Where the product goes on the appliance. The platform's read-only shared data
# root (/usr/share under the /usr prefix) holds both the daemon's engine folder
# and the engines' data; the plug-in's load copies the data folder into the
# daemon user's home.
include(GNUInstallDirs)
set(MARL_ENGINE_INSTALL_DIR ${CMAKE_INSTALL_DATAROOTDIR}/voice/vc/1.0/engine
  CACHE STRING "Folder of the voice-control daemon's engines, under the install prefix")
set(MARL_ENGINE_DATA_INSTALL_DIR ${CMAKE_INSTALL_DATAROOTDIR}/voice/vc/1.0/engine-data/marl/shared/res/en_US
  CACHE STRING "The engine's read-only American English data folder, under the install prefix")
set(MARL_ENGINE_DATA_SOURCE_DIR "" CACHE PATH
  "Folder whose content is installed as the engine's data (the speech library's resources); empty installs the folder alone")
