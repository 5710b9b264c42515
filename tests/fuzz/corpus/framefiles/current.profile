p# A frame of the current generation.
release 0x3010
product 0x0001
lights-x 96
lights-y 54

# One-byte scan levels: the middle of an axis, how much lower its ends are, and how far a
# reading is off at most.
level 215
curve 20
noise 2
seed 1

# dead x 17
# weak y 40 60
# noisy x 30 40

# What the firmware tells of itself.
revision 0x003812
checksum 0x5A17C0DE
date 0x1605
number 0x01234
family 0x21

# Quarter turns.
rotation 0
default-rotation 0

# When a scan is asked for while one of its axis still waits to be read, the frame
#   drops     what waits and scans anew, or
#   finishes  what waits, then scans anew, once however often it was asked meanwhile.
early-request drops
