#pragma once

#include "text/basic_html_translator.h"

// Writes HTML for a window's HTML element: a font tag with the colour and the size of the settings surrounds
// the body.
class InstallerHTMLTranslator : public BasicHTMLTranslator {
public:
    explicit InstallerHTMLTranslator(const InstallerHTMLSettings& settings = {});

    // Opens the font tag if there is a colour or a size, and reduces the size in the settings to its last
    // digit.
    void beginDocument() override;
    // A size without a colour leaves the font tag open. That is intended: existing texts are shown this way.
    void endDocument() override;

    const InstallerHTMLSettings& getSettings() const { return settings_; }

private:
    InstallerHTMLSettings settings_;
};
