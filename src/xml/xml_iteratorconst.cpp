#include "xml/xml_iteratorconst.h"
