#include "xml/xml_parser.h"
