#include "standard_headers.h"
