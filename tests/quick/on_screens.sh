#!/usr/bin/env bash
# The popups in scenes drawn by OpenGL: in X windows with the basic and the threaded render loop, and
# on the only window that eglfs has, with an X server as its screen.
#   on_screens.sh TESTS      TESTS is the built kifo_ui_tests
# Ends with 77, which counts as skipped, where there is no X server; says which round it leaves out.
set -euo pipefail
tests=$1
. "$(dirname "$0")/../desktop/x_server.sh"
need Xvfb
start_server 1400x1000x24
export QT_QUICK_BACKEND=rhi QSG_RHI_BACKEND=opengl
suites='*/AnswerTest.*quick:*/FocusTest.*quick:*/LayoutTest.*quick:QuickPopupPresenterTest.*'

for loop in basic threaded; do
  echo "X windows, $loop render loop"
  QT_QPA_PLATFORM=xcb QSG_RENDER_LOOP=$loop "$tests" --gtest_brief=1 --gtest_filter="$suites"
done

plugins=$(dirname "$(find /usr/lib -name libqeglfs-x11-integration.so -print -quit)")
if [[ $plugins == . ]]; then
  echo "eglfs left out: Qt has no eglfs_x11 here"
  exit 0
fi
echo "eglfs"
# Its window cannot be resized, and there is no second one.
others='*LayoutTest*:*ATallPanel*:*AFinger*:*WidgetsAndScenes*:*WidgetsAndAScene*:*TheActiveOne*'
QT_QPA_PLATFORM=eglfs QT_QPA_EGLFS_INTEGRATION=eglfs_x11 "$tests" --gtest_brief=1 \
  --gtest_filter="$suites-$others"
