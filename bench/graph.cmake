thermivo_add_bench(bench_graph UI ${CMAKE_CURRENT_LIST_DIR}/bench_graph.cpp)
