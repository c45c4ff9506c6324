#!/usr/bin/env bash
# The shop in a real window: an X server without a screen, a real click, a screenshot.
#   real_window.sh SHOP PICTURE      SHOP is kifo-shop, PICTURE the PNG to write
# Ends with 77, which counts as skipped, where the X server or its tools are missing.
set -euo pipefail
shop=$1
picture=$2
for tool in Xvfb xdotool import; do
  command -v "$tool" > /dev/null || { echo "skipped: $tool is not installed"; exit 77; }
done

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
Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp 3> "$home/display" 2> "$home/xvfb" &
pids+=($!)
read -r -t 30 number < "$home/display"
export DISPLAY=:$number QT_QPA_PLATFORM=xcb

"$shop" --verbose > "$home/log" 2>&1 &
pids+=($!)
window=$(timeout 30 xdotool search --sync --onlyvisible --name '^Nook$' | head -1)

# Waits until the shop's console has said this.
said() {
  timeout 30 grep -q -m1 -F "$1" <(tail -n +1 -F "$home/log" 2> /dev/null) ||
    { echo "never said: $1"; cat "$home/log"; exit 1; }
}

said "KifoNetworkStatus: ONLINE"
xdotool mousemove --window "$window" 170 284 click 1
said "Kifo PopupManager: showNotificationPopUpWindow"
said "popup type : POPUP"
import -window root "$picture"
test -s "$picture"
