# One sender is at the end of its life, another one has died.
lights-x 96
lights-y 54
level 215
curve 20
noise 2
seed 5
weak x 33 110
dead x 71
