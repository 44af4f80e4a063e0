#include "CorvaneApp/Shell/ImportDialog.h"

#include "CorvaneApp/Views/PanelText.h"

#include <QDir>
#include <QFileDialog>
#include <QWindow>

namespace corvane {

ImportDialog::ImportDialog() = default;

ImportDialog::~ImportDialog() = default;

void ImportDialog::open(QWindow* window) {
    if (!m_dialog) {
        m_dialog = std::make_unique<QFileDialog>(nullptr, PanelText::tr("Import Audio"), QDir::homePath());
        m_dialog->setFileMode(QFileDialog::ExistingFile);
        connect(m_dialog.get(), &QFileDialog::fileSelected, this, &ImportDialog::chosen);
    }
    if (m_dialog->isVisible())
        return;
    m_dialog->winId(); // makes the window that is to stay above the other
    m_dialog->windowHandle()->setTransientParent(window);
    m_dialog->open();
}

} // namespace corvane
