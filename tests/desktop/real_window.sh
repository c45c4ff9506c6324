#!/usr/bin/env bash
# The shop in a real window: an X server without a screen, a real click that shows a campaign, a
# picture of the screen, a real key that closes it.
#   real_window.sh SHOP PICTURE      SHOP is kifo-shop, PICTURE the PNG to write
# Ends with 77, which counts as skipped, where the X server or its tools are missing.
set -euo pipefail
shop=$1
picture=$2
. "$(dirname "$0")/x_server.sh"
need Xvfb xdotool xwdtopnm
start_server 1180x800x24 -fbdir "$home"
export QT_QPA_PLATFORM=xcb

"$shop" --verbose > "$home/log" 2>&1 &
pids+=($!)
window=$(timeout 60 xdotool search --sync --onlyvisible --name '^Nook$' | head -1)

# Waits until the shop's console has said this.
said() {
  timeout 60 grep -q -m1 -F "$1" <(tail -n +1 -F "$home/log" 2> /dev/null) ||
    { echo "never said: $1"; cat "$home/log"; exit 1; }
}

# The whole screen, which the server keeps in a file.
screen() {
  xwdtopnm "$home/Xvfb_screen0" 2> /dev/null
}

# The colour of the shop's bar, far from any panel, as "red green blue".
bar() {
  screen | pamcut -left 600 -top 10 -width 1 -height 1 | tail -c 3 | od -An -tu1
}

# Waits until the bar has this share, in percent, of the brightness that it had at first.
dimmed() {
  for ((try = 0; try < 600; ++try)); do
    read -r now _ <<< "$(bar)"
    ((now >= bright * $1 / 100 - 2 && now <= bright * $1 / 100 + 2)) && return
    sleep 0.1
  done
  screen | pnmtopng > "$picture"
  echo "the window's bar is at $now, not at $1 % of $bright; see $picture"
  exit 1
}

said "KifoNetworkStatus: ONLINE"
bright=0
until ((bright > 200)); do read -r bright _ <<< "$(bar)"; done
xdotool mousemove --window "$window" 170 284 click 1
said "popup type : POPUP"
dimmed 70
screen | pnmtopng > "$picture"
xdotool key --window "$window" Escape
dimmed 100
