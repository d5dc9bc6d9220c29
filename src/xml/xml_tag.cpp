#include "xml/xml_tag.h"
