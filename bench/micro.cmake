thermivo_add_bench(bench_micro UI ${CMAKE_CURRENT_LIST_DIR}/bench_micro.cpp)
