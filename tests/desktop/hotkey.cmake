# The HUD hotkey end to end: xdotool presses, the X11 grab, the manager's toggle.
add_executable(tst_hotkey_desktop ${CMAKE_CURRENT_LIST_DIR}/tst_hotkey_desktop.cpp)
target_link_libraries(tst_hotkey_desktop PRIVATE
    tessaline-platform tessaline-core hotkey Qt6::Gui Qt6::Test PkgConfig::XCB tessaline-options)
tessaline_add_desktop_test(tst_hotkey_desktop COMMAND $<TARGET_FILE:tst_hotkey_desktop>)
