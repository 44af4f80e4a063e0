// A control of a panel as the view is to draw it. Texts that are empty are not drawn. Plain value.
#pragma once

#include <QString>

namespace corvane {

struct PanelButton {
    QString text;
    QString iconName; // of a symbol; the view has a picture for each
    QString helpText;
    QString accessibilityLabel;
    bool isEnabled = true;

    friend bool operator==(const PanelButton&, const PanelButton&) = default;
};

} // namespace corvane
