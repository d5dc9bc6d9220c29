#include "audio/aud_source.h"
