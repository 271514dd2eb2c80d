#pragma once

#include "text/basic_html_translator.h"

// Writes HTML for a window's HTML element: the body stands in a font tag with the colour and the size of the
// settings.
class InstallerHTMLTranslator : public BasicHTMLTranslator {
public:
    explicit InstallerHTMLTranslator(const InstallerHTMLSettings& settings = {});

    // The font tag opens with a colour or a size; the size in the settings is then its last digit.
    void beginDocument() override;
    // The font tag is closed only when there is a colour: readers of this HTML do without.
    void endDocument() override;

    const InstallerHTMLSettings& getSettings() const { return settings_; }

private:
    InstallerHTMLSettings settings_;
};
