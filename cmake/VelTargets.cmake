# The one target with the compiler options, and the functions that make the
# project's libraries, programs and tests from it.

include_guard(GLOBAL)

add_library(vel_options INTERFACE)
target_compile_features(vel_options INTERFACE cxx_std_20)
target_include_directories(vel_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_definitions(vel_options INTERFACE
  VEL_VERSION_MAJOR=${PROJECT_VERSION_MAJOR}
  VEL_VERSION_MINOR=${PROJECT_VERSION_MINOR}
  VEL_VERSION_REVISION=${PROJECT_VERSION_PATCH})
target_compile_options(vel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${VEL_WERROR}>:-Werror>)
# GCC 12 takes "text" + std::string for an overlapping copy (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(vel_options INTERFACE -Wno-restrict)
  # Where it optimises, and with precompiled headers, it finds more of this kind in
  # its own std::string; what they would tell of ours the other builds tell.
  if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    target_compile_options(vel_options INTERFACE -Wno-array-bounds -Wno-stringop-overflow)
  endif()
endif()
if(VEL_SANITIZE)
  target_compile_options(vel_options INTERFACE
    -fsanitize=${VEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # GCC 12 takes parts of its own std::regex for uninitialized then.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(vel_options INTERFACE -Wno-maybe-uninitialized)
  endif()
  target_link_options(vel_options INTERFACE -fsanitize=${VEL_SANITIZE})
endif()
# Checked on the built programs by scripts/check-hardening.
if(VEL_HARDEN AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  target_compile_options(vel_options INTERFACE
    -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -fstack-protector-strong -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|i[3-6]86")
    target_compile_options(vel_options INTERFACE -fcf-protection=full)
  endif()
  target_link_options(vel_options INTERFACE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie> -Wl,-z,relro -Wl,-z,now
    -Wl,-z,noexecstack)
endif()
if(VEL_FUZZ)
  target_compile_options(vel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(WIN32)
  target_compile_definitions(vel_options INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN
                             _WIN32_WINNT=0x0A00)
  target_link_options(vel_options INTERFACE -static)
endif()

# vel_logic(NAME SOURCES ... LINKS ...): a library of standard C++, never Qt.
function(vel_logic name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC vel_options ${ARG_LINKS})
endfunction()

# What most files of windows include, and what takes longest to compile.
set(vel_standard_headers
  <chrono> <filesystem> <functional> <memory> <optional> <string> <string_view> <vector>)
set(vel_widget_headers
  <QAction> <QApplication> <QComboBox> <QDialog> <QGridLayout> <QGroupBox> <QLabel> <QLineEdit>
  <QMenu> <QMessageBox> <QMouseEvent> <QPainter> <QPushButton> <QTableView> <QTimer> <QVBoxLayout>)

# vel_windows(NAME SOURCES ... LINKS ...): a library of windows.
function(vel_windows name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_compile_definitions(${name} PUBLIC QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)
  target_link_libraries(${name} PUBLIC vel_options Qt6::Widgets ${ARG_LINKS})
  if(NOT TARGET vel_windows_headers)
    vel_precompiled(vel_windows_headers
      HEADERS ${vel_standard_headers} ${vel_widget_headers}
      LINKS Qt6::Widgets)
    target_compile_definitions(vel_windows_headers PRIVATE QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)
  endif()
  target_precompile_headers(${name} REUSE_FROM vel_windows_headers)
endfunction()

# vel_precompiled(NAME HEADERS ... LINKS ...): headers that are compiled once for
# the targets which reuse them. No file relies on them: every one includes what
# it needs.
function(vel_precompiled name)
  cmake_parse_arguments(ARG "" "" "HEADERS;LINKS" ${ARGN})
  file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp "")
  add_library(${name} STATIC ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE vel_options ${ARG_LINKS})
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()
