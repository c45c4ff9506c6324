#!/usr/bin/env bash
# Runs the test that needs a platform with one window only: eglfs, with an X server as its screen.
#   one_window.sh TESTS      TESTS is kifo_ui_tests
# Ends with 77, which counts as skipped, where the X server or that platform are missing.
set -euo pipefail
. "$(dirname "$0")/x_server.sh"
need Xvfb
start_server 800x600x24
export QT_QPA_PLATFORM=eglfs QT_QPA_EGLFS_INTEGRATION=eglfs_x11
export QT_QPA_EGLFS_WIDTH=800 QT_QPA_EGLFS_HEIGHT=600

test=QtPopupPresenterTest.OverASceneOnTheOnlyWindowThereIsNothingIsShownAndTheReasonIsSaid
timeout 120 "$1" --gtest_filter="$test" > "$home/log" 2>&1 || {
  status=$?
  cat "$home/log"
  grep -qE "Could not (initialize|find)|no Qt platform plugin|egl" "$home/log" &&
    ! grep -q "RUN" "$home/log" && { echo "skipped: eglfs does not start here"; exit 77; }
  exit "$status"
}
grep -q "SKIPPED" "$home/log" && { cat "$home/log"; exit 1; }
grep -q "PASSED" "$home/log"
