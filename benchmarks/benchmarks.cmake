# SPDX-License-Identifier: GPL-3.0-or-later
add_executable(tallow_startup_benchmark benchmarks/startup_benchmark.cpp
                                        benchmarks/process_memory_${platform}.cpp)
target_link_libraries(tallow_startup_benchmark PRIVATE tallow_app)

add_executable(tallow_jukebox_benchmark benchmarks/jukebox_benchmark.cpp)
target_link_libraries(tallow_jukebox_benchmark PRIVATE tallow_app tallow_json)
if(WIN32)
  return()
endif()

find_package(benchmark REQUIRED)

# The floor is a separate program, so that no code of Tallow speeds it up.
add_executable(tallow_floor benchmarks/floor.cpp)
target_link_libraries(tallow_floor PRIVATE tallow_options)

# Preloaded by ./bench.sh to make a disk slow.
add_library(tallow_slow_disk MODULE benchmarks/slow_disk.cpp)
target_link_libraries(tallow_slow_disk PRIVATE tallow_options ${CMAKE_DL_LIBS})

add_executable(tallow_collection benchmarks/collection.cpp)
target_link_libraries(tallow_collection PRIVATE tallow_app)

add_executable(tallow_details_benchmark benchmarks/details_benchmark.cpp
                                        benchmarks/process_memory_${platform}.cpp)
target_link_libraries(tallow_details_benchmark PRIVATE tallow_details)

add_executable(tallow_find_benchmark benchmarks/find_benchmark.cpp benchmarks/find_library.cpp
                                     benchmarks/process_memory_${platform}.cpp)
target_link_libraries(tallow_find_benchmark PRIVATE tallow_app)

add_executable(tallow_sort_benchmark benchmarks/sort_benchmark.cpp)
target_link_libraries(tallow_sort_benchmark PRIVATE tallow_app benchmark::benchmark)

if(TALLOW_WINDOWS)
  add_executable(tallow_window_benchmark benchmarks/window_benchmark.cpp
                                         benchmarks/process_memory_${platform}.cpp)
  target_link_libraries(tallow_window_benchmark PRIVATE tallow_ui)
  add_executable(tallow_find_window_benchmark benchmarks/find_window_benchmark.cpp
                                              benchmarks/find_library.cpp)
  target_link_libraries(tallow_find_window_benchmark PRIVATE tallow_ui)
endif()

add_executable(tallow_hand_off_benchmark benchmarks/hand_off_benchmark.cpp)
target_link_libraries(tallow_hand_off_benchmark PRIVATE tallow_app)
add_dependencies(tallow_hand_off_benchmark tallow-player)
