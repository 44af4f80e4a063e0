// One process per user and data directory. The first holds a lock, which its death gives back whatever becomes of its
// files, and listens on a socket beside it, in the user's runtime directory; a later start hands over to it what it was
// asked for. Owned by main; main thread.
#pragma once

#include "CorvaneCore/Services/StartRequest.h"
#include "CorvanePlatform/Linux/UniqueFd.h"

#include <QLocalServer>
#include <QObject>

#include <chrono>

namespace corvane {

class SingleInstance final : public QObject {
    Q_OBJECT

public:
    // Without a runtime directory that is the user's alone, `directory` is empty: then every process is the first.
    SingleInstance(const QString& directory, const QString& dataDirectory);
    [[nodiscard]] static QString runtimeDirectory();

    // Takes the lock. False while another process holds it.
    [[nodiscard]] bool claim();
    // For one that could not claim: gives its request to the one that could. Blocks, so long at most; false if that one
    // did not answer, or is just beginning or ending.
    [[nodiscard]] bool handOver(const StartRequest& request, std::chrono::milliseconds patience) const;

    // For the first one, once it can obey. False if the socket cannot be made; the process may go on all the same.
    bool listen();
    // A start from now on waits until this process has ended, and takes its place.
    void close();

Q_SIGNALS:
    void requested(const corvane::StartRequest& request);

private:
    void takeConnection();
    void takeRequest(QLocalSocket& socket);

    QString m_path; // of both, without their endings; empty without a directory
    UniqueFd m_lock;
    QLocalServer m_server;
};

} // namespace corvane
