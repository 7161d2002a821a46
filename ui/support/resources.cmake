# SPDX-License-Identifier: GPL-3.0-or-later
# What lies within the program: the manual and the pictures. An object library, because a static one would lose
# what nothing refers to by name.
add_library(tallow_resources OBJECT
  ${CMAKE_SOURCE_DIR}/docs/manual/manual.qrc
  resources/custom.qrc)
target_link_libraries(tallow_resources PRIVATE tallow_options Qt6::Core)
if(TARGET Qt6::Svg)
  target_sources(tallow_resources PRIVATE pictures/pictures.qrc)
  # The plug-in that draws them.
  target_link_libraries(tallow_ui_support PUBLIC Qt6::Svg)
else()
  include(pictures/drawn_pictures.cmake)
endif()
