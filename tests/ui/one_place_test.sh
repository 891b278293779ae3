#!/bin/bash
# Both browsers stand in one place on the screen, under a real window manager
# and with real input. Starts its own X server and window manager.
#
#   one_place_test.sh VEL WORKFOLDER [SCALE]
#
# Needs Xvfb, openbox, xdotool, xwininfo and xprop.
set -u

vel=$1
work=$2
scale=${3:-1}  # device pixels to a logical one

for tool in Xvfb openbox xdotool xwininfo xprop; do
  command -v "$tool" > /dev/null || { echo "$tool is missing"; exit 1; }
done

children=()
cleanUp() {
  for child in "${children[@]}"; do kill "$child" 2> /dev/null; done
  wait 2> /dev/null
}
trap cleanUp EXIT

failures=0
fail() {
  echo "FAILED: $*"
  failures=$((failures + 1))
}
expectEqual() {  # what, expected, actual
  if [ "$2" = "$3" ]; then
    echo "ok: $1: $3"
  else
    fail "$1: expected $2, got $3"
  fi
}

# As expectEqual for texts that hold places. Where a logical pixel is more than
# one of the device, a window stands on the nearest one.
expectPlace() {
  local -a expected actual
  read -r -a expected <<< "${2//,/ }"
  read -r -a actual <<< "${3//,/ }"
  local i same=yes
  for i in "${!expected[@]}"; do
    local want=${expected[i]} got=${actual[i]:-missing}
    [ "$want" = "$got" ] && continue
    local off=$((${4:-1} * 2 * (scale - 1)))
    [[ $want =~ ^-?[0-9]+$ && $got =~ ^-?[0-9]+$ ]] &&
      [ $((want - got)) -le $off ] && [ $((got - want)) -le $off ] && continue
    same=no
  done
  [ "${#expected[@]}" = "${#actual[@]}" ] || same=no
  [ $same = yes ] && expectEqual "$1" "$3" "$3" || fail "$1: expected $2, got $3"
}

# Runs a command until it succeeds, for some seconds at most.
waitFor() {
  for _ in $(seq 100); do
    "$@" > /dev/null 2>&1 && return 0
    sleep 0.1
  done
  fail "waited in vain for: $*"
  return 1
}

startServer() {
  # The server itself picks a free display and tells its number. Without
  # -noreset it would start afresh whenever its last client leaves.
  exec 3< <(exec Xvfb -displayfd 1 -screen 0 $((1400 * scale))x$((1000 * scale))x24 -nolisten tcp -noreset 2> /dev/null)
  children+=($!)
  read -r -t 20 number <&3 || { echo "no X server"; exit 1; }
  export DISPLAY=:$number
  unset QT_QPA_PLATFORM QT_SCREEN_SCALE_FACTORS
  export QT_SCALE_FACTOR=$scale
  openbox --sm-disable 2> /dev/null &
  windowManager=$!
  children+=("$windowManager")
  waitFor xprop -root _NET_SUPPORTING_WM_CHECK
}

makeBase() {
  rm -rf "$work"
  mkdir -p "$work"/base/{vel,data,logs/EachLogs,pics}
  local data=$work/base/data logs=$work/base/logs
  printf 'JA8089,B744\r\n' > "$data/aircraft.csv"
  printf 'JL0123,RJTTRJAA,-\r\n' > "$data/FLIGHT.csv"
  printf 'RJTT,Tokyo Haneda HND\r\n' > "$data/airport.csv"
  printf 'JL,JAL,Japan Airlines\r\n' > "$data/letter.csv"
  printf '84C27D,JAL,JL,JA8089,B744\r\n' > "$data/ICAO24.csv"
  printf 'JL0123,X,JA8089,RJTT,RJAA,B744,-,9:05:00\r\n' > "$logs/20261120_list.csv"
  printf '%s\r\n' '[1]------------------------[2026/11/20 00:03:00]' ' DOWN LINK' \
    '  GS NAME         = Agana, Guam' '   ICAO24 ADDRESS = 84C27D' '   REGISTRATION   = JA8089' \
    '   FLIGHT ID      = JL0123' '  ..............................' \
    > "$logs/202611200000_HFDL_FMT.log"
}

startVel() {
  "$vel" --program-folder "$work/base/vel" 2> "$work/err" &
  velProcess=$!
  children+=("$velProcess")
  waitFor windowOf LIST
  settle
}
endVel() {  # by the window manager's close
  xdotool key --clearmodifiers super+q
  for _ in $(seq 100); do
    kill -0 "$velProcess" 2> /dev/null || return 0
    sleep 0.1
  done
  fail "the program does not end"
  kill "$velProcess" 2> /dev/null
}

windowOf() {  # LIST or FMT: the id of that browser while it is on the screen
  xdotool search --onlyvisible --name "^VEL $1" 2> /dev/null | grep -m1 .
}
settle() { sleep 0.8; }

# Outer left, top, width and height as the window manager has drawn them.
outer() {
  local id frame x y w h
  id=$(windowOf "$1") || { echo none; return; }
  frame=$(xprop -id "$id" _NET_FRAME_EXTENTS | sed 's/.*= //; s/,//g')
  read -r fl fr ft fb <<< "$frame"
  eval "$(xwininfo -id "$id" | awk '
    /Absolute upper-left X/ {print "x=" $4} /Absolute upper-left Y/ {print "y=" $4}
    /^  Width:/ {print "w=" $2} /^  Height:/ {print "h=" $2}')"
  echo "$((x - fl)),$((y - ft)),$((w + fl + fr)),$((h + ft + fb))"
}
isMaximised() { xprop -id "$(windowOf "$1")" _NET_WM_STATE | grep -q MAXIMIZED_VERT; }
maximised() { isMaximised "$1" && echo maximised || echo normal; }
setting() { sed -n "s/^\"$1\",//p" "$work/base/vel/vel.env" | tr -d '\r'; }

switchTo() {  # LIST or FMT, by the keyboard
  xdotool key --clearmodifiers ctrl+Tab
  waitFor windowOf "$1"
  settle
}
dragTitle() {  # from x,y by dx,dy
  xdotool mousemove "$1" "$2" mousedown 1
  for step in 1 2 3 4; do
    xdotool mousemove $(($1 + $3 * step / 4)) $(($2 + $4 * step / 4))
    sleep 0.05
  done
  xdotool mouseup 1
  settle
}
closeWindow() {  # what a task bar's Close does
  xdotool key --clearmodifiers super+c
}
toggleMaximised() {  # the window manager's own key
  xdotool key --clearmodifiers super+x
  settle
}

makeBase
mkdir -p "$work/config/openbox"
cat > "$work/config/openbox/rc.xml" << 'RC'
<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <placement><policy>Smart</policy></placement>
  <keyboard>
    <keybind key="W-x"><action name="ToggleMaximize"/></keybind>
    <keybind key="W-q"><action name="Close"/></keybind>
    <keybind key="W-c"><action name="ForEach"><then><action name="Close"/></then></action></keybind>
    <keybind key="W-i"><action name="Iconify"/></keybind>
  </keyboard>
  <mouse>
    <context name="Titlebar">
      <mousebind button="Left" action="Drag"><action name="Move"/></mousebind>
    </context>
    <context name="BRCorner">
      <mousebind button="Left" action="Drag"><action name="Resize"/></mousebind>
    </context>
  </mouse>
</openbox_config>
RC
export XDG_CONFIG_HOME=$work/config XDG_RUNTIME_DIR=$work/config
# No bus of anybody's desktop; the library that would look for one loses memory,
# which the address sanitizer tells.
export DBUS_SESSION_BUS_ADDRESS=disabled:
chmod 700 "$work/config"
startServer
startVel

echo "== the designed size, and the other browser in the same place"
first=$(outer LIST)
expectPlace "the designed size" "$((1000 * scale)),$((720 * scale))" "$(outer LIST | cut -d, -f3-)"
switchTo FMT
expectPlace "the HFDL browser stands where the ACARS browser stood" "$first" "$(outer FMT)"
expectEqual "the ACARS browser is hidden" none "$(outer LIST)"
switchTo LIST
expectPlace "back again" "$first" "$(outer LIST)"

echo "== moved by its title bar"
IFS=, read -r x y w h <<< "$first"
dragTitle $((x + 300)) $((y + 8)) 90 60
moved=$(outer LIST)
expectPlace "the window moved" "$((x + 90)),$((y + 60)),$w,$h" "$moved"
switchTo FMT
expectPlace "the hidden one came along" "$moved" "$(outer FMT)"

echo "== the HFDL browser resized by its corner, and moved"
IFS=, read -r x y w h <<< "$moved"
dragTitle $((x + w - 1)) $((y + h - 1)) 70 40
resized=$(outer FMT)
expectPlace "the window grew" "$x,$y,$((w + 70)),$((h + 40))" "$resized"
dragTitle $((x + 300)) $((y + 8)) -40 -25
resized=$(outer FMT)
switchTo LIST
expectPlace "the hidden one came along" "$resized" "$(outer LIST)"
for round in 1 2 3; do
  switchTo FMT
  switchTo LIST
done
expectPlace "no drift after six more switches" "$resized" "$(outer LIST)"

echo "== switched at once after a move"
IFS=, read -r x y w h <<< "$resized"
xdotool getactivewindow windowmove --sync $((x + 31)) $((y + 17))
settle
at=$(outer LIST)
switchTo FMT
expectPlace "the place of a moment ago" "$at" "$(outer FMT)"
switchTo LIST

echo "== a window manager that is slow"
for pause in 0.3 1.2; do
  kill -STOP "$windowManager"
  xdotool key --clearmodifiers ctrl+Tab
  sleep $pause
  kill -CONT "$windowManager"
  waitFor windowOf FMT
  settle
  expectPlace "shown after $pause s" "$at" "$(outer FMT)"
  switchTo LIST
  expectPlace "and back" "$at" "$(outer LIST)"
done

echo "== maximised"
normal=$(outer LIST)
toggleMaximised
expectEqual "maximised by the window manager" maximised "$(maximised LIST)"
full=$(outer LIST)
switchTo FMT
expectEqual "the HFDL browser is maximised too" maximised "$(maximised FMT)"
expectPlace "in the same place" "$full" "$(outer FMT)"
switchTo LIST
expectPlace "and back" "maximised $full" "$(maximised LIST) $(outer LIST)"
toggleMaximised
expectPlace "restored where it was" "normal $normal" "$(maximised LIST) $(outer LIST)"
switchTo FMT
expectPlace "the other one as well" "normal $normal" "$(maximised FMT) $(outer FMT)"
toggleMaximised
switchTo LIST
toggleMaximised
expectPlace "maximised in one, restored in the other" "normal $normal" \
  "$(maximised LIST) $(outer LIST)"
IFS=, read -r x y w h <<< "$normal"
dragTitle $((x + 300)) $((y + 8)) -25 -12
normal=$(outer LIST)
toggleMaximised
switchTo FMT
toggleMaximised
expectPlace "a move between two maximisings counts" "normal $normal" \
  "$(maximised FMT) $(outer FMT)"

echo "== resized, and maximised at once"
IFS=, read -r x y w h <<< "$(outer FMT)"
id=$(windowOf FMT)
read -r inW inH <<< "$(xdotool getwindowgeometry --shell "$id" | awk -F= '
  /WIDTH/ {w = $2} /HEIGHT/ {print w, $2}')"
xdotool windowsize "$id" $((inW - 50)) $((inH - 30)) sleep 0.1 key --clearmodifiers super+x
settle
expectEqual "maximised" maximised "$(maximised FMT)"
switchTo LIST
toggleMaximised
normal=$x,$y,$((w - 50)),$((h - 30))
expectPlace "restored in the new size" "normal $normal" "$(maximised LIST) $(outer LIST)"
switchTo FMT

echo "== minimised and back"
id=$(windowOf FMT)
xdotool key --clearmodifiers super+i
settle
expectEqual "minimised" none "$(outer FMT)"
xdotool windowactivate "$id"
waitFor windowOf FMT
settle
expectPlace "back in its place" "normal $normal" "$(maximised FMT) $(outer FMT)"
switchTo LIST
expectPlace "the other one as well" "normal $normal" "$(maximised LIST) $(outer LIST)"

echo "== closing the HFDL browser ends the program and saves the place"
switchTo FMT
IFS=, read -r x y w h <<< "$normal"
endVel
wait "$velProcess"
expectEqual "exit status" 0 $?
expectPlace "saved place" "$((x * 15 / scale)) $((y * 15 / scale)) $((w * 15 / scale)) $((h * 15 / scale)) 0" \
  "$(setting env_Form1_Left) $(setting env_Form1_Top) $(setting env_Form1_Width) $(setting env_Form1_Height) $(setting env_Form1_WinS)" 8
startVel
expectPlace "the next start opens there" "normal $normal" "$(maximised LIST) $(outer LIST)"

echo "== closing the ACARS browser while maximised"
toggleMaximised
endVel
wait "$velProcess"
expectEqual "exit status" 0 $?
expectEqual "saved state" 2 "$(setting env_Form1_WinS)"
startVel
expectPlace "the next start is maximised" "maximised $full" "$(maximised LIST) $(outer LIST)"
switchTo FMT
expectPlace "both are" "maximised $full" "$(maximised FMT) $(outer FMT)"
toggleMaximised
expectPlace "restored to the normal place of the last session" "normal $normal" \
  "$(maximised FMT) $(outer FMT)"
switchTo LIST
expectPlace "in both" "normal $normal" "$(maximised LIST) $(outer LIST)"

echo "== closed while minimised"
id=$(windowOf LIST)
xdotool key --clearmodifiers super+i
settle
closeWindow "$id"
wait "$velProcess"
expectEqual "exit status" 0 $?
startVel
expectPlace "the next start shows it in normal state" "normal $normal" \
  "$(maximised LIST) $(outer LIST)"
endVel

grep -v XDG_RUNTIME_DIR "$work/err" | grep . && fail "the program complained"
[ "$failures" = 0 ] || { echo "$failures failures"; exit 1; }
echo "all in one place"
