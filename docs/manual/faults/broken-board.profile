# The plug of one board has come loose.
lights-x 96
lights-y 54
level 215
curve 20
noise 2
seed 4
dead x 16
dead x 17
dead x 18
dead x 19
dead x 20
dead x 21
dead x 22
dead x 23
dead x 24
dead x 25
dead x 26
dead x 27
dead x 28
dead x 29
dead x 30
dead x 31
