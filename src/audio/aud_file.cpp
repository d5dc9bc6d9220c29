#include "audio/aud_file.h"
