# Hotkey latency: a synthesized press of the HUD hotkey to its toggle callback. Run it inside
# scripts/desktop-session; it prints figures and asserts nothing.
add_executable(hotkey_latency ${CMAKE_CURRENT_LIST_DIR}/hotkey_latency.cpp)
target_link_libraries(hotkey_latency PRIVATE
    tessaline-platform tessaline-core hotkey Qt6::Gui PkgConfig::XCB tessaline-options)
