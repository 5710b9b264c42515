# A smear of grease on the lower edge.
lights-x 96
lights-y 54
level 215
curve 20
noise 2
seed 1
weak x 31 209
weak x 32 205
weak x 33 200
weak x 34 191
weak x 35 178
weak x 36 163
weak x 37 147
weak x 38 132
weak x 39 122
weak x 40 118
weak x 41 122
weak x 42 132
weak x 43 147
weak x 44 164
weak x 45 179
weak x 46 192
weak x 47 201
weak x 48 208
weak x 49 211
