// Asks for the file to import: in the desktop's own dialog where there is one, and in the toolkit's where there is
// none. Owned by the application, on the main thread.
#pragma once

#include <QDir>
#include <QFileDialog>
#include <QObject>
#include <QWindow>

#include <memory>

namespace corvane {

class ImportDialog final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~ImportDialog() override;

    // Stands over the window. One that is open already comes to the front.
    void open(QWindow* window);

Q_SIGNALS:
    void chosen(const QString& file);

private:
    void make();

    std::unique_ptr<QFileDialog> m_dialog;  // while it is open
    QString m_directory = QDir::homePath(); // where the last one was left
};

} // namespace corvane
