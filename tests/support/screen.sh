# SPDX-License-Identifier: GPL-3.0-or-later

# Eyes and a finger on an X desktop, for scripts. Sourced, not run.
# shellcheck shell=bash

# until_true SECONDS COMMAND...: tries again and again; false when the time is over.
until_true() {
    local end=$((SECONDS + $1 + 1))
    shift
    until "$@"; do
        [ "$SECONDS" -lt "$end" ] || return 1
        sleep 0.05
    done
}

not() { ! "$@"; }

# until_false SECONDS COMMAND...
until_false() { until_true "$1" not "${@:2}"; }

# window_sized TITLE W H: prints the visible window with that title and inner size, give or take
# the pixel by which scaled sizes are rounded.
window_sized() {
    local id WIDTH HEIGHT
    for id in $(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null); do
        WIDTH=
        eval "$(xdotool getwindowgeometry --shell "$id" 2>/dev/null | grep -E '^(WIDTH|HEIGHT)=')"
        if [ -n "$WIDTH" ] && ((WIDTH - $2 <= 1 && $2 - WIDTH <= 1 && HEIGHT - $3 <= 1 && $3 - HEIGHT <= 1)); then
            printf '%s\n' "$id"
            return 0
        fi
    done
    return 1
}

has_window() { window_sized "$@" >/dev/null; }

# is_painted WINDOW: it shows more than one colour.
is_painted() { [ "$(import -window "$1" -format %k info:- 2>/dev/null || echo 0)" -gt 1 ]; }

# press WINDOW X Y: a click at a place in a window.
press() { xdotool mousemove --window "$1" "$2" "$3" click 1; }

# press_until SECONDS WINDOW X Y COMMAND...: false when the command is not true in time. On a busy
# machine one press in some thousands gets lost between the server and the window manager.
press_until() {
    local seconds=$1 place=("${@:2:3}")
    shift 4
    does_press() { press "${place[@]}" && until_true $((seconds / 3)) "$@"; }
    until_true "$seconds" does_press "$@"
}

# touch_screen X Y: a click at a place on the screen.
touch_screen() { xdotool mousemove "$1" "$2" click 1; }

take_picture() { import -window root -depth 8 "$1"; }

# picture_of X Y W H: the pixels of a part of the screen as one word.
picture_of() { import -window root -crop "$3x$4+$1+$2" -depth 8 rgb:- | md5sum | cut -d ' ' -f 1; }

# The four targets of a screen W x H, in order: target_x NUMBER W, target_y NUMBER H.
# shellcheck disable=SC2034 # for who sources this
target_names=(top-left top-right bottom-right bottom-left)
target_x() { case $1 in 0 | 3) echo $(($2 / 8)) ;; *) echo $(($2 / 8 * 7)) ;; esac; }
target_y() { case $1 in 0 | 1) echo $(($2 / 8)) ;; *) echo $(($2 / 8 * 7)) ;; esac; }

# is_white X Y: whether something white passes within two pixels. The ground is blue.
is_white() {
    [ "$(import -window root -crop "5x5+$(($1 - 2))+$(($2 - 2))" -depth 8 -format '%[fx:maxima.r>0.9]' info:-)" = 1 ]
}

# is_blue X Y
is_blue() {
    [ "$(import -window root -crop "1x1+$1+$2" -depth 8 -format '%[fx:maxima.b>0.9&&maxima.r<0.1]' info:-)" = 1 ]
}

# shows_target X Y [SCALE]: a target's cross stands there: both arms are seen between its rings,
# whose radii are 16, 24 and 32 or more, and the ground beside it. The scaling is in per cent.
shows_target() {
    local arm=$((20 * ${3:-100} / 100)) beside=$((46 * ${3:-100} / 100))
    is_white $(($1 + arm)) $(($2 + arm)) && is_white $(($1 - arm)) $(($2 + arm)) &&
        is_white $(($1 + arm)) $(($2 - arm)) && is_blue $(($1 + beside)) "$2"
}
