#!/usr/bin/env bash
# Closes the host's window, logs out, terminates the host and ends its display, each with a popup
# open and without one: the host must end in the same way.
#   window_end.sh HOST [MANAGER]     HOST is the built WindowEndHost, MANAGER the SessionManager;
#                                    without that, nothing is logged out
# Ends with 77, which counts as skipped, where the X server or the window manager are missing.
set -euo pipefail
host=$1
manager=${2:-}
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

# Starts a session manager, which logs out when descriptor 4 is closed.
start_session() {
  mkfifo "$home/session"
  "$manager" < "$home/session" > "$home/address" &
  pids+=($!)
  exec 4> "$home/session"
  rm "$home/session"
  until SESSION_MANAGER=$(head -n 1 "$home/address") && [[ $SESSION_MANAGER ]]; do sleep 0.1; done
  export SESSION_MANAGER
}

# run WAY KIND POPUP: sets `end` to how the host ended, its status and whether its event loop did.
run() {
  local log="$home/log" status=0 pid
  unset SESSION_MANAGER
  start_display
  rm -f "$log"  # the last run's, which says ready as well
  [[ $1 != logout ]] || start_session
  "$host" "$2" "$3" > "$log" 2> "$home/errors" 4>&- &
  pid=$!
  pids+=("$pid")
  timeout 60 grep -q -m1 ready <(tail -n +1 -F "$log" 2> /dev/null 4>&-) ||
    { echo "$* never got ready"; cat "$home/errors"; exit 1; }
  case $1 in
    close) wmctrl -F -c Host ;;
    logout) exec 4>&- ;;
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

ways=(close terminate display)
[[ -z $manager ]] || ways+=(logout)
failures=0
for kind in widget scene; do
  for way in "${ways[@]}"; do
    run "$way" "$kind" plain
    plain=$end
    run "$way" "$kind" popup
    echo "$kind, $way: without a popup: $plain; with one: $end"
    [[ $plain == "$end" && $end != never ]] || failures=$((failures + 1))
  done
done
exit $((failures > 0))
