#pragma once

// Opens a frame with each kind of control that the toolkit is built for and closes it when it has been drawn
// and used. Returns 0 if everything worked; otherwise it says on standard error what didn't. No exception
// leaves it.
extern "C" int showWindow();
