# SPDX-License-Identifier: GPL-3.0-or-later
# The tests of the code without windows. The sources are in the folders of the code they test.
get_property(sources GLOBAL PROPERTY tallow_core_tests)
add_executable(tallow_core_tests tests/main.cpp ${sources})
if(WIN32)
  # The stand-in for Winamp must be in the folder of the tests.
  add_executable(winamp_stand_in WIN32 tests/winamp_stand_in_windows.cpp)
  target_link_libraries(winamp_stand_in PRIVATE tallow_options)
  add_dependencies(tallow_core_tests winamp_stand_in)
  if(TARGET tallow-player)
    add_dependencies(tallow_core_tests tallow-player)
    target_compile_definitions(tallow_core_tests PRIVATE TALLOW_HAS_OWN_PLAYER)
  endif()
  add_executable(ask_player tests/ask_player_windows.cpp)
  target_link_libraries(ask_player PRIVATE tallow_player)
  add_executable(hold_file tests/hold_file_windows.cpp)
  target_link_libraries(hold_file PRIVATE tallow_options)
  if(MINGW)
    target_link_options(hold_file PRIVATE -municode)
  endif()
else()
  if(NOT TALLOW_SANITIZE)
    target_sources(tallow_core_tests PRIVATE tests/dead_folder_linux.cpp)
  endif()
  # The player tests run the real player.
  target_compile_definitions(tallow_core_tests PRIVATE TALLOW_PLAYER="$<TARGET_FILE:tallow-player>")
  add_dependencies(tallow_core_tests tallow-player)
endif()
target_link_libraries(tallow_core_tests PRIVATE tallow_app tallow_song_player tallow_json
                                                GTest::gtest)
tallow_precompile(tallow_core_tests HEADERS <gtest/gtest.h>)

if(WIN32 AND CMAKE_CROSSCOMPILING)
  # The tests of a cross-compiled program cannot be listed at build time, so all are one CTest test.
  add_test(NAME windows.core_tests COMMAND ${CMAKE_SOURCE_DIR}/tests/run_under_wine.sh
                                           $<TARGET_FILE:tallow_core_tests>)
  set_tests_properties(windows.core_tests PROPERTIES TIMEOUT 900)
elseif(WIN32)
  include(GoogleTest)
  gtest_discover_tests(tallow_core_tests PROPERTIES TIMEOUT 300)
else()
  include(GoogleTest)
  gtest_discover_tests(tallow_core_tests PROPERTIES TIMEOUT 300 DISCOVERY_TIMEOUT 60)

  add_test(NAME player.on_the_session_bus COMMAND ${CMAKE_SOURCE_DIR}/tests/mpris.sh
                                                  $<TARGET_FILE:tallow-player>)
  set_tests_properties(player.on_the_session_bus PROPERTIES TIMEOUT 120)

  # Random commands from three clients during 2,000 changes of the track; ./bench.sh --long has more.
  add_executable(player_soak tests/player_soak_linux.cpp)
  target_link_libraries(player_soak PRIVATE tallow_player)
  add_dependencies(player_soak tallow-player)
  add_test(NAME player.soak COMMAND player_soak $<TARGET_FILE:tallow-player> 2000)
  set_tests_properties(player.soak PROPERTIES TIMEOUT 300)

  # Fuzzes jukebox files for 30 s, if the preset "fuzz" has been built.
  set(TALLOW_LOAD_FUZZER "" CACHE FILEPATH "tallow_load_fuzzer, to run it as a test")
  if(TALLOW_LOAD_FUZZER)
    add_test(NAME fuzz.load_jukebox COMMAND ${CMAKE_SOURCE_DIR}/tests/fuzz/run.sh
                                            ${TALLOW_LOAD_FUZZER} ${CMAKE_BINARY_DIR}/tests/fuzz 30)
    set_tests_properties(fuzz.load_jukebox PROPERTIES TIMEOUT 300)
  endif()

  # The same for the tags of songs.
  set(TALLOW_TAGS_FUZZER "" CACHE FILEPATH "tallow_tags_fuzzer, to run it as a test")
  if(TALLOW_TAGS_FUZZER)
    add_test(NAME fuzz.read_tags
             COMMAND ${CMAKE_SOURCE_DIR}/tests/fuzz/read_tags.sh ${TALLOW_TAGS_FUZZER}
                     ${CMAKE_BINARY_DIR}/tests/fuzz_tags 30)
    set_tests_properties(fuzz.read_tags PROPERTIES TIMEOUT 300)
  endif()

  # What its script does with the inputs that the fuzzer finds.
  add_test(NAME fuzz.keeps_what_is_found COMMAND ${CMAKE_SOURCE_DIR}/tests/fuzz/read_tags_test.sh
                                                 ${CMAKE_BINARY_DIR}/tests/fuzz_tags_script)
  set_tests_properties(fuzz.keeps_what_is_found PROPERTIES TIMEOUT 60)

  # The same tests as a Windows program under Wine, if the preset "windows-core" has been built.
  set(TALLOW_WINDOWS_TESTS "" CACHE FILEPATH "tallow_core_tests.exe, to run it under Wine")
  if(TALLOW_WINDOWS_TESTS)
    add_test(NAME windows.core_tests COMMAND ${CMAKE_SOURCE_DIR}/tests/run_under_wine.sh
                                             ${TALLOW_WINDOWS_TESTS})
    set_tests_properties(windows.core_tests PROPERTIES TIMEOUT 900)
  endif()
endif()
