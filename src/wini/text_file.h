#pragma once

#include "engine/changes/text_file.h"
