#include "audio/aud_device.h"
