// The signals that ask a program to end, brought into the event loop: SIGINT, SIGTERM and SIGHUP. One that the program
// was started with as ignored stays ignored, as `nohup` and background jobs of a shell mean it. At most one instance at
// a time, owned by a composition root, main thread; after it the signals do again what they did before.
#pragma once

#include <QObject>

#include <csignal>
#include <optional>
#include <vector>

class QSocketNotifier;

namespace corvane {

class TerminationSignals final : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

    // The number of the signal that came last, if any.
    [[nodiscard]] std::optional<int> last() const { return m_last; }
    // The signals until now have been obeyed.
    void forget() { m_last.reset(); }

Q_SIGNALS:
    void received(int number);

private:
    struct Previous {
        int number;
        struct sigaction action;
    };

    void readPipe();

    QSocketNotifier* m_notifier = nullptr;
    std::vector<Previous> m_previous;
    std::optional<int> m_last;
};

} // namespace corvane
