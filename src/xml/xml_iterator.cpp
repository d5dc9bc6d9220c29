#include "xml/xml_iterator.h"
