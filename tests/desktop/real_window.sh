#!/usr/bin/env bash
# The shop in a real window: an X server without a screen, a real click that shows a campaign, a
# picture of the screen, a real key that closes it.
#   real_window.sh SHOP PICTURE      SHOP is kifo-shop, PICTURE the PNG to write
# Ends with 77, which counts as skipped, where the X server or its tools are missing.
set -euo pipefail
shop=$1
picture=$2
for tool in Xvfb xdotool python3; do
  command -v "$tool" > /dev/null || { echo "skipped: $tool is not installed"; exit 77; }
done
framebuffer=$(dirname "$0")/framebuffer.py

home=$(mktemp -d)
pids=()
finish() {
  for pid in "${pids[@]}"; do kill "$pid" 2> /dev/null || true; done
  wait 2> /dev/null || true
  rm -rf "$home"
}
trap finish EXIT

# The server chooses a free display and says which; reading it waits until it takes windows.
mkfifo "$home/display"
Xvfb -displayfd 3 -screen 0 1180x800x24 -fbdir "$home" -nolisten tcp \
  3> "$home/display" 2> "$home/xvfb" &
pids+=($!)
read -r -t 30 number < "$home/display" ||
  { echo "skipped: Xvfb does not start"; cat "$home/xvfb"; exit 77; }
export DISPLAY=:$number QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=$home
unset QT_SCALE_FACTOR WAYLAND_DISPLAY

"$shop" --verbose > "$home/log" 2>&1 &
pids+=($!)
window=$(timeout 60 xdotool search --sync --onlyvisible --name '^Nook$' | head -1)

# Waits until the shop's console has said this.
said() {
  timeout 60 grep -q -m1 -F "$1" <(tail -n +1 -F "$home/log" 2> /dev/null) ||
    { echo "never said: $1"; cat "$home/log"; exit 1; }
}

# The colour of the shop's bar, far from any panel, as "red green blue".
bar() {
  python3 "$framebuffer" "$home/Xvfb_screen0" pixel 600 10
}

# Waits until the bar has this share, in percent, of the brightness that it had at first.
dimmed() {
  for ((try = 0; try < 600; ++try)); do
    read -r now _ <<< "$(bar)"
    ((now >= bright * $1 / 100 - 2 && now <= bright * $1 / 100 + 2)) && return
    sleep 0.1
  done
  python3 "$framebuffer" "$home/Xvfb_screen0" save "$picture"
  echo "the window's bar is at $now, not at $1 % of $bright; see $picture"
  exit 1
}

said "KifoNetworkStatus: ONLINE"
bright=0
until ((bright > 200)); do read -r bright _ <<< "$(bar)"; done
xdotool mousemove --window "$window" 170 284 click 1
said "popup type : POPUP"
dimmed 70
python3 "$framebuffer" "$home/Xvfb_screen0" save "$picture"
xdotool key --window "$window" Escape
dimmed 100
