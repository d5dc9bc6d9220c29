#include "mathbase/mb_quat.h"
