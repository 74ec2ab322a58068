thermivo_add_bench(bench_macro UI ${CMAKE_CURRENT_LIST_DIR}/bench_macro.cpp)
