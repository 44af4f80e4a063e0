#include "CorvaneCore/Services/DependencySetupModel.h"

#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Concurrency/Background.h"

#include <utility>

namespace corvane {

namespace {

// An installation and a look at the tools may go on at once.
constexpr int threadCount = 4;
constexpr int longestFarewellMilliseconds = 500;

} // namespace

struct DependencySetupModel::Check {
    bool DependencySetupModel::*field;
    bool (*question)(const DependencySetup& setup);
};

DependencySetupModel::DependencySetupModel(std::shared_ptr<ProcessLauncher> processes, QObject* parent)
    : QObject(parent), m_setup(std::move(processes), m_cancelled) {
    m_threads->setMaxThreadCount(threadCount);
}

DependencySetupModel::~DependencySetupModel() {
    *m_cancelled = true;
    // An installation with an administrator's rights is not ours to end: its thread is left to itself.
    if (!m_threads->waitForDone(longestFarewellMilliseconds))
        static_cast<void>(m_threads.release());
}

// In the order in which they are asked; a reader sees the rows fill from the top.
const std::vector<DependencySetupModel::Check>& DependencySetupModel::checks() {
    using Model = DependencySetupModel;
    using Setup = DependencySetup;
    static const std::vector<Check> all{
        {&Model::m_brewReady, [](const Setup& setup) { return setup.commandExists(QStringLiteral("brew")); }},
        {&Model::m_pythonReady, [](const Setup& setup) { return setup.commandExists(QStringLiteral("python3")); }},
        {&Model::m_uvReady, [](const Setup& setup) { return setup.commandExists(QStringLiteral("uv")); }},
        {&Model::m_ffmpegReady, [](const Setup& setup) { return setup.commandExists(QStringLiteral("ffmpeg")); }},
        {&Model::m_whisperReady,
         [](const Setup& setup) { return setup.verifyWhisperMLX(DependencySetup::Network::offline); }},
        {&Model::m_distributionManagerReady,
         [](const Setup& setup) { return setup.distributionManager().has_value(); }},
    };
    return all;
}

template<typename T>
void DependencySetupModel::publish(T& field, const T& value) {
    if (field == value)
        return;
    field = value;
    Q_EMIT changed();
}

void DependencySetupModel::refresh() {
    checkFrom(0);
}

void DependencySetupModel::checkFrom(std::size_t number) {
    if (number == checks().size()) {
        publish(m_hasLooked, true);
        Q_EMIT looked();
        return;
    }
    const Check& check = checks()[number];
    inBackground(*m_threads, [setup = m_setup, question = check.question] {
        return question(setup);
    }).then(this, [this, number, &check](bool isReady) {
        publish(this->*check.field, isReady);
        checkFrom(number + 1);
    });
}

void DependencySetupModel::installMissingTools() {
    if (m_isRunning)
        return;
    publish(m_isRunning, true);
    publish(m_message, UserText::tr("Starting dependency setup..."));
    const ReadyTools known{.python = m_pythonReady, .uv = m_uvReady, .ffmpeg = m_ffmpegReady};
    inBackground(*m_threads, [setup = m_setup, known] {
        return setup.installMissingTools(known);
    }).then(this, [this](const QString& message) {
        publish(m_message, message);
        publish(m_isRunning, false);
        refresh();
    });
}

void DependencySetupModel::reset() {
    if (m_isRunning)
        return;
    for (const Check& check : checks())
        this->*check.field = false;
    m_hasLooked = false;
    m_message.clear();
    Q_EMIT changed();
}

} // namespace corvane
