# SPDX-License-Identifier: GPL-3.0-or-later
# The libraries for Windows that the Qt-free code, its tests and the player use, built by
# packaging/windows-libraries.sh and packaging/windows-mpv.sh.
set(TALLOW_WINDOWS_LIBRARIES "" CACHE PATH "Folder that packaging/windows-libraries.sh prints")
if(NOT EXISTS "${TALLOW_WINDOWS_LIBRARIES}/lib/libsqlite3.a")
  message(
    FATAL_ERROR
      "TALLOW_WINDOWS_LIBRARIES is not set to the folder that packaging/windows-libraries.sh prints. "
      "./test.sh does both.")
endif()

set(TALLOW_WINDOWS_MPV "" CACHE PATH "Folder that packaging/windows-mpv.sh prints")
if(NOT EXISTS "${TALLOW_WINDOWS_MPV}/lib/libmpv.a")
  message(FATAL_ERROR "TALLOW_WINDOWS_MPV is not set to the folder that packaging/windows-mpv.sh "
                      "prints. ./test.sh does both.")
endif()

function(tallow_import name archive)
  add_library(${name} STATIC IMPORTED GLOBAL)
  set_target_properties(
    ${name} PROPERTIES IMPORTED_LOCATION ${TALLOW_WINDOWS_LIBRARIES}/lib/${archive}
                       INTERFACE_INCLUDE_DIRECTORIES ${TALLOW_WINDOWS_LIBRARIES}/include)
endfunction()

tallow_import(tallow_utf8proc libutf8proc.a)
target_compile_definitions(tallow_utf8proc INTERFACE UTF8PROC_STATIC)
tallow_import(tallow_taglib libtag.a)
target_compile_definitions(tallow_taglib INTERFACE TAGLIB_STATIC)
tallow_import(tallow_sqlite libsqlite3.a)
tallow_import(GTest::gtest libgtest.a)

# libmpv, and all libraries that it needs in their order.
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_LIBDIR=${TALLOW_WINDOWS_MPV}/lib/pkgconfig pkg-config
          --static --libs mpv OUTPUT_VARIABLE mpv_libraries OUTPUT_STRIP_TRAILING_WHITESPACE
                                                            COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(mpv_libraries UNIX_COMMAND "${mpv_libraries}")
add_library(tallow_mpv INTERFACE)
target_include_directories(tallow_mpv SYSTEM INTERFACE ${TALLOW_WINDOWS_MPV}/include)
target_link_libraries(tallow_mpv INTERFACE ${mpv_libraries})
