#include "struct.h"

HID_VER hidver;
