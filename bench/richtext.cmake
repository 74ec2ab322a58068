thermivo_add_bench(bench_richtext UI ${CMAKE_CURRENT_LIST_DIR}/bench_richtext.cpp)
