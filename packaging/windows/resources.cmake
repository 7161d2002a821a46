# SPDX-License-Identifier: GPL-3.0-or-later
# Adds the resources of a Windows program: version, icon, code page and controls.
#
#   description  shown by the system as the name of the program
function(tallow_resources program description)
  set(folder ${CMAKE_SOURCE_DIR}/packaging/windows)
  set(manifest ${CMAKE_BINARY_DIR}/${program}.manifest)
  set(resources ${CMAKE_BINARY_DIR}/${program}.rc)
  configure_file(${folder}/tallow.manifest.in ${manifest} @ONLY)
  set(manifest_resource "1 24 \"${manifest}\"")
  if(MSVC)
    # The linker of MSVC embeds the manifest itself.
    set(manifest_resource "")
    target_sources(${program} PRIVATE ${manifest})
  endif()
  configure_file(${folder}/tallow.rc.in ${resources} @ONLY)
  target_sources(${program} PRIVATE ${resources})
  set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS
                                                      "${manifest};${folder}/tallow.ico")
  set_target_properties(${program} PROPERTIES WIN32_EXECUTABLE ON)
endfunction()
