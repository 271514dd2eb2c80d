#pragma once

#include "support/debug_log.h"

class ColourTheme;
class DialogModel;
class Expressions;
class PXML;

// Reads the element ColourTheme, if there is one, before the dialogs that refer to its groups.
void readColourTheme(const PXML& description, Expressions& expressions, DebugLog debugLog,
                     ColourTheme& outTheme);

// Fills the colours that dialogs, elements, fields and buttons leave open from the theme, after the dialogs
// are read. Without a theme nothing is filled; the session counts as themed when a dialog has a colour.
void applyColourTheme(ColourTheme& theme, DialogModel& dialogs);
