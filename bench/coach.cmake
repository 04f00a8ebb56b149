# Idle cost of the coach tips' raw-key monitor. Needs an X display:
#   scripts/desktop-session build/release/bin/coach-idle-bench 10
add_executable(coach-idle-bench coach_idle_bench.cpp)
target_link_libraries(coach-idle-bench PRIVATE tessaline-platform Qt6::Gui tessaline-options)
