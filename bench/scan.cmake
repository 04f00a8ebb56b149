# Menu scanning against a naive pyatspi client, side by side on a throw-away desktop:
#   scripts/desktop-session bench/scan-menus build/release
add_executable(scan-menus-bench scan_menus_bench.cpp)
if(NOT TARGET tessaline-atspi-reference)
    add_subdirectory(${CMAKE_SOURCE_DIR}/tests/reference ${CMAKE_BINARY_DIR}/tests/reference)
endif()
target_link_libraries(scan-menus-bench PRIVATE
    tessaline-platform tessaline-atspi-reference tessaline-options)
