#!/usr/bin/env bash
# The command line's scan and apps commands against a running mousepad.
# Runs inside scripts/desktop-session; TESSALINE_BUILD_DIR names the build tree.
set -uo pipefail
cli="$TESSALINE_BUILD_DIR/bin/tessaline-vault"
export XDG_DATA_HOME="$TESSALINE_SESSION_DIR/data" XDG_CONFIG_HOME="$TESSALINE_SESSION_DIR/config"
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"
failures=0
check() { # check DESCRIPTION ACTUAL EXPECTED-REGEX
    if [[ $2 =~ $3 ]]; then
        echo "PASS: $1"
    else
        echo "FAIL: $1: got '$2', wanted /$3/"
        failures=$((failures + 1))
    fi
}

dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus \
    org.freedesktop.DBus.Properties.Set string:org.a11y.Status string:IsEnabled variant:boolean:true >/dev/null
mousepad --disable-server >/dev/null 2>&1 &
app=$!
trap 'kill "$app" 2>/dev/null' EXIT
for _ in $(seq 100); do
    xdotool search --pid "$app" >/dev/null 2>&1 && break
    sleep 0.1
done
sleep 1

apps=$("$cli" apps 2>&1)
check "apps lists mousepad" "$apps" $'(^|\n)Mousepad\torg\\.xfce\\.mousepad(\n|$)'

first=$("$cli" scan --bundle-id org.xfce.mousepad 2>&1)
check "first scan adds everything" "$first" '^Added ([0-9]+) of ([0-9]+) discovered shortcuts for Mousepad\.$'
found=X
if [[ $first =~ ^Added\ ([0-9]+)\ of\ ([0-9]+) ]]; then
    added=${BASH_REMATCH[1]}
    found=${BASH_REMATCH[2]}
    # The seed vault may already hold some of mousepad's shortcuts.
    check "no more added than found" "$((added <= found && found >= 30))" '^1$'
fi
second=$("$cli" scan --bundle-id org.xfce.mousepad 2>&1)
check "second scan finds them in the vault" "$second" "^Found $found shortcuts for Mousepad; they were already in the vault\.\$"

rows=$("$cli" sections --bundle-id org.xfce.mousepad --app Mousepad 2>&1)
check "the vault holds Close Window under File" "$rows" $'Ctrl\\+Shift\\+W\tClose Window\tFile'
check "the vault holds Line Up under Edit > Move" "$rows" $'Alt\\+Up\tLine Up\tEdit > Move'

all=$("$cli" scan --all 2>&1)
check "scan --all sums up" "$all" "^Scanned 1 open apps\. Added 0 new shortcuts from $found found across 1 apps\.\$"

gone=$("$cli" scan --bundle-id org.example.NotRunning 2>&1)
check "an application that is not running" "$gone" '^org\.example\.NotRunning is not running anymore\.$'

both=$("$cli" scan --all --bundle-id x 2>&1)
check "--all and --bundle-id together are refused" "$both" 'either --bundle-id or --all'

help=$("$cli" --help 2>&1)
check "help names scan" "$help" 'scan \[--bundle-id ID \| --all\]'
check "help names apps" "$help" $'(^|\n)  apps'

exit $((failures > 0))
