#include "xml/xml_node.h"
