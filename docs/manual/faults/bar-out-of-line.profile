# The bar at the right has been pushed to one side at its lower end.
lights-x 96
lights-y 54
level 215
curve 20
noise 2
seed 3
weak y 15 208
weak y 16 206
weak y 17 203
weak y 18 201
weak y 19 198
weak y 20 196
weak y 21 193
weak y 22 190
weak y 23 187
weak y 24 185
weak y 25 182
weak y 26 179
weak y 27 176
weak y 28 172
weak y 29 169
weak y 30 166
weak y 31 163
weak y 32 160
weak y 33 157
weak y 34 153
weak y 35 150
weak y 36 147
weak y 37 143
weak y 38 140
weak y 39 136
weak y 40 133
weak y 41 129
weak y 42 126
weak y 43 122
weak y 44 119
weak y 45 116
weak y 46 112
weak y 47 109
weak y 48 105
weak y 49 102
weak y 50 98
weak y 51 95
weak y 52 91
weak y 53 88
