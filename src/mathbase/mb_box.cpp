#include "mathbase/mb_box.h"
