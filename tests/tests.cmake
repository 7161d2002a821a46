# SPDX-License-Identifier: GPL-3.0-or-later
# The tests of everything that is not a window. They lie beside what they test.
add_executable(tallow_core_tests
  tests/main.cpp
  app/changing_collection_test.cpp
  app/cls_ini_test.cpp
  app/command_line_test.cpp
  app/search/drive_list_test.cpp
  app/search/file_search_test.cpp
  app/initial_jukebox_test.cpp
  app/new_songs_test.cpp
  app/runtime_file_test.cpp
  app/system_opening_test.cpp
  app/system_recovery_test.cpp
  app/system_faults_test.cpp
  app/system_test.cpp
  app/take_files_test.cpp
  app/tip_list_test.cpp
  app/unsaved_jukeboxes_test.cpp
  jukebox/category_index_test.cpp
  jukebox/edit_history_test.cpp
  jukebox/filing_progress_test.cpp
  jukebox/folder_tree_test.cpp
  jukebox/jukebox_edits_test.cpp
  jukebox/jukebox_file_test.cpp
  jukebox/jukebox_test.cpp
  jukebox/play_commands_test.cpp
  jukebox/random_editing_test.cpp
  jukebox/ranking_test.cpp
  jukebox/returned_songs_test.cpp
  jukebox/song_search_test.cpp
  jukebox/sorting_test.cpp
  jukebox/special_folders_test.cpp
  library/away_songs_test.cpp
  library/cls_main_test.cpp
  library/duplicate_removal_test.cpp
  library/excluded_folders_test.cpp
  library/known_drives_test.cpp
  library/library_check_test.cpp
  library/library_companion_test.cpp
  library/library_file_test.cpp
  library/missing_songs_test.cpp
  library/mp3_genra_test.cpp
  library/mp3_tag_editor_test.cpp
  library/record_repair_test.cpp
  library/scan_report_test.cpp
  library/song_table_test.cpp
  library/tag_cache_test.cpp
  library/unread_folders_test.cpp
  library/tag_text_test.cpp
  player/hand_over_progress_test.cpp
  player/player_operations_test.cpp
  player/playfile_test.cpp
  player/winamp_control_test.cpp
  ui/frame/jukebox_documents_test.cpp
  util/atomic_file_test.cpp
  util/comm_dlgs_test.cpp
  util/file_lock_test.cpp
  util/file_system_test.cpp
  util/like_test.cpp
  util/natural_order_test.cpp
  util/number_test.cpp
  util/owner_file_test.cpp
  util/path_text_test.cpp
  util/quicksort_test.cpp
  util/read_ahead_test.cpp
  util/text_test.cpp)
if(WIN32)
  target_sources(tallow_core_tests PRIVATE
    player/player_link_windows_test.cpp
    util/comm_dlgs_windows_test.cpp)
  # What is played with in place of Winamp lies beside the tests.
  add_executable(winamp_stand_in WIN32 tests/winamp_stand_in_windows.cpp)
  target_link_libraries(winamp_stand_in PRIVATE tallow_options)
  add_dependencies(tallow_core_tests winamp_stand_in)
  add_executable(hold_file tests/hold_file_windows.cpp)
  target_link_libraries(hold_file PRIVATE tallow_options)
  if(MINGW)
    target_link_options(hold_file PRIVATE -municode)
  endif()
else()
  target_sources(tallow_core_tests PRIVATE
    app/jukebox_kill_linux_test.cpp
    util/threads_linux_test.cpp
    app/search/mount_table_linux_test.cpp
    jukebox/jukebox_save_linux_test.cpp
    app/save_kill_linux_test.cpp
    app/unsaved_jukeboxes_linux_test.cpp
    player/player_link_linux_test.cpp
    player/substitute/request_server_linux_test.cpp
    player/substitute/sound_linux_test.cpp
    util/comm_dlgs_linux_test.cpp
    util/owner_file_linux_test.cpp)
  if(NOT TALLOW_SANITIZE)
    # They stand between the program and the system, where sanitizers stand too.
    target_sources(tallow_core_tests PRIVATE
      app/dead_share_linux_test.cpp tests/dead_folder_linux.cpp)
  endif()
  # The real player is played with.
  target_compile_definitions(tallow_core_tests PRIVATE
    TALLOW_PLAYER="$<TARGET_FILE:tallow-player>")
  add_dependencies(tallow_core_tests tallow-player)
endif()
target_link_libraries(tallow_core_tests PRIVATE tallow_core GTest::gtest)

if(WIN32 AND CMAKE_CROSSCOMPILING)
  # A Windows program cannot be asked for its tests while it is built here, so all are one test.
  add_test(NAME windows.core_tests
    COMMAND ${CMAKE_SOURCE_DIR}/tests/run_under_wine.sh $<TARGET_FILE:tallow_core_tests>)
  set_tests_properties(windows.core_tests PROPERTIES TIMEOUT 900)
elseif(WIN32)
  include(GoogleTest)
  gtest_discover_tests(tallow_core_tests PROPERTIES TIMEOUT 300)
else()
  include(GoogleTest)
  gtest_discover_tests(tallow_core_tests PROPERTIES TIMEOUT 300)

  add_test(NAME player.on_the_session_bus
    COMMAND ${CMAKE_SOURCE_DIR}/tests/mpris.sh $<TARGET_FILE:tallow-player>)
  set_tests_properties(player.on_the_session_bus PROPERTIES TIMEOUT 120)

  # Half a minute of random jukebox files, once the preset "fuzz" has been built.
  set(TALLOW_LOAD_FUZZER "" CACHE FILEPATH "tallow_load_fuzzer, to run it as a test")
  if(TALLOW_LOAD_FUZZER)
    add_test(NAME fuzz.load_jukebox
      COMMAND ${CMAKE_SOURCE_DIR}/tests/fuzz/run.sh ${TALLOW_LOAD_FUZZER}
        ${CMAKE_BINARY_DIR}/tests/fuzz 30)
    set_tests_properties(fuzz.load_jukebox PROPERTIES TIMEOUT 300)
  endif()

  # The same tests as a Windows program, once the preset "windows-core" has been built.
  set(TALLOW_WINDOWS_TESTS "" CACHE FILEPATH "tallow_core_tests.exe, to run it under Wine")
  if(TALLOW_WINDOWS_TESTS)
    add_test(NAME windows.core_tests
      COMMAND ${CMAKE_SOURCE_DIR}/tests/run_under_wine.sh ${TALLOW_WINDOWS_TESTS})
    set_tests_properties(windows.core_tests PROPERTIES TIMEOUT 900)
  endif()
endif()
