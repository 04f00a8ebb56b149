# Menu scanning against a naive pyatspi client, side by side on a throw-away desktop:
#   scripts/desktop-session bench/scan-menus build/release
add_executable(scan-menus-bench scan_menus_bench.cpp)
target_link_libraries(scan-menus-bench PRIVATE tessaline-platform tessaline-options)
