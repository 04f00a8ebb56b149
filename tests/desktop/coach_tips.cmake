# Desktop tests of the coach tips: a driver running the controller with the X11 key monitor and
# the QML panel, steered by xdotool inside the throw-away desktop.
add_executable(coach-tip-driver coach_tip_driver.cpp)
target_link_libraries(coach-tip-driver PRIVATE
    tessaline-coachtip-ui tessaline-uiplugin tessaline-platform tessaline-core Qt6::Gui Qt6::Quick tessaline-options)

tessaline_add_desktop_test(desktop_coach_tips
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/coach_tips_e2e.sh" TIMEOUT 240)
