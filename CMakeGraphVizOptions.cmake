# SPDX-License-Identifier: GPL-3.0-or-later
# What docs/draw-layers.sh shows of the graph of CMake's targets: the folders' libraries and the two
# programs.
set(GRAPHVIZ_GRAPH_NAME "Tallow")
set(GRAPHVIZ_EXTERNAL_LIBS FALSE)
set(GRAPHVIZ_INTERFACE_LIBS FALSE)
set(GRAPHVIZ_GENERATE_PER_TARGET FALSE)
set(GRAPHVIZ_GENERATE_DEPENDERS FALSE)
set(GRAPHVIZ_IGNORE_TARGETS
    tallow_options
    tallow_json
    tallow_xxhash
    tallow_resources
    tallow_song_player
    ".*_tests"
    ".*_benchmark"
    tallow_collection
    tallow_floor
    tallow_probe
    tallow_dead_folder
    fail_call
    tallow_load_fuzzer)
