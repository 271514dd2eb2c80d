#include "precompiled/test_headers.h"
