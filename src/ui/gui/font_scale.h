#pragma once

#include "ui/gui/toolkit/toolkit.h"

// How much larger than in a description everything is on this screen: layouts are made for a text size, in
// which a sample text has a certain width. At least 1, so that small text leaves a layout as it is.
double fontScaleOf(int sampleWidth);

// The sample text on this screen.
Extent measureSampleText(Toolkit& toolkit);
