thermivo_add_bench(bench_printing UI ${CMAKE_CURRENT_LIST_DIR}/bench_printing.cpp)
