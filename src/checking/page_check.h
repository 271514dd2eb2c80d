#pragma once

class CheckContext;

// Pages of an installation and an uninstallation: steps that are missing, pages that are never seen or can't
// be left, frames and their tasks, names that nothing answers.
void checkPages(const CheckContext& context);
