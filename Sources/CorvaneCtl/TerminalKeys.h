// Single keys typed at the terminal, while an instance lives and the program is in the foreground. The terminal's modes
// are put back by the destructor. Owned by the command that waits; main thread.
#pragma once

#include <QObject>

#include <termios.h>

class QSocketNotifier;

namespace corvane::ctl {

class TerminalKeys final : public QObject {
    Q_OBJECT

public:
    TerminalKeys();
    ~TerminalKeys() override;

    // False where standard input is no terminal of ours: then no key ever comes.
    [[nodiscard]] bool isListening() const { return m_notifier; }

Q_SIGNALS:
    void typed(char key);

private:
    void readKeys();

    QSocketNotifier* m_notifier = nullptr;
    termios m_before{};
};

} // namespace corvane::ctl
