p# The newest release of the older generation: no firmware query, and the reset is 0x10.
release 0x2FFF
product 0x0003
lights-x 64
lights-y 40
level 190
curve 40
noise 3
seed 3
weak x 0 90
weak x 63 95
