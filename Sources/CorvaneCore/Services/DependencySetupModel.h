// Whether the command-line tools of DependencySetup are there, and the installation of those that are missing, for a
// view to watch. The commands run beside the main loop, without a limit of time; the fields are written on the main
// thread, where it lives. When it goes, the command under way is ended.
#pragma once

#include "CorvaneCore/Services/DependencySetup.h"

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <memory>
#include <vector>

namespace corvane {

class DependencySetupModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool brewReady READ brewReady NOTIFY changed)
    Q_PROPERTY(bool pythonReady READ pythonReady NOTIFY changed)
    Q_PROPERTY(bool uvReady READ uvReady NOTIFY changed)
    Q_PROPERTY(bool ffmpegReady READ ffmpegReady NOTIFY changed)
    Q_PROPERTY(bool whisperReady READ whisperReady NOTIFY changed)
    Q_PROPERTY(bool distributionManagerReady READ distributionManagerReady NOTIFY changed)
    Q_PROPERTY(bool hasLooked READ hasLooked NOTIFY changed)
    Q_PROPERTY(bool allReady READ allReady NOTIFY changed)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    explicit DependencySetupModel(std::shared_ptr<ProcessLauncher> processes, QObject* parent = nullptr);
    ~DependencySetupModel() override;

    [[nodiscard]] bool brewReady() const { return m_brewReady; }
    [[nodiscard]] bool pythonReady() const { return m_pythonReady; }
    [[nodiscard]] bool uvReady() const { return m_uvReady; }
    [[nodiscard]] bool ffmpegReady() const { return m_ffmpegReady; }
    [[nodiscard]] bool whisperReady() const { return m_whisperReady; }
    // The distribution's own package manager, which does where there is no Homebrew.
    [[nodiscard]] bool distributionManagerReady() const { return m_distributionManagerReady; }
    // Whether all of these were asked for once. Before that, what is false may only be unknown.
    [[nodiscard]] bool hasLooked() const { return m_hasLooked; }
    // Homebrew is not part of it: it is only the means.
    [[nodiscard]] bool allReady() const { return m_pythonReady && m_uvReady && m_ffmpegReady && m_whisperReady; }
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    // Of the last installation.
    [[nodiscard]] const QString& message() const { return m_message; }

    // Looks again. Returns at once; each result shows as soon as it is known.
    void refresh();
    // Returns at once, and does nothing while an installation is under way.
    void installMissingTools();
    // As if it were new, unless an installation is under way.
    void reset();

Q_SIGNALS:
    void changed();
    // A look is over: every tool was asked for, and what was found shows.
    void looked();

private:
    struct Check;
    [[nodiscard]] static const std::vector<Check>& checks();
    void checkFrom(std::size_t number);
    template<typename T>
    void publish(T& field, const T& value);

    // Shared with the threads that run the commands.
    std::shared_ptr<std::atomic<bool>> m_cancelled = std::make_shared<std::atomic<bool>>(false);
    std::unique_ptr<QThreadPool> m_threads = std::make_unique<QThreadPool>();
    DependencySetup m_setup;
    bool m_brewReady = false;
    bool m_pythonReady = false;
    bool m_uvReady = false;
    bool m_ffmpegReady = false;
    bool m_whisperReady = false;
    bool m_distributionManagerReady = false;
    bool m_hasLooked = false;
    bool m_isRunning = false;
    QString m_message;
};

} // namespace corvane
