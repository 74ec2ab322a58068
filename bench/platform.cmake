thermivo_add_bench(bench_platform ENGINE ${CMAKE_CURRENT_LIST_DIR}/bench_platform.cpp)
