// The question which recording is to be imported: the desktop's own dialog where it has one, else the toolkit's, which
// unlike that of the view engine can be read by assistive technology and driven by the keyboard. Owned by the
// application, on the main thread.
#pragma once

#include <QObject>

#include <memory>

class QFileDialog;
class QWindow;

namespace corvane {

class ImportDialog final : public QObject {
    Q_OBJECT

public:
    ImportDialog();
    ~ImportDialog() override;

    // Over this window, which takes no input meanwhile. A dialog that is open already stays.
    void open(QWindow* window);

Q_SIGNALS:
    void chosen(const QString& file);

private:
    std::unique_ptr<QFileDialog> m_dialog; // made when it is first needed; it remembers the directory
};

} // namespace corvane
