# Sourced by the scripts that need an X server without a screen. `home` is a directory of the
# script's own; it and the processes in `pids` end with the script.

home=$(mktemp -d)
pids=()
finish() {
  for pid in "${pids[@]}"; do kill "$pid" 2> /dev/null || true; done
  wait 2> /dev/null || true
  rm -rf "$home"
}
trap finish EXIT

# need TOOL…: ends the script with 77, which counts as skipped, where a tool is missing.
need() {
  local tool
  for tool in "$@"; do
    command -v "$tool" > /dev/null || { echo "skipped: $tool is not installed"; exit 77; }
  done
}

# start_server SIZE OPTION…: starts a server on a free display; sets `server` and DISPLAY.
start_server() {
  local number
  mkfifo "$home/display"
  Xvfb -displayfd 3 -screen 0 "$@" -nolisten tcp 3> "$home/display" 2> "$home/xvfb" &
  server=$!
  pids+=("$server")
  read -r -t 30 number < "$home/display" ||
    { echo "skipped: Xvfb does not start"; cat "$home/xvfb"; exit 77; }
  rm "$home/display"
  export DISPLAY=:$number XDG_RUNTIME_DIR=$home
  unset QT_SCALE_FACTOR WAYLAND_DISPLAY
}
