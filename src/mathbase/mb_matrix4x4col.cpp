#include "mathbase/mb_matrix4x4col.h"
