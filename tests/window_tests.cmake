# SPDX-License-Identifier: GPL-3.0-or-later
# The tests of the windows, with the real widgets on the offscreen platform.
get_property(sources GLOBAL PROPERTY tallow_window_tests)
add_executable(tallow_window_tests tests/window_main.cpp ${sources})
set_target_properties(tallow_window_tests PROPERTIES AUTOMOC ON)
target_link_libraries(tallow_window_tests PRIVATE tallow_ui tallow_json Qt6::Test GTest::gtest)
tallow_precompile(tallow_window_tests HEADERS ${tallow_ui_headers} <QTest> <gtest/gtest.h>)
if(NOT WIN32)
  if(NOT TALLOW_SANITIZE)
    target_sources(tallow_window_tests PRIVATE tests/dead_folder_linux.cpp)
  endif()
  target_compile_definitions(tallow_window_tests
                             PRIVATE TALLOW_PLAYER="$<TARGET_FILE:tallow-player>")
  add_dependencies(tallow_window_tests tallow-player)
endif()
if(WIN32)
  # The same code page and controls as the program.
  target_sources(tallow_window_tests PRIVATE ${CMAKE_BINARY_DIR}/tallow.rc)
endif()
if(WIN32 AND CMAKE_CROSSCOMPILING)
  # A static Qt has only plug-ins that are linked; this plug-in is the offscreen platform.
  qt6_import_plugins(tallow_window_tests INCLUDE Qt6::QOffscreenIntegrationPlugin)
  add_test(NAME windows.window_tests COMMAND ${CMAKE_SOURCE_DIR}/tests/run_under_wine.sh
                                             $<TARGET_FILE:tallow_window_tests>)
  set_tests_properties(windows.window_tests PROPERTIES TIMEOUT 900)
  # ./build-windows.sh makes the setup program and the zip archive.
  add_test(
    NAME windows.end_to_end
    COMMAND
      ${CMAKE_SOURCE_DIR}/tests/windows_end_to_end.sh
      ${CMAKE_BINARY_DIR}/Tallow-${PROJECT_VERSION}-setup.exe $<TARGET_FILE:winamp_stand_in>
      $<TARGET_FILE:hold_file> ${CMAKE_BINARY_DIR}/tests/end_to_end)
  add_test(
    NAME windows.styles
    COMMAND
      ${CMAKE_SOURCE_DIR}/tests/windows_styles.sh
      ${CMAKE_BINARY_DIR}/Tallow-${PROJECT_VERSION}-win64.zip ${CMAKE_BINARY_DIR}/tests/styles)
  add_test(
    NAME windows.playing
    COMMAND
      ${CMAKE_SOURCE_DIR}/tests/windows_playing.sh
      ${CMAKE_BINARY_DIR}/Tallow-${PROJECT_VERSION}-win64.zip $<TARGET_FILE:ask_player>
      ${CMAKE_BINARY_DIR}/tests/playing)
  set_tests_properties(windows.end_to_end windows.styles windows.playing PROPERTIES TIMEOUT 600)
  return()
endif()
gtest_discover_tests(tallow_window_tests PROPERTIES TIMEOUT 300 DISCOVERY_TIMEOUT 60)
# Positions and pictures of the player bar on a screen of twice the pixels.
add_test(NAME windows.player_bar_at_200_percent COMMAND tallow_window_tests
                                                        --gtest_filter=PlayerBarTest.*)
set_tests_properties(windows.player_bar_at_200_percent PROPERTIES ENVIRONMENT QT_SCALE_FACTOR=2
                                                                  TIMEOUT 300)
if(WIN32)
  return()
endif()

# The file manager on a session bus.
add_executable(tallow_bus_tests ui/support/show_in_file_manager_linux_test.cpp)
set_target_properties(tallow_bus_tests PROPERTIES AUTOMOC ON)
target_link_libraries(tallow_bus_tests PRIVATE tallow_ui_support Qt6::DBus Qt6::Test GTest::gtest)
add_test(NAME windows.show_files_on_the_session_bus COMMAND tallow_bus_tests)
set_tests_properties(windows.show_files_on_the_session_bus PROPERTIES TIMEOUT 120)

# The built program on a virtual display, with a real collection. Qt loads the probe into the
# program as a plug-in.
add_library(tallow_probe MODULE tests/probe.cpp)
set_target_properties(tallow_probe PROPERTIES AUTOMOC ON)
target_link_libraries(tallow_probe PRIVATE tallow_options Qt6::Widgets Qt6::Test)
set_target_properties(tallow_probe PROPERTIES LIBRARY_OUTPUT_DIRECTORY
                                              ${CMAKE_BINARY_DIR}/tests/plugins/generic)
# What sources include and only a build makes; ./check.sh reads the sources without building them.
add_custom_target(check_generated)
add_dependencies(check_generated tallow_probe_autogen tallow_bus_tests_autogen)
add_test(NAME program.starts_on_the_demo_collection
         COMMAND ${CMAKE_SOURCE_DIR}/tests/demo_start.sh $<TARGET_FILE:tallow>
                 ${CMAKE_BINARY_DIR}/tests/plugins ${CMAKE_BINARY_DIR}/tests/demo)
add_test(NAME program.end_to_end COMMAND ${CMAKE_SOURCE_DIR}/tests/end_to_end.sh
                                         $<TARGET_FILE:tallow> ${CMAKE_BINARY_DIR}/tests/end_to_end)
add_test(NAME program.switches_its_style
         COMMAND ${CMAKE_SOURCE_DIR}/tests/modern_style.sh $<TARGET_FILE:tallow>
                 ${CMAKE_BINARY_DIR}/tests/plugins ${CMAKE_BINARY_DIR}/tests/modern_style)
add_test(NAME program.finds_songs_while_the_user_types
         COMMAND ${CMAKE_SOURCE_DIR}/tests/find_while_typing.sh $<TARGET_FILE:tallow>
                 ${CMAKE_BINARY_DIR}/tests/find_while_typing)
add_test(NAME program.shows_the_tip_after_the_files
         COMMAND ${CMAKE_SOURCE_DIR}/tests/tip_after_files.sh $<TARGET_FILE:tallow>
                 ${CMAKE_BINARY_DIR}/tests/tip_after_files)
add_test(NAME program.plays_songs COMMAND ${CMAKE_SOURCE_DIR}/tests/playing.sh
                                          $<TARGET_FILE:tallow> ${CMAKE_BINARY_DIR}/tests/playing)
add_test(NAME program.keeps_songs_of_drives_that_are_away
         COMMAND ${CMAKE_SOURCE_DIR}/tests/away.sh $<TARGET_FILE:tallow>
                 ${CMAKE_BINARY_DIR}/tests/away)
add_test(NAME program.obeys_its_command_line COMMAND ${CMAKE_SOURCE_DIR}/tests/command_line.sh
                                                     $<TARGET_FILE:tallow>)
add_test(NAME program.runs_once_per_folder
         COMMAND ${CMAKE_SOURCE_DIR}/tests/two_programs.sh $<TARGET_FILE:tallow>
                 ${CMAKE_BINARY_DIR}/tests/two)
add_test(NAME program.ends_without_its_player
         COMMAND ${CMAKE_SOURCE_DIR}/tests/ending.sh $<TARGET_FILE:tallow>
                 ${CMAKE_BINARY_DIR}/tests/ending)
add_test(NAME windows.find_under_desktop_themes COMMAND ${CMAKE_SOURCE_DIR}/tests/desktop_themes.sh
                                                        $<TARGET_FILE:tallow_window_tests>)
set_tests_properties(
  program.starts_on_the_demo_collection
  program.end_to_end
  program.finds_songs_while_the_user_types
  program.plays_songs
  program.switches_its_style
  windows.find_under_desktop_themes
  program.keeps_songs_of_drives_that_are_away
  program.obeys_its_command_line
  program.runs_once_per_folder
  program.ends_without_its_player
  PROPERTIES TIMEOUT 300)
if(NOT TALLOW_SANITIZE)
  # Blocks all calls of the program on one folder.
  add_library(tallow_dead_folder MODULE tests/dead_folder_linux.cpp)
  target_link_libraries(tallow_dead_folder PRIVATE tallow_options)
  add_test(NAME program.starts_while_a_drive_does_not_answer
           COMMAND ${CMAKE_SOURCE_DIR}/tests/dead_share.sh $<TARGET_FILE:tallow>
                   $<TARGET_FILE:tallow_dead_folder> ${CMAKE_BINARY_DIR}/tests/dead_share)
  set_tests_properties(program.starts_while_a_drive_does_not_answer PROPERTIES TIMEOUT 300)
  # The test limits processor time, which sanitizers multiply.
  add_test(NAME program.starts_with_damaged_options
           COMMAND ${CMAKE_SOURCE_DIR}/tests/damaged_options.sh $<TARGET_FILE:tallow>)
  set_tests_properties(program.starts_with_damaged_options PROPERTIES TIMEOUT 600)
endif()
