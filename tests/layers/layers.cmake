# SPDX-License-Identifier: GPL-3.0-or-later
# Tests that the includes between the folders follow the link order of their libraries.
get_property(layers GLOBAL PROPERTY tallow_layers)
string(REPLACE ";" "\n" layers "${layers}")
file(WRITE ${CMAKE_BINARY_DIR}/layers.txt "${layers}\n")

add_test(
  NAME layers.includes_go_down
  COMMAND ${CMAKE_COMMAND} -DSOURCES=${CMAKE_SOURCE_DIR} -DLAYERS=${CMAKE_BINARY_DIR}/layers.txt -P
          ${CMAKE_SOURCE_DIR}/tests/layers/check.cmake)
# Tests the check itself: includes of a higher folder must be reported, however they are written.
add_test(
  NAME layers.an_include_upwards_is_found
  COMMAND
    ${CMAKE_COMMAND} -DSOURCES=${CMAKE_SOURCE_DIR}/tests/layers/upward
    -DLAYERS=${CMAKE_SOURCE_DIR}/tests/layers/upward/layers.txt -P
    ${CMAKE_SOURCE_DIR}/tests/layers/check.cmake)
string(CONCAT found "low/angle.h includes high/high.h.*low/indented.h includes high/high.h.*"
              "low/low.h includes high/high.h.*low/spaced.h includes high/high.h")
set_tests_properties(layers.an_include_upwards_is_found PROPERTIES PASS_REGULAR_EXPRESSION
                                                                   "${found}")
