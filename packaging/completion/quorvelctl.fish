# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of quorvelctl for fish.

# Whether these are the words of the command so far.
function __quorvelctl_is
    set -l words
    set -l skip 0
    for word in (commandline -opc)[2..]
        if test $skip = 1
            set skip 0
            continue
        end
        switch $word
            case --usb --port --rate --timeout --wait-at-most --touch-time --screen --desktop --for --count --axis \
                    --output --scans --finger --right-button --hold-time --hold-range --wheel --wheel-sensitivity \
                    --min --max --edge-min --edge-max --threshold --edge-threshold --record --from --thresholds \
                    --report --pitch --remember --name --baseline
                set skip 1
            case '-*'
            case '*'
                set -a words $word
        end
    end
    test "$words" = "$argv"
end

complete -c quorvelctl -f
complete -c quorvelctl -s h -l help -d 'Show commands and options'
complete -c quorvelctl -l version -d 'Show the version'
complete -c quorvelctl -l json -d 'Say it as JSON, for programs'
complete -c quorvelctl -l usb -x -a '(path filter -- /dev/usb/hiddev*)' -d 'The frame on USB at this node'
complete -c quorvelctl -l port -r -F -d 'The frame on this serial port'
complete -c quorvelctl -l rate -x -a '50 75 110 134 150 200 300 600 1200 1800 2400 4800 9600 14400 19200 38400 56000 57600 76800 115200 128000 256000' -d 'Bits per second'
complete -c quorvelctl -l timeout -x -d 'Seconds that each answer may take'
complete -c quorvelctl -l wait -d 'Wait until a frame is plugged in'
complete -c quorvelctl -l wait-at-most -x -d 'The same, with an end in seconds'
complete -c quorvelctl -l record -r -F -d 'Record what travels meanwhile'

complete -c quorvelctl -n __quorvelctl_is -a list -d 'Show the frames and serial ports that there are'
complete -c quorvelctl -n __quorvelctl_is -a status -d 'Show how the frame is linked'
complete -c quorvelctl -n __quorvelctl_is -a versions -d 'Show what the frame is'
complete -c quorvelctl -n __quorvelctl_is -a gestures -d 'How touches become mouse actions'
complete -c quorvelctl -n __quorvelctl_is -a rotation -d 'By how much the frame turns'
complete -c quorvelctl -n __quorvelctl_is -a calibrate -d 'Tell the four targets of a screen'
complete -c quorvelctl -n __quorvelctl_is -a reset -d 'Restart the frame'
complete -c quorvelctl -n __quorvelctl_is -a lights -d 'The signal of the lights'
complete -c quorvelctl -n __quorvelctl_is -a adc -d 'Readings that the lights are kept between'
complete -c quorvelctl -n __quorvelctl_is -a watch -d 'Tell what the frame says'
complete -c quorvelctl -n __quorvelctl_is -a record -d 'Record what the frame says'
complete -c quorvelctl -n __quorvelctl_is -a doctor -d 'Look for what keeps a frame from working'
complete -c quorvelctl -n __quorvelctl_is -a bundle -d 'Write one file for who gives support'
complete -c quorvelctl -n __quorvelctl_is -a metrics -d 'Tell monitoring what the frame is like'

complete -c quorvelctl -n '__quorvelctl_is gestures' -a 'show set defaults'
complete -c quorvelctl -n '__quorvelctl_is rotation' -a 'show set'
complete -c quorvelctl -n '__quorvelctl_is lights' -a 'scan check show set off on'
complete -c quorvelctl -n '__quorvelctl_is adc' -a 'show set'
complete -c quorvelctl -n '__quorvelctl_is rotation set' -a '0 90 180 270'
for light in show set off on
    complete -c quorvelctl -n "__quorvelctl_is lights $light" -a 'x y'
end

complete -c quorvelctl -n '__quorvelctl_is gestures set' -l finger -x -a 'on off' -d 'The finger is an input device'
complete -c quorvelctl -n '__quorvelctl_is gestures set' -l right-button -x -a 'on off' -d 'By press and hold'
complete -c quorvelctl -n '__quorvelctl_is gestures set' -l hold-time -x -d 'Milliseconds, 500 to 2500'
complete -c quorvelctl -n '__quorvelctl_is gestures set' -l hold-range -x -a '1 2 3 4 5' -d 'Movement allowed'
complete -c quorvelctl -n '__quorvelctl_is gestures set' -l wheel -x -a 'on off' -d 'The wheel gesture'
complete -c quorvelctl -n '__quorvelctl_is gestures set' -l wheel-sensitivity -x -a '1 2 3' -d '1 is the highest'
complete -c quorvelctl -n '__quorvelctl_is lights scan' -l axis -x -a 'x y' -d 'One axis only'
complete -c quorvelctl -n '__quorvelctl_is lights scan' -l gains -d 'The gain of each light too'
for value in min max edge-min edge-max threshold edge-threshold
    complete -c quorvelctl -n '__quorvelctl_is adc set' -l $value -x -d '0 to 65535'
end
complete -c quorvelctl -n '__quorvelctl_is calibrate' -l screen -x -d 'Such as 1280x800+1280+0'
complete -c quorvelctl -n '__quorvelctl_is calibrate' -l desktop -x -d 'Such as 2560x800'
complete -c quorvelctl -n '__quorvelctl_is calibrate' -l touch-time -x -d 'Seconds that each touch may take'
complete -c quorvelctl -n '__quorvelctl_is calibrate' -l save -d 'Save without a question'
complete -c quorvelctl -n '__quorvelctl_is calibrate' -l discard -d 'Discard without a question'
complete -c quorvelctl -n '__quorvelctl_is watch' -l for -x -d 'End after so many seconds'
complete -c quorvelctl -n '__quorvelctl_is watch' -l count -x -d 'End after so many reports'
complete -c quorvelctl -n '__quorvelctl_is bundle' -F
complete -c quorvelctl -n '__quorvelctl_is bundle' -l list -d 'Show all of it and write nothing'
complete -c quorvelctl -n '__quorvelctl_is watch' -l from -r -F -d 'Tell what a recording holds'
complete -c quorvelctl -n '__quorvelctl_is record' -F
complete -c quorvelctl -n '__quorvelctl_is record' -l for -x -d 'End after so many seconds'
complete -c quorvelctl -n '__quorvelctl_is lights check' -l from -r -F -d 'Judge a file'
complete -c quorvelctl -n '__quorvelctl_is lights check' -l thresholds -r -F -d 'Judge by the thresholds in this file'
complete -c quorvelctl -n '__quorvelctl_is lights check' -l report -r -F -d 'Write a report for a customer'
complete -c quorvelctl -n '__quorvelctl_is lights check' -l scans -x -d 'How often to scan'
complete -c quorvelctl -n '__quorvelctl_is lights check' -l pitch -x -d 'Millimetres between lights'
complete -c quorvelctl -n '__quorvelctl_is lights check' -l remember -x -d 'Keep this as what is good for this unit'
complete -c quorvelctl -n '__quorvelctl_is lights check' -l name -x -d 'What the unit is called'
complete -c quorvelctl -n '__quorvelctl_is lights check' -l baseline -r -F -d 'What to compare with'
complete -c quorvelctl -n '__quorvelctl_is lights check' -l csv -d 'Say it as a table'
complete -c quorvelctl -n '__quorvelctl_is metrics' -l output -r -F -d 'Write it there'
complete -c quorvelctl -n '__quorvelctl_is metrics' -l scans -x -d 'How often to scan the lights'
