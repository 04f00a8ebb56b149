#!/usr/bin/env bash
# End-to-end check of the coach tips on a real X server: keys sent with xdotool (through XTEST,
# like a keyboard) reach the XInput2 monitor, the right tip appears in the bottom-right corner
# without taking the focus and names the bindings GNOME's real GSettings hold at that moment,
# the eight-hour rule and "Don't show again" hold across a restart, and releases, the mute key,
# the old Super+Shift+4 chord, keys typed into our own window and keys the desktop has no
# binding to name show nothing. Changing and removing a binding with `gsettings set` changes
# what the running driver says.
#
# Runs inside scripts/desktop-session. COACH_SCREENSHOT_DIR, when set, receives the screenshots.
set -euo pipefail

driver_bin="${TESSALINE_BUILD_DIR:?}/bin/coach-tip-driver"
work=$(mktemp -d "${TESSALINE_SESSION_DIR:-/tmp}/coach.XXXXXX")
# The panel is drawn with the software renderer, as in the application.
export QT_QUICK_BACKEND=software
export XDG_CONFIG_HOME="$work/config"
defaults_file="$XDG_CONFIG_HOME/Tessaline/defaults.json"
# A GNOME session as far as key settings go: the schemas installed by scripts/deps, the values
# in a key file of this run's own, shared by gsettings and the driver.
export XDG_CURRENT_DESKTOP=GNOME
export GSETTINGS_BACKEND=keyfile
media_keys=org.gnome.settings-daemon.plugins.media-keys
gsettings list-keys "$media_keys" >/dev/null \
    || { echo "the GNOME media-keys schema is missing: run scripts/deps" >&2; exit 1; }
gsettings list-keys org.gnome.shell.keybindings >/dev/null \
    || { echo "the GNOME shell schema is missing: run scripts/deps" >&2; exit 1; }
log="$work/driver.log"
driver_pid=
failures=0

# The screen is 1280 x 800 with no panels: the panel's place is fixed.
panel_geometry="898 646 360 132"

fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}
pass() { echo "ok: $*"; }

cleanup() {
    if [[ -n "$driver_pid" ]]; then
        kill -TERM "$driver_pid" 2>/dev/null || true
        wait "$driver_pid" 2>/dev/null || true
    fi
    [[ -n "${xterm_pid:-}" ]] && kill "$xterm_pid" 2>/dev/null || true
}
trap cleanup EXIT

line_count() { wc -l <"$log"; }

# wait_for_line MARK PATTERN SECONDS: a line matching PATTERN after line MARK of the log.
wait_for_line() {
    local mark=$1 pattern=$2 deadline=$((SECONDS + $3))
    while ((SECONDS <= deadline)); do
        tail -n +"$((mark + 1))" "$log" | grep -qE "$pattern" && return 0
        sleep 0.05
    done
    return 1
}

# no_line_for MARK PATTERN SECONDS: no such line appears within SECONDS.
no_line_for() {
    sleep "$3"
    ! tail -n +"$(($1 + 1))" "$log" | grep -qE "$2"
}

start_driver() {
    : >"$log"
    runs=$((${runs:-0} + 1))
    "$driver_bin" "$@" >>"$log" 2>"$work/driver$runs.err" &
    driver_pid=$!
    if ! wait_for_line 0 '^monitoring$' 15; then
        cat "$log" "$work/driver$runs.err" >&2
        echo "the driver did not start its monitor" >&2
        exit 1
    fi
}

stop_driver() {
    kill -TERM "$driver_pid"
    wait "$driver_pid" || fail "driver exited with status $?"
    driver_pid=
}

# press MARK-VARIABLE XDOTOOL-ARGS...: records the log position, then sends the keys.
send_keys() {
    mark=$(line_count)
    xdotool "$@"
}

# check_message MARK TIP TEXT: the panel of TIP shows exactly TEXT.
check_message() {
    local shown
    if wait_for_line "$1" "^message $2 " 5; then
        shown=$(tail -n +"$(($1 + 1))" "$log" | grep -m 1 "^message $2 " | cut -d' ' -f3-)
        [[ "$shown" == "$3" ]] && pass "$2 says \"$3\"" \
            || fail "$2 says \"$shown\", expected \"$3\""
    else
        fail "no message of $2 reported"
    fi
}

# no_tip_recorded TIP: the defaults file holds no shown time of TIP.
no_tip_recorded() {
    ! grep -q "\"CoachTip.lastShown.$1\"" "$defaults_file"
}

panel_window() { xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | head -n 1; }

window_geometry() { # x y width height of a window
    xwininfo -id "$1" | awk '/Absolute upper-left X/ {x=$NF} /Absolute upper-left Y/ {y=$NF}
        /^ *Width:/ {w=$NF} /^ *Height:/ {h=$NF} END {print x, y, w, h}'
}

screenshot() { # screenshot NAME: the whole screen, also copied out when asked
    local file="$work/$1.png"
    import -window root "$file"
    if [[ -n "${COACH_SCREENSHOT_DIR:-}" ]]; then
        mkdir -p "$COACH_SCREENSHOT_DIR"
        cp "$file" "$COACH_SCREENSHOT_DIR/"
    fi
    echo "$file"
}

# The panel's area of a screenshot is drawn (not one flat colour) and differs from the
# background next to it.
check_panel_drawn() {
    local file=$1 what=$2 deviation
    deviation=$(convert "$file" -crop 360x132+898+646 +repage -colorspace Gray \
        -format '%[fx:standard_deviation]' info:)
    awk -v d="$deviation" 'BEGIN {exit !(d > 0.05)}' \
        && pass "$what: panel area is drawn (deviation $deviation)" \
        || fail "$what: panel area looks empty (deviation $deviation)"
}

# The lightbulb left of the text is drawn in yellow: count the yellow pixels in that strip.
check_symbol_yellow() {
    local file=$1 share
    share=$(convert "$file" -crop 50x132+898+646 +repage -fuzz 12% -fill black \
        +opaque '#f5c211' -fill white -opaque '#f5c211' -colorspace Gray -format '%[fx:mean]' info:)
    awk -v s="$share" 'BEGIN {exit !(s > 0.01)}' \
        && pass "the lightbulb is drawn in yellow ($share of its strip)" \
        || fail "no yellow lightbulb in the panel ($share of its strip)"
}

check_focus_kept() {
    local focused
    focused=$(xdotool getwindowfocus)
    [[ "$focused" == "$xterm_window" ]] && pass "$1: the terminal keeps the focus" \
        || fail "$1: focus moved to $focused ($(xdotool getwindowname "$focused" 2>/dev/null))"
}

# An ordinary application in front, as the user would have.
xterm -geometry 80x24+40+40 -title coach-terminal &
xterm_pid=$!
for _ in $(seq 100); do
    xterm_window=$(xdotool search --onlyvisible --name '^coach-terminal$' 2>/dev/null | head -n 1) && [[ -n "$xterm_window" ]] && break
    sleep 0.1
done
[[ -n "${xterm_window:-}" ]] || { echo "xterm did not appear" >&2; exit 1; }
xdotool windowactivate --sync "$xterm_window"

# --- First run -------------------------------------------------------------------------------
start_driver

send_keys key XF86AudioRaiseVolume
if wait_for_line "$mark" '^shown volume-precision$' 5 && wait_for_line "$mark" '^panel ' 5; then
    pass "volume up shows the volume tip"
else
    fail "volume up showed no tip"
fi
check_message "$mark" volume-precision \
    "Shift+Volume Up and Shift+Volume Down change the volume in smaller steps."
window=$(panel_window "Tiny volume steps")
if [[ -n "$window" ]]; then
    geometry=$(window_geometry "$window")
    [[ "$geometry" == "$panel_geometry" ]] && pass "panel sits at $geometry" \
        || fail "panel at $geometry, expected $panel_geometry"
else
    fail "no window titled \"Tiny volume steps\" on screen"
fi
check_focus_kept "volume tip"
volume_shot=$(screenshot coach-volume-tip)
check_panel_drawn "$volume_shot" "volume tip"
check_symbol_yellow "$volume_shot"
shown_at=$SECONDS

# The nine-second timer takes the panel away by itself.
sleep 6
[[ -n "$(panel_window "Tiny volume steps")" ]] && pass "panel still there after 6 s" \
    || fail "panel gone before nine seconds"
for _ in $(seq 60); do
    [[ -z "$(panel_window "Tiny volume steps")" ]] && break
    sleep 0.1
done
gone_after=$((SECONDS - shown_at))
if [[ -z "$(panel_window "Tiny volume steps")" ]] && ((gone_after <= 11)); then
    pass "panel closed by itself after about $gone_after s"
else
    fail "panel not closed by the nine-second timer ($gone_after s)"
fi

# Within eight hours the same tip stays away, for either volume key.
send_keys key XF86AudioLowerVolume
wait_for_line "$mark" '^event system subtype=8 data1=0x10a00$' 5 \
    || fail "volume down was not seen by the monitor"
no_line_for "$mark" '^shown ' 1 && pass "second volume press within eight hours shows nothing" \
    || fail "a volume tip showed again within eight hours"

# Mute is a system key without a tip.
send_keys key XF86AudioMute
wait_for_line "$mark" '^event system subtype=8 data1=0x70b00$' 5 \
    || fail "mute was not seen by the monitor"
no_line_for "$mark" '^shown ' 1 && pass "mute shows nothing" || fail "mute showed a tip"

# The old screenshot chord is an ordinary key combination here.
send_keys key super+shift+4
wait_for_line "$mark" '^event keydown flags=0x120000 chars=4 key=4$' 5 \
    || fail "Super+Shift+4 was not seen as Super+Shift+4"
no_line_for "$mark" '^shown ' 1 && pass "Super+Shift+4 shows nothing" \
    || fail "Super+Shift+4 showed a tip"

# GNOME binds no smaller brightness step: no tip, and no shown time either.
send_keys key XF86MonBrightnessUp
wait_for_line "$mark" '^event system subtype=8 data1=0x20a00$' 5 \
    || fail "brightness up was not seen by the monitor"
no_line_for "$mark" '^shown ' 1 && pass "brightness up shows nothing on GNOME" \
    || fail "brightness up showed a tip on GNOME"

# Print with any modifier is the screenshot key; the tip names GNOME's bindings. (Shift+Print,
# because openbox itself grabs Print and Alt+Print, which would take the focus for a moment.)
send_keys key shift+Print
wait_for_line "$mark" '^event keydown flags=0x20000 chars=<none> key=Print$' 5 \
    || fail "Shift+Print was not seen as the Print key"
if wait_for_line "$mark" '^shown screenshot-toolbar$' 5 && wait_for_line "$mark" '^panel screenshot-toolbar ' 5; then
    pass "Shift+Print shows the screenshot tip"
else
    fail "Shift+Print showed no screenshot tip"
fi
check_message "$mark" screenshot-toolbar \
    "Print lets you pick a region to capture; Alt+Print captures the active window."
[[ -n "$(panel_window "Screenshot toolbar")" ]] || fail "no \"Screenshot toolbar\" window"
check_focus_kept "screenshot tip"
check_panel_drawn "$(screenshot coach-screenshot-tip)" "screenshot tip"

# A newer tip replaces the one on screen; "Don't show again" on it is remembered.
send_keys key XF86AudioPlay
if wait_for_line "$mark" '^panel media-keys ' 5; then
    pass "play shows the media tip"
else
    fail "play showed no tip"
fi
check_message "$mark" media-keys \
    "Play/pause and skip usually work even when the player is in the background."
sleep 0.3
[[ -z "$(panel_window "Screenshot toolbar")" ]] && pass "the media tip replaced the screenshot tip" \
    || fail "the screenshot tip is still on screen"
screenshot coach-media-tip >/dev/null
read -r button_x button_y < <(tail -n +"$((mark + 1))" "$log" | awk '/^button neverShowButton/ {print $3, $4; exit}')
mark=$(line_count)
xdotool mousemove --sync "$button_x" "$button_y" click 1
wait_for_line "$mark" '^closed$' 5 && pass "\"Don't show again\" closes the panel" \
    || fail "\"Don't show again\" did not close the panel"
sleep 0.3
[[ -z "$(panel_window "Media keys are global")" ]] || fail "media panel still on screen"
stop_driver
grep -A2 '"CoachTip.dismissed.media-keys"' "$defaults_file" | grep -q '"value": true' \
    && pass "the dismissal is stored in $defaults_file" \
    || fail "no dismissal stored in $defaults_file"
no_tip_recorded brightness-precision && pass "the brightness tip that never showed has no shown time" \
    || fail "a shown time was stored for the brightness tip"

# --- Second run, nine hours later by the clock, same defaults ---------------------------------
# A key already held when the monitor starts: only its release is seen, and a release never
# shows a tip.
xdotool keydown XF86AudioNext
start_driver --clock-offset 32400 --own-window
# The new window of the driver may have taken the focus: give it back to the terminal.
xdotool windowactivate --sync "$xterm_window"
sleep 0.3
send_keys keyup XF86AudioNext
wait_for_line "$mark" '^event system subtype=8 data1=0x110b00$' 5 \
    || fail "the release of the next key was not seen"
no_line_for "$mark" '^shown ' 1 && pass "a key release shows nothing" \
    || fail "a key release showed a tip"

# Typed into one of our own windows, keys are not seen at all.
own_window=$(xdotool search --onlyvisible --name '^coach-driver-own-window$' | head -n 1)
xdotool windowactivate --sync "$own_window" 2>/dev/null
sleep 0.3
[[ "$(xdotool getwindowfocus)" == "$own_window" ]] || fail "could not focus the driver's own window"
send_keys key XF86AudioPlay
no_line_for "$mark" '^(event|shown) ' 1.5 && pass "keys sent to our own window are not seen" \
    || fail "a key sent to our own window reached the monitor"
xdotool windowactivate --sync "$xterm_window"
sleep 0.3

send_keys key XF86AudioNext
wait_for_line "$mark" '^event system subtype=8 data1=0x110a00$' 5 \
    || fail "the next key was not seen after the restart"
no_line_for "$mark" '^shown ' 1 && pass "\"Don't show again\" survives a restart" \
    || fail "the dismissed media tip showed again"

# The user removes the smaller volume steps: eight hours later the volume key shows nothing.
shown_before=$(grep -A2 '"CoachTip.lastShown.volume-precision"' "$defaults_file")
gsettings set "$media_keys" volume-up-precise-static "[]"
gsettings set "$media_keys" volume-down-precise-static "[]"
[[ "$(gsettings get "$media_keys" volume-up-precise-static)" == "@as []" ]] \
    || fail "gsettings did not store the emptied binding"
sleep 1.5 # the driver's settings backend notices the changed key file
send_keys key XF86AudioRaiseVolume
wait_for_line "$mark" '^event system subtype=8 data1=0xa00$' 5 \
    || fail "volume up was not seen after the restart"
no_line_for "$mark" '^shown ' 1 && pass "without a smaller-step binding volume up shows nothing" \
    || fail "the volume tip showed without a binding to name"

# Bound again, differently: the next press names the new binding.
gsettings set "$media_keys" volume-up-precise-static "['<Super>XF86AudioRaiseVolume']"
sleep 1.5
send_keys key XF86AudioLowerVolume
if wait_for_line "$mark" '^shown volume-precision$' 5; then
    pass "with the binding back the volume tip shows again"
else
    fail "the volume tip did not show after its binding came back"
fi
check_message "$mark" volume-precision "Super+Volume Up raises the volume in a smaller step."
screenshot coach-volume-rebound-tip >/dev/null
stop_driver
[[ "$(grep -A2 '"CoachTip.lastShown.volume-precision"' "$defaults_file")" != "$shown_before" ]] \
    && pass "the rebound volume tip stored its new shown time" \
    || fail "the volume tip's shown time did not move"

if ((failures > 0)); then
    echo "$failures check(s) failed; driver log:" >&2
    cat "$log" >&2
    echo "driver errors:" >&2
    cat "$work"/driver*.err >&2
    exit 1
fi
echo "all coach tip checks passed"
