#!/usr/bin/env bash
# Runs inside scripts/desktop-session: starts tessaline the way the autostart entry does and
# checks that only the tray comes up (no welcome window, no HUD, even before the welcome
# window was ever finished), that --toggle shows and hides the running instance's HUD, that a
# second start at login leaves it alone, and that --quit ends it; --toggle and --quit without a
# running instance end with status 1 and a message. A start by the user, for contrast, opens
# the welcome window.
set -uo pipefail
tessaline="$TESSALINE_BUILD_DIR/bin/tessaline"
failures=0
check() { local what=$1; shift; if "$@"; then echo "PASS $what"; else echo "FAIL $what"; failures=$((failures + 1)); fi; }

home="$TESSALINE_SESSION_DIR/home"
mkdir -p "$home"
export HOME="$home" XDG_CONFIG_HOME="$home/.config" XDG_DATA_HOME="$home/.local/share"

visible() { xdotool search --onlyvisible --name "$1" >/dev/null 2>&1; }
owned() {
    gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.NameHasOwner org.tessaline.Tessaline 2>/dev/null |
        grep -q true
}
wait_for() {
    local seconds=$1; shift
    local deadline=$((SECONDS + seconds))
    while ((SECONDS < deadline)); do "$@" && return 0; sleep 0.2; done
    "$@"
}
not() { ! "$@"; }

for option in --toggle --quit; do
    message=$("$tessaline" "$option" 2>&1 >/dev/null)
    status=$?
    check "$option with nothing running ends with status 1" test "$status" -eq 1
    check "$option with nothing running says so" grep -q "no running Tessaline" <<<"$message"
done

"$tessaline" --autostart >"$TESSALINE_SESSION_DIR/tessaline.log" 2>&1 &
pid=$!
check "the start at login takes the bus name" wait_for 30 owned
sleep 2
check "no welcome window at login" not visible "^Welcome to Tessaline$"
check "no HUD at login" not visible "^Tessaline$"
check "the flag of the welcome window stays unwritten" \
    bash -c '! grep -qs "Onboarding.completed" "$1"' _ "$XDG_CONFIG_HOME/Tessaline/defaults.json"

"$tessaline" --autostart
check "a second start at login ends with status 0" test $? -eq 0
sleep 1
check "a second start at login shows no HUD" not visible "^Tessaline$"
check "the first instance still runs" kill -0 "$pid"

"$tessaline" --toggle
check "--toggle ends with status 0" test $? -eq 0
check "--toggle shows the HUD" wait_for 10 visible "^Tessaline$"
"$tessaline" --toggle
check "--toggle again hides the HUD" wait_for 10 not visible "^Tessaline$"

"$tessaline" --quit
check "--quit ends with status 0" test $? -eq 0
for _ in $(seq 50); do kill -0 "$pid" 2>/dev/null || break; sleep 0.2; done
check "--quit ends the running instance" not kill -0 "$pid"
wait "$pid"
check "the instance exits cleanly" test $? -eq 0

# The same fresh home started by the user opens the welcome window: the login start's silence
# was the option's doing.
"$tessaline" >>"$TESSALINE_SESSION_DIR/tessaline.log" 2>&1 &
pid=$!
check "a start by the user opens the welcome window" wait_for 30 visible "^Welcome to Tessaline$"
"$tessaline" --quit
wait "$pid"
check "that instance exits cleanly too" test $? -eq 0
if ((failures > 0)); then
    cat "$TESSALINE_SESSION_DIR/tessaline.log"
    echo "$failures check(s) failed"
    exit 1
fi
echo "all command-line checks passed"
