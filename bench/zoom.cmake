thermivo_add_bench(bench_zoom UI ${CMAKE_CURRENT_LIST_DIR}/bench_zoom.cpp)
