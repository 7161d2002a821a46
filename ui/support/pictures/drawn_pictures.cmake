# SPDX-License-Identifier: GPL-3.0-or-later
# Renders the SVG pictures to PNG files in all sizes needed and adds them to tallow_resources as
# ":/pictures/NAME-SIZE.png". Used when Qt's SVG module is missing.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)

# 16 and 24 pixels at scale factors of 100, 125, 150, 175 and 200 %, and the sizes of the
# application icon.
set(sizes
    16
    20
    24
    28
    30
    32
    36
    42
    48
    64
    96)
set(drawn ${CMAKE_BINARY_DIR}/drawn_pictures)
file(MAKE_DIRECTORY ${drawn})
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS pictures/pictures.qrc)
file(STRINGS pictures/pictures.qrc entries REGEX "<file>")
set(pictures)
set(qrc "<!DOCTYPE RCC>\n<RCC version=\"1.0\">\n  <qresource prefix=\"/pictures\">\n")
foreach(entry ${entries})
  string(REGEX REPLACE ".*<file>(.*)\\.svg</file>.*" "\\1" name "${entry}")
  set(source ${CMAKE_CURRENT_SOURCE_DIR}/pictures/${name}.svg)
  foreach(size ${sizes})
    set(picture ${drawn}/${name}-${size}.png)
    add_custom_command(
      OUTPUT ${picture}
      COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${picture} ${source}
      DEPENDS ${source}
      VERBATIM)
    list(APPEND pictures ${picture})
    string(APPEND qrc "    <file>${name}-${size}.png</file>\n")
  endforeach()
endforeach()
string(APPEND qrc "  </qresource>\n</RCC>\n")
file(GENERATE OUTPUT ${drawn}/drawn.qrc CONTENT "${qrc}")
add_custom_command(
  OUTPUT ${CMAKE_BINARY_DIR}/drawn_pictures.cpp
  COMMAND Qt6::rcc --name drawn_pictures -o ${CMAKE_BINARY_DIR}/drawn_pictures.cpp
          ${drawn}/drawn.qrc
  DEPENDS ${pictures} ${drawn}/drawn.qrc
  COMMENT "Drawing the pictures"
  VERBATIM)
target_sources(tallow_resources PRIVATE ${CMAKE_BINARY_DIR}/drawn_pictures.cpp)
