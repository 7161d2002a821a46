# SPDX-License-Identifier: GPL-3.0-or-later
# The windows, the program itself, and their tests.
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets Network Test)
# Where Qt has no SVG, the pictures are drawn into PNG files while Tallow is built.
find_package(Qt6 6.4 QUIET COMPONENTS Svg)

set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)

# An object library: a static one would lose the pictures, which nothing refers to by name.
add_library(tallow_ui OBJECT
  app/frm_searching.cpp
  app/frm_splash.cpp
  app/picture_resource.cpp
  app/resources/custom.qrc
  docs/manual/manual.qrc
  jukebox/window/explorer_drag.cpp
  jukebox/window/folder_tree_model.cpp
  jukebox/window/folder_tree_view.cpp
  jukebox/window/frm_main.cpp
  jukebox/window/picture_address.cpp
  jukebox/window/picture_file.cpp
  jukebox/window/pop_up_menus.cpp
  jukebox/window/pv_explorer.cpp
  jukebox/window/pv_explorer_edits.cpp
  jukebox/window/rank_action.cpp
  jukebox/window/rank_picture.cpp
  jukebox/window/song_list_model.cpp
  jukebox/window/song_list_view.cpp
  player/frm_main_winamp.cpp
  ui/dialogs/common_dialog.cpp
  ui/display_${platform}.cpp
  ui/display_text.cpp
  ui/frame/edit_in_text.cpp
  ui/end_signals_${platform}.cpp
  ui/frame/file_menu.cpp
  ui/foreground_${platform}.cpp
  ui/frame/frame_findings.cpp
  ui/frame/frame_menus.cpp
  ui/frame/frame_pictures.cpp
  ui/frame/frame_style.cpp
  ui/frame/frame_toolbar.cpp
  ui/frame/frame_work.cpp
  ui/dialogs/frm_find.cpp
  ui/dialogs/frm_findings.cpp
  ui/dialogs/frm_help.cpp
  ui/frame/frm_mdi_form1.cpp
  ui/frame/frm_mdi_form1_commands.cpp
  ui/frame/frm_mdi_form1_documents.cpp
  ui/frame/frm_mdi_form1_jukeboxes.cpp
  ui/dialogs/frm_picture.cpp
  ui/dialogs/frm_tip.cpp
  ui/hand_over_request.cpp
  ui/hand_over_server.cpp
  ui/local_server_folder_${platform}.cpp
  ui/dialogs/message_box.cpp
  ui/open_text_${platform}.cpp
  ui/qt_path_${platform}.cpp
  ui/window_options_${platform}.cpp
  ui/single_program.cpp
  ui/start_up.cpp
  ui/frame/window_arrangement.cpp)
target_link_libraries(tallow_ui PUBLIC tallow_core Qt6::Widgets Qt6::Network)
if(TARGET Qt6::Svg)
  target_sources(tallow_ui PRIVATE ui/pictures/pictures.qrc)
  target_link_libraries(tallow_ui PUBLIC Qt6::Svg)
else()
  include(ui/pictures/drawn_pictures.cmake)
endif()
add_executable(tallow app/main.cpp)
target_link_libraries(tallow PRIVATE tallow_ui)
if(WIN32)
  set_target_properties(tallow PROPERTIES WIN32_EXECUTABLE ON)
  configure_file(packaging/windows/tallow.manifest.in tallow.manifest @ONLY)
  set(manifest_resource "1 24 \"${CMAKE_BINARY_DIR}/tallow.manifest\"")
  if(MSVC)
    # Its linker puts the manifest in.
    set(manifest_resource "")
    target_sources(tallow PRIVATE ${CMAKE_BINARY_DIR}/tallow.manifest)
  endif()
  configure_file(packaging/windows/tallow.rc.in tallow.rc @ONLY)
  set_source_files_properties(${CMAKE_BINARY_DIR}/tallow.rc PROPERTIES
    OBJECT_DEPENDS "${CMAKE_BINARY_DIR}/tallow.manifest;${CMAKE_SOURCE_DIR}/packaging/windows/tallow.ico")
  target_sources(tallow PRIVATE ${CMAKE_BINARY_DIR}/tallow.rc)
endif()
# What the check for a runtime file opens when the file is missing.
configure_file(README.md ${CMAKE_BINARY_DIR}/readme.txt COPYONLY)
configure_file(TIPOFDAY.TXT ${CMAKE_BINARY_DIR}/TIPOFDAY.TXT COPYONLY)
# The player is looked for beside the program.
if(NOT WIN32)
  add_dependencies(tallow tallow-player)
endif()

include(tests/window_tests.cmake)
