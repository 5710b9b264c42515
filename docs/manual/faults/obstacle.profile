# A leaflet rack hangs before the screen.
lights-x 96
lights-y 54
level 215
curve 20
noise 2
seed 2
weak x 60 75
weak x 61 75
weak x 62 75
weak x 63 75
weak x 64 74
weak x 65 74
weak x 66 74
weak x 67 74
weak x 68 74
weak x 69 74
weak x 70 74
weak x 71 74
weak x 72 73
weak x 73 73
weak y 30 107
weak y 31 107
weak y 32 107
weak y 33 107
weak y 34 107
weak y 35 106
weak y 36 106
weak y 37 106
weak y 38 106
