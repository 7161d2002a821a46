# SPDX-License-Identifier: GPL-3.0-or-later
# The manual and the pictures, built into the program. An object library, because the linker drops
# object files of a static library that no symbol refers to.
add_library(tallow_resources OBJECT ${CMAKE_SOURCE_DIR}/docs/manual/manual.qrc resources/custom.qrc)
target_link_libraries(tallow_resources PRIVATE tallow_options Qt6::Core)
if(TARGET Qt6::Svg)
  target_sources(tallow_resources PRIVATE pictures/pictures.qrc)
  # The plug-in that renders the SVG files.
  target_link_libraries(tallow_ui_support PUBLIC Qt6::Svg)
else()
  include(pictures/drawn_pictures.cmake)
endif()
