p# A frame that has been used for years: some lights are weak, dead or flicker, one end is dirty.
release 0x3010
product 0x0001
lights-x 96
lights-y 54
level 215
curve 20
noise 2
seed 5

dead x 17
weak x 40 120
weak x 41 95
weak x 42 130
noisy x 70 35
weak y 30 60
dead y 12
noisy y 44 30

revision 0x003812
checksum 0x5A17C0DE
date 0x1605
number 0x01234
family 0x21
rotation 0
default-rotation 0
