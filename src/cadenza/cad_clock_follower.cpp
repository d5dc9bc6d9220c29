#include "cadenza/cad_clock_follower.h"
