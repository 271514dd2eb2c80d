#pragma once

#include "engine/changes/same_path.h"
