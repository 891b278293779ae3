# vel_windows_program(NAME DESCRIPTION [ICON]): gives a program what Windows
# looks for in it: a version, a manifest and, with ICON, the icon. Does nothing
# for other systems.

include_guard(GLOBAL)

function(vel_windows_program target description)
  if(NOT WIN32)
    return()
  endif()
  set(manifest ${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest)
  set(icon_line "")
  if("ICON" IN_LIST ARGN)
    # The name under which the windowing toolkit looks for it, too.
    set(icon_line "IDI_ICON1 ICON \"${PROJECT_SOURCE_DIR}/packaging/icon/vel.ico\"")
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in
                 ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc @ONLY)
  target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${target}.rc PROPERTIES
    OBJECT_DEPENDS "${manifest};${PROJECT_SOURCE_DIR}/packaging/icon/vel.ico")
endfunction()
