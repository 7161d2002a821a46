# SPDX-License-Identifier: GPL-3.0-or-later
# Resources of a Windows program: version, icon, code page and controls.
configure_file(packaging/windows/tallow.manifest.in tallow.manifest @ONLY)
set(manifest_resource "1 24 \"${CMAKE_BINARY_DIR}/tallow.manifest\"")
if(MSVC)
  # The linker of MSVC embeds the manifest itself.
  set(manifest_resource "")
  target_sources(tallow PRIVATE ${CMAKE_BINARY_DIR}/tallow.manifest)
endif()
configure_file(packaging/windows/tallow.rc.in tallow.rc @ONLY)
set_source_files_properties(
  ${CMAKE_BINARY_DIR}/tallow.rc
  PROPERTIES OBJECT_DEPENDS
             "${CMAKE_BINARY_DIR}/tallow.manifest;${CMAKE_SOURCE_DIR}/packaging/windows/tallow.ico")
set_target_properties(tallow PROPERTIES WIN32_EXECUTABLE ON)
