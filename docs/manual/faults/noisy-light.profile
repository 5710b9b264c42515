# A lamp shines into one receiver.
lights-x 96
lights-y 54
level 215
curve 20
noise 2
seed 6
noisy y 21 40
