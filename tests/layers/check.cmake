# SPDX-License-Identifier: GPL-3.0-or-later
# Reads every #include of the program's sources and fails where one goes up or sideways between their folders.
#
#   cmake -DSOURCES=FOLDER -DLAYERS=FILE -P tests/layers/check.cmake
#
# SOURCES holds the folders. LAYERS has a line for each, "ui/frame: ui/dialogs ui/player", as the build writes it from
# what the folders' libraries are linked to: a folder may include what it links, and what that links in turn. A
# file in place of a folder behind the colon allows that file alone. Tests may include anything.
cmake_minimum_required(VERSION 3.23)

file(STRINGS ${LAYERS} lines)
set(folders)
foreach(line ${lines})
  string(REGEX MATCH "^([^:]+): *(.*)$" matched "${line}")
  string(REPLACE "/" "_" name ${CMAKE_MATCH_1})
  list(APPEND folders ${CMAKE_MATCH_1})
  string(REPLACE " " ";" linked_${name} "${CMAKE_MATCH_2}")
endforeach()

# What a folder reaches over any number of links.
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

# The folder of the table that a file belongs to: the longest one that its path begins with.
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
    file(STRINGS ${SOURCES}/${file} includes REGEX "^#include \"")
    foreach(include ${includes})
      string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" included "${include}")
      folder_of(${included} other)
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
