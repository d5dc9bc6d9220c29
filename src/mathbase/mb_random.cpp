#include "mathbase/mb_random.h"
