// The words of the face, through the translation. Any thread.
#pragma once

#include <QCoreApplication>

namespace corvane {

struct PanelText {
    Q_DECLARE_TR_FUNCTIONS(PanelText)
};

} // namespace corvane
