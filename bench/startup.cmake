# Start-up to the first painted main window, side by side with a bare Qt window.
add_executable(startup_bare_window bare_window.cpp)
target_link_libraries(startup_bare_window PRIVATE Qt6::Widgets)
set_target_properties(startup_bare_window PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)

add_executable(bench_startup bench_startup.cpp)
target_link_libraries(bench_startup PRIVATE benchmark::benchmark)
target_compile_definitions(bench_startup PRIVATE
  THERMIVO_EXE="$<TARGET_FILE:thermivo>"
  BARE_EXE="$<TARGET_FILE:startup_bare_window>")
add_dependencies(bench_startup thermivo startup_bare_window)
set_target_properties(bench_startup PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
