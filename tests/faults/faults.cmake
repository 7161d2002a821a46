# SPDX-License-Identifier: GPL-3.0-or-later
# Tests that disk faults and damaged files lose no data; see docs/reliability.md. Not built with
# sanitizers, which interpose the same calls.
add_library(fail_call MODULE tests/faults/fail_call.cpp)
target_link_libraries(fail_call PRIVATE tallow_options ${CMAKE_DL_LIBS})
set_target_properties(fail_call PROPERTIES PREFIX "")

add_executable(
  tallow_fault_tests
  tests/faults/child_process.cpp
  tests/faults/fault_matrix.cpp
  tests/faults/fault_tests_main.cpp
  tests/faults/mutations.cpp
  tests/faults/scenarios.cpp
  tests/faults/test_world.cpp
  tests/faults/worker_pool.cpp)
target_link_libraries(tallow_fault_tests PRIVATE tallow_app tallow_json ${CMAKE_DL_LIBS})
add_dependencies(tallow_fault_tests fail_call)

# Every fifth case of the matrix, which covers all ways of failing; ./test.sh --faults runs all
# cases.
add_test(NAME faults.sample COMMAND tallow_fault_tests faults --every 5)
set_tests_properties(faults.sample PROPERTIES TIMEOUT 600 ENVIRONMENT
                                              "LD_PRELOAD=$<TARGET_FILE:fail_call>")
add_test(NAME faults.damaged_files COMMAND tallow_fault_tests damage)
set_tests_properties(faults.damaged_files PROPERTIES TIMEOUT 600)
