#include "CorvaneApp/Shell/ImportDialog.h"

#include "CorvaneApp/Views/PanelText.h"

namespace corvane {

namespace {

// Of sound and of films. Not every dialog takes one letter case for the other.
QString patterns() {
    QStringList list;
    for (const char* name :
         {"wav", "mp3", "m4a", "aac", "flac", "ogg", "oga", "opus", "wma", "aif", "aiff", "caf",  "mka", "amr",
          "mp4", "m4v", "mov", "mkv", "webm", "avi", "mpg", "mpeg", "ogv", "3gp", "wmv",  "weba", "mp2", "ac3"}) {
        const QString extension = QString::fromLatin1(name);
        list << QStringLiteral("*.") + extension << QStringLiteral("*.") + extension.toUpper();
    }
    return list.join(QLatin1Char(' '));
}

} // namespace

ImportDialog::~ImportDialog() = default;

void ImportDialog::open(QWindow* window) {
    if (!m_dialog)
        make();
    m_dialog->winId(); // makes the window that the other one is told of
    if (QWindow* own = m_dialog->windowHandle())
        own->setTransientParent(window);
    m_dialog->open();
    m_dialog->raise();
    m_dialog->activateWindow();
}

void ImportDialog::make() {
    m_dialog = std::make_unique<QFileDialog>(nullptr, PanelText::tr("Import Audio"), m_directory);
    m_dialog->setFileMode(QFileDialog::ExistingFile);
    m_dialog->setOption(QFileDialog::HideNameFilterDetails);
    m_dialog->setNameFilters({PanelText::tr("Audio and video (%1)").arg(patterns()),
                              PanelText::tr("All files (%1)").arg(QStringLiteral("*"))});
    connect(m_dialog.get(), &QFileDialog::fileSelected, this, &ImportDialog::chosen);
    // Not kept: what it offered while a name was typed would stay on the screen.
    connect(m_dialog.get(), &QFileDialog::finished, this, [this] {
        m_directory = m_dialog->directory().path();
        m_dialog.release()->deleteLater();
    });
}

} // namespace corvane
