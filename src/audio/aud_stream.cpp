#include "audio/aud_stream.h"
