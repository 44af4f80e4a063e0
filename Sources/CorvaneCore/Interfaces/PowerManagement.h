// Keeps the machine awake while something must not be interrupted, and tells when it is about to be switched off. Owned
// by the application; main thread, and nothing here waits for the system.
#pragma once

#include <QObject>

namespace corvane {

class PowerManagement : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // The machine neither falls asleep by itself nor, as far as the system grants it, goes down before release() or a
    // few seconds have passed. `reason` is for the user to read. Asked while it holds already, it does nothing.
    virtual void keepAwake(const QString& reason) = 0;
    virtual void release() = 0;

Q_SIGNALS:
    // While the machine is kept awake. The system waits for release(), but some seconds at most.
    void shuttingDown();
};

} // namespace corvane
