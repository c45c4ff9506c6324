#!/usr/bin/env bash
# Runs the test that needs a platform with one window only: eglfs, with an X server as its screen.
#   one_window.sh TESTS      TESTS is kifo_ui_tests
# Ends with 77, which counts as skipped, where the X server or that platform are missing.
set -euo pipefail
command -v Xvfb > /dev/null || { echo "skipped: Xvfb is not installed"; exit 77; }

home=$(mktemp -d)
server=
finish() {
  [[ -z $server ]] || kill "$server" 2> /dev/null || true
  wait 2> /dev/null || true
  rm -rf "$home"
}
trap finish EXIT
mkfifo "$home/display"
Xvfb -displayfd 3 -screen 0 800x600x24 -nolisten tcp 3> "$home/display" 2> "$home/xvfb" &
server=$!
read -r -t 30 number < "$home/display" || { echo "skipped: Xvfb does not start"; exit 77; }
export DISPLAY=:$number QT_QPA_PLATFORM=eglfs QT_QPA_EGLFS_INTEGRATION=eglfs_x11
export XDG_RUNTIME_DIR=$home QT_QPA_EGLFS_WIDTH=800 QT_QPA_EGLFS_HEIGHT=600

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
