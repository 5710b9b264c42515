p# The oldest release that still answers the firmware query and takes the settings-class reset.
release 0x3000
product 0x0002
lights-x 110
lights-y 55
level 205
curve 30
noise 4
seed 2
weak x 55 120
dead y 54
revision 0x00FFFF
checksum 0xFFFFFFFF
date 0xF00F
number 0xFFFFF
family 0xFF
rotation 1
default-rotation 3
# A scan that is asked for while one of its axis still waits to be read: the frame says the one
# that waits to its end, then scans again, once however often it was asked.
early-request finishes
