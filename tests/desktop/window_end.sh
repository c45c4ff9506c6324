#!/usr/bin/env bash
# Closes the host's window, terminates the host and ends its display, each with a popup open and
# without one: the host must end in the same way. A log-out closes the windows one by one, which
# PopUpWindowTest looks at.
#   window_end.sh HOST               HOST is the built WindowEndHost
# Ends with 77, which counts as skipped, where the X server or the window manager are missing.
set -euo pipefail
host=$1
. "$(dirname "$0")/x_server.sh"
need Xvfb openbox wmctrl
export QT_QPA_PLATFORM=xcb HOME=$home

# Starts an X server with a window manager.
start_display() {
  start_server 800x600x24
  openbox --sm-disable > "$home/openbox" 2>&1 &
  pids+=($!)
  for ((try = 0; try < 300; ++try)); do
    wmctrl -m > /dev/null 2>&1 && return
    sleep 0.1
  done
  echo "skipped: openbox does not start"
  cat "$home/openbox"
  exit 77
}

# run WAY KIND POPUP: sets `end` to how the host ended, its status and whether its event loop did.
run() {
  local log="$home/log" status=0 pid
  start_display
  rm -f "$log"  # the last run's, which says ready as well
  "$host" "$2" "$3" > "$log" 2> "$home/errors" &
  pid=$!
  pids+=("$pid")
  timeout 60 grep -q -m1 ready <(tail -n +1 -F "$log" 2> /dev/null) ||
    { echo "$* never got ready"; cat "$home/errors"; exit 1; }
  case $1 in
    close) wmctrl -F -c Host ;;
    terminate) kill -TERM "$pid" ;;
    display) kill "$server" ;;
  esac
  if timeout 60 tail --pid="$pid" -f /dev/null; then
    wait "$pid" || status=$?
    end="status $status, $(grep -c ended "$log" || true) regular end"
  else
    end="never"
  fi
  kill "$pid" "$server" 2> /dev/null || true
}

failures=0
for kind in widget scene; do
  for way in close terminate display; do
    run "$way" "$kind" plain
    plain=$end
    run "$way" "$kind" popup
    echo "$kind, $way: without a popup: $plain; with one: $end"
    [[ $plain == "$end" && $end != never ]] || failures=$((failures + 1))
  done
done
exit $((failures > 0))
