p# The largest frame that exists, with lights out of order at its very ends.
release 0x3010
product 0x0004
lights-x 500
lights-y 350
level 220
curve 25
noise 1
seed 4
dead x 499
weak x 0 150
dead y 349
weak y 0 140
revision 0x004711
checksum 0x00C0FFEE
date 0x1711
number 0x04242
family 0x22
