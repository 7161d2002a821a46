# SPDX-License-Identifier: GPL-3.0-or-later
# Checks every #include of the program's sources and fails if an include goes up or sideways between
# the folders.
#
#   cmake -DSOURCES=FOLDER -DLAYERS=FILE -P tests/layers/check.cmake
#
# SOURCES contains the folders. LAYERS has one line per folder, "ui/frame: ui/dialogs ui/player",
# which the build writes from the link dependencies of the folders' libraries. A folder may include
# what it links to, directly or indirectly. A file in place of a folder after the colon allows that
# file only. Lines that begin with # are comments. Tests may include anything.
cmake_minimum_required(VERSION 3.23)

file(STRINGS ${LAYERS} lines REGEX "^[^#]")
set(folders)
foreach(line ${lines})
  string(REGEX MATCH "^([^:]+): *(.*)$" matched "${line}")
  string(REPLACE "/" "_" name ${CMAKE_MATCH_1})
  list(APPEND folders ${CMAKE_MATCH_1})
  string(REPLACE " " ";" linked_${name} "${CMAKE_MATCH_2}")
endforeach()

# The folders that each folder links to, directly or indirectly.
foreach(folder ${folders})
  string(REPLACE "/" "_" name ${folder})
  set(reached_${name} ${folder})
  set(open ${linked_${name}})
  while(open)
    list(POP_FRONT open next)
    if(NOT next IN_LIST reached_${name})
      list(APPEND reached_${name} ${next})
      string(REPLACE "/" "_" below ${next})
      list(APPEND open ${linked_${below}})
    endif()
  endwhile()
endforeach()

# Returns the folder of LAYERS that contains a file: the longest folder that is a prefix of its
# path.
function(folder_of file result)
  set(found "")
  foreach(folder ${folders})
    string(LENGTH ${folder}/ length)
    string(LENGTH "${found}" best)
    string(FIND ${file} ${folder}/ place)
    if(place EQUAL 0 AND length GREATER best)
      set(found ${folder})
    endif()
  endforeach()
  set(${result} "${found}" PARENT_SCOPE)
endfunction()

set(wrong "")
set(count 0)
foreach(folder ${folders})
  string(REPLACE "/" "_" name ${folder})
  file(GLOB_RECURSE files RELATIVE ${SOURCES} ${SOURCES}/${folder}/*.h ${SOURCES}/${folder}/*.cpp)
  foreach(file ${files})
    folder_of(${file} own)
    if(NOT own STREQUAL folder OR file MATCHES "_test\\.cpp$")
      continue()
    endif()
    file(STRINGS ${SOURCES}/${file} includes REGEX "^[ \t]*#[ \t]*include[ \t]*[\"<]")
    foreach(include ${includes})
      string(REGEX REPLACE "^[^\"<]*[\"<]([^\">]+).*" "\\1" included "${include}")
      folder_of(${included} other)
      # Headers of libraries are in none of the folders.
      if(include MATCHES "^[^\"]*<" AND NOT other)
        continue()
      endif()
      math(EXPR count "${count} + 1")
      if(NOT other IN_LIST reached_${name} AND NOT included IN_LIST reached_${name})
        string(APPEND wrong "  ${file} includes ${included}\n")
      endif()
    endforeach()
  endforeach()
endforeach()

if(wrong)
  message(FATAL_ERROR "Includes against the order of the folders:\n${wrong}")
endif()
if(count EQUAL 0)
  message(FATAL_ERROR "No #include was found below ${SOURCES}.")
endif()
message(STATUS "${count} includes go down.")
