# SPDX-License-Identifier: GPL-3.0-or-later

# The simulated hand of scripts/screenshots: opens windows of the tool as a user does and keeps
# pictures of them. Sourced, not run.
#
# $pictures is the folder that they go to, $scale the scaling of the display in per cent, $width
# and $height the size of the screen in native pixels, $main the main window.
# shellcheck shell=bash disable=SC2034,SC2154

title='Quorvel \(simulated touch frame\)'
patience=20
settings_key=s # in the context menu
number=0

fail() {
    complain "$*"
    take_picture "$pictures/failed.png"
    exit 1
}

# native N: so many native pixels are N of the window's.
native() { echo $((($1 * scale + 50) / 100)); }

# The windows, by title and size.
describe_windows() {
    main_window=("$title" "$(native 350)" "$(native 272)")
    smoothing=(MalvoTools "$(native 420)" "$(native 246)")
    connection=(Connect "$(native 400)" "$(native 378)")
    usage=(MalvoTools "$(native 332)" "$(native 307)")
    gestures=('Advanced Setting' "$(native 332)" "$(native 447)")
    rotation=(Quorvel "$(native 332)" "$(native 166)")
    versions=(Quorvel "$(native 190)" "$(native 180)")
    question=(MalvoTools "$(native 421)" "$(native 106)")
    diagnostics=(MalvoTools "$(native 131)" "$(native 148)")
    signal_test=(MalvoTools "$(native 1000)" "$(native 650)")
    lights=(Dialog "$width" "$height")
    calibration=(MalvoTools "$width" "$height")
    try_out=('Try out gestures' "$(native 560)" "$(native 460)")
    check=('Calibration check' "$width" "$height")
}

# start ARGUMENT...: the tool on a simulated frame. What it says goes to $log.
start() {
    log=$pictures/frames.log
    : >"$log"
    "$quorvel" --demo "$@" >"$log" 2>"$pictures/errors.log" &
    tool=$!
    until_true $patience has_window "${main_window[@]}" || fail "the main window did not appear"
    main=$(window_sized "${main_window[@]}")
}

# finish: ends the tool as a second start does.
finish() {
    "$quorvel" --demo -close >"$pictures/close.log" 2>&1 ||
        fail "the second start that ends the first one failed"
    until_false $patience kill -0 "$tool" 2>/dev/null || fail "the tool did not end when asked to"
    wait "$tool" || fail "the tool ended with exit code $?"
}

heard() { grep -qF -- "$1" "$log"; }
heard_times() { [ "$(grep -cF -- "$2" "$log")" -ge "$1" ]; }
gone() { ! has_window "$@"; }
looks() { import -window "$1" -depth 8 rgb:- | md5sum; }

# is_steady WINDOW: it shows something and looks the same twice.
is_steady() {
    local before
    before=$(looks "$1")
    sleep 0.2
    is_painted "$1" && [ "$(looks "$1")" = "$before" ]
}

# keep NAME WINDOW: a picture of it, at rest.
keep() {
    until_true $patience is_steady "$2" || fail "the window of '$1' does not come to rest"
    keep_moving "$@"
}

# keep_moving NAME WINDOW [CROP]: a picture of it as it is, or of a part of it.
keep_moving() {
    until_true $patience is_painted "$2" || fail "the window of '$1' stays empty"
    number=$((number + 1))
    import -window "$2" ${3:+-crop "$3"} +repage -depth 8 "$pictures/$number-$1.png" ||
        fail "no picture of '$1'"
    say "$number-$1"
}

# open NAME TITLE W H: waits for a window and sets $window to it.
open() {
    local name=$1
    shift
    until_true $patience has_window "$@" || fail "the window of '$name' did not appear"
    window=$(window_sized "$@")
}

# open_titled TITLE: waits for a window whose size is its own affair and sets $window to it.
titled() { xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | tail -n 1; }
is_titled() { [ -n "$(titled "$1")" ]; }
open_titled() {
    until_true $patience is_titled "$1" || fail "the window '$1' did not appear"
    window=$(titled "$1")
}

# await NAME TITLE W H: the same, and keeps its picture.
await() {
    open "$@"
    keep "$1" "$window"
}

# click WINDOW X Y: at a place in it, in its own pixels.
click() { press "$1" "$(native "$2")" "$(native "$3")"; }

# click_until WINDOW X Y COMMAND...: the same, again while the command is false.
click_until() { press_until $patience "$1" "$(native "$2")" "$(native "$3")" "${@:4}"; }

# click_to_open WINDOW X Y NAME TITLE W H: a click that opens a window, to which $window is set.
click_to_open() {
    click_until "$1" "$2" "$3" has_window "${@:5}" || fail "the window of '$4' did not appear"
    window=$(window_sized "${@:5}")
}

# leave TITLE W H: closes a window as its user does.
leave() {
    xdotool windowactivate --sync "$(window_sized "$@")" key alt+F4
    until_true $patience gone "$@" || fail "the window '$1' did not close"
}

# The open menu: besides the main window and the tray icon nothing else of the tool is there then.
menu() {
    local id
    for id in $(xdotool search --onlyvisible --class '^quorvel$' 2>/dev/null); do
        if [ "$id" != "$main" ] &&
            [ "$(xdotool getwindowgeometry --shell "$id" | sed -n 's/^WIDTH=//p')" -gt 60 ]; then
            printf '%s\n' "$id"
        fi
    done
}
has_menu() { [ -n "$(menu)" ]; }
open_menu() {
    xdotool windowactivate --sync "$main" mousemove --window "$main" "$(native 60)" "$(native 260)" click 3
    until_true $patience has_menu || fail "the context menu did not open"
}

# The way to the diagnostics; $menu_window is the menu that leads to their two screens.
open_usage() {
    open_menu
    xdotool key "$settings_key"
    open usage "${usage[@]}"
}
open_gestures() {
    click_to_open "$(window_sized "${usage[@]}")" 49 283 gestures "${gestures[@]}"
}
open_diagnostics() {
    asks_for_diagnostics() {
        click "$(window_sized "${gestures[@]}")" 70 268 && xdotool key c &&
            until_true $((patience / 3)) has_window "${diagnostics[@]}"
    }
    until_true $patience asks_for_diagnostics
    open diagnostics "${diagnostics[@]}"
    menu_window=$window
}

# touch_crosses COUNT ASIDE: the next crosses of the page that checks a calibration, so many native
# pixels aside and half as many below.
crosses_touched=0
touch_crosses() {
    local inset=$(((width < height ? width : height) / 16)) least=$((24 * scale / 100)) i x y
    inset=$((inset > least ? inset : least))
    local right=$((width - 1 - inset)) bottom=$((height - 1 - inset))
    local places=("$inset $inset" "$right $inset" "$right $bottom" "$inset $bottom" "$((width / 2)) $inset"
        "$right $((height / 2))" "$((width / 2)) $bottom" "$inset $((height / 2))" "$((width / 2)) $((height / 2))")
    for ((i = 0; i < $1; i++)); do
        read -r x y <<<"${places[crosses_touched]}"
        touch_screen $((x + $2)) $((y + $2 / 2))
        crosses_touched=$((crosses_touched + 1))
        # A touch that follows another one at once does not count.
        sleep 0.35
    done
}

# keep_tip NAME WINDOW X Y CROP: rests there until a tool tip is seen; a picture of that part of
# the screen.
has_tip() {
    local id
    for id in $(xdotool search --onlyvisible --class '^quorvel$' 2>/dev/null); do
        xprop -id "$id" _NET_WM_WINDOW_TYPE 2>/dev/null | grep -q TOOLTIP && return 0
    done
    return 1
}
keep_tip() {
    xdotool mousemove --window "$2" "$(native "$3")" "$(native "$4")"
    sleep 0.1
    xdotool mousemove --window "$2" "$(native $(($3 + 1)))" "$(native "$4")"
    until_true $patience has_tip || fail "no tool tip in '$1'"
    keep_moving "$1" root "$5"
}
# around WINDOW: the part of the screen around it, as a crop.
around() {
    local X Y WIDTH HEIGHT room=$((100 * scale / 100))
    eval "$(xdotool getwindowgeometry --shell "$1" | grep -E '^(X|Y|WIDTH|HEIGHT)=')"
    X=$((X > room ? X - room : 0))
    Y=$((Y > room ? Y - room : 0))
    echo "$((WIDTH + 2 * room))x$((HEIGHT + 2 * room))+$X+$Y"
}
