# Builds for 64-bit Windows with Debian's mingw-w64, and runs what was built
# under Wine.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)

# The libraries made by packaging/windows/dependencies, and a static Qt. What
# was named at first stays.
set(windows_kit ${CMAKE_CURRENT_LIST_DIR}/../build/windows-kit)
if(DEFINED ENV{VEL_WINDOWS_CACHE})
  set(windows_kit $ENV{VEL_WINDOWS_CACHE})
endif()
set(VEL_WINDOWS_CACHE ${windows_kit} CACHE PATH "Folder of packaging/windows/dependencies")
get_filename_component(windows_kit ${VEL_WINDOWS_CACHE} ABSOLUTE)
set(windows_qt ${windows_kit}/qt)
if(DEFINED ENV{VEL_WINDOWS_QT})
  set(windows_qt $ENV{VEL_WINDOWS_QT})
endif()
set(VEL_WINDOWS_QT ${windows_qt} CACHE PATH "Folder of a static Qt for mingw-w64")

set(CMAKE_FIND_ROOT_PATH /usr/${triplet} ${windows_kit}/usr ${VEL_WINDOWS_QT})
list(APPEND CMAKE_PREFIX_PATH ${windows_kit}/usr ${VEL_WINDOWS_QT})
set(ENV{PKG_CONFIG_LIBDIR} ${windows_kit}/usr/lib/pkgconfig)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# One file to copy: no run-time libraries beside the program.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-under-wine)
