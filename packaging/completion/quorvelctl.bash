# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of quorvelctl for bash.
# shellcheck shell=bash

_quorvelctl() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    local words=() i choices
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            --usb | --port | --rate | --timeout | --wait-at-most | --touch-time | --screen | --desktop | \
                --for | --count | --axis | --output | --scans | --finger | --right-button | --hold-time | \
                --hold-range | --wheel | --wheel-sensitivity | --min | --max | --edge-min | --edge-max | \
                --threshold | --edge-threshold | --record | --from | --thresholds | --report | --pitch | --remember | \
                --name | --baseline)
                ((i++))
                ;;
            -*) ;;
            *) words+=("${COMP_WORDS[i]}") ;;
        esac
    done

    case $prev in
        --usb) mapfile -t COMPREPLY < <(compgen -G "${cur:-/dev/usb/hiddev}*"); return ;;
        --port) mapfile -t COMPREPLY < <(compgen -G "${cur:-/dev/tty[A-Z]}*"); return ;;
        --output | --record | --from | --thresholds | --report | --baseline) mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
        --rate)
            choices='50 75 110 134 150 200 300 600 1200 1800 2400 4800 9600 14400 19200 38400 56000 57600 76800
                     115200 128000 256000'
            ;;
        --finger | --right-button | --wheel) choices='on off' ;;
        --wheel-sensitivity) choices='1 2 3' ;;
        --hold-range) choices='1 2 3 4 5' ;;
        --axis) choices='x y' ;;
        --timeout | --wait-at-most | --touch-time | --screen | --desktop | --for | --count | --scans | \
            --hold-time | --min | --max | --edge-min | --edge-max | --threshold | --edge-threshold | --pitch | \
            --remember | --name)
            return
            ;;
        *)
            case "${words[*]}" in
                '') choices='list status versions gestures rotation calibrate reset lights adc watch record doctor bundle metrics' ;;
                gestures) choices='show set defaults' ;;
                rotation) choices='show set' ;;
                lights) choices='scan check show set off on' ;;
                adc) choices='show set' ;;
                'rotation set') choices='0 90 180 270' ;;
                'lights show' | 'lights set' | 'lights off' | 'lights on') choices='x y' ;;
            esac
            if [[ ${words[*]} == @(bundle|record) && $cur != -* ]]; then
                mapfile -t COMPREPLY < <(compgen -f -- "$cur")
                return
            fi
            if [[ $cur == -* ]]; then
                choices='--help --version --json --usb --port --rate --timeout --wait --wait-at-most --record'
                case "${words[*]}" in
                    'gestures set')
                        choices+=' --finger --right-button --hold-time --hold-range --wheel --wheel-sensitivity'
                        ;;
                    'lights scan') choices+=' --axis --gains' ;;
                    'adc set') choices+=' --min --max --edge-min --edge-max --threshold --edge-threshold' ;;
                    calibrate) choices+=' --screen --desktop --touch-time --save --discard' ;;
                    'lights check')
                        choices+=' --from --thresholds --report --scans --pitch --remember --name --baseline --csv'
                        ;;
                    watch) choices+=' --for --count --from' ;;
                    record) choices+=' --for' ;;
                    bundle) choices+=' --list' ;;
                    metrics) choices+=' --output --scans' ;;
                esac
            fi
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "${choices-}" -- "$cur")
}
complete -F _quorvelctl quorvelctl
