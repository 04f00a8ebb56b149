#!/usr/bin/env bash
# Runs the workspace and tracker desktop test in two processes that share one config folder:
# the first follows real applications and saves the last one, the second is the restart that
# must find it again.
set -euo pipefail
test_binary=$1
export QT_QPA_PLATFORM=xcb
export XDG_CONFIG_HOME="${TESSALINE_SESSION_DIR:?run inside scripts/desktop-session}/tracker-config"
rm -rf "$XDG_CONFIG_HOME"
mkdir -p "$XDG_CONFIG_HOME"

"$test_binary" runningApplicationsIdentifyRealApps trackerFollowsActivationAndIgnoresTessaline \
    activateBringsTheAppToTheFront activateBringsBackTheAppsMostRecentWindow \
    windowTypeDecidesWhetherAnAppIsRegular \
    clearedOrRepeatedActiveWindowIsNotAnnounced windowsThatAreGoneAreLeftOut
echo "--- restart ---"
"$test_binary" savedAppIsRestoredAfterRestart
