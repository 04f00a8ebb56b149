# Cost of the X11 workspace's queries on a live desktop with mousepad and xterm.
# Run: scripts/desktop-session build/release/bin/workspace_bench [iterations]
add_executable(workspace_bench workspace_bench.cpp)
target_link_libraries(workspace_bench PRIVATE tessaline-platform Qt6::Gui tessaline-options)
