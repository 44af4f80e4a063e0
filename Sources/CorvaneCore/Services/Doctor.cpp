#include "CorvaneCore/Services/Doctor.h"

#include "CorvaneCore/Concurrency/Background.h"

#include <QPromise>
#include <QTimer>

#include <atomic>
#include <functional>
#include <system_error>
#include <thread>
#include <utility>

namespace corvane {

namespace {

// Collects the answers; a child of the one who asked, gone when they are given out.
class Examination final : public QObject {
public:
    Examination(QObject& context, std::chrono::milliseconds limit) : QObject(&context), m_limit(limit) {
        m_done.start();
        m_deadline.setSingleShot(true);
        connect(&m_deadline, &QTimer::timeout, this, &Examination::finish);
    }

    [[nodiscard]] std::chrono::milliseconds limit() const { return m_limit; }

    // `silence` is what is told of facts that do not come.
    template<typename Facts>
    void await(QFuture<Facts> facts, const Facts& silence) {
        const std::size_t place = m_checks.size();
        m_checks.push_back(checksOf(silence));
        ++m_outstanding;
        facts.then(this, [this, place](const Facts& found) {
            m_checks[place] = checksOf(found);
            settle();
        });
    }

    [[nodiscard]] QFuture<DoctorChecks> conclude(const DoctorCheck& last) {
        m_checks.push_back({last});
        m_deadline.start(m_limit);
        auto future = m_done.future();
        settle();
        return future;
    }

private:
    void settle() {
        if (--m_outstanding == 0)
            finish();
    }

    void finish() {
        if (std::exchange(m_isFinished, true))
            return;
        deleteLater();
        DoctorChecks all;
        for (const DoctorChecks& checks : m_checks)
            all.insert(all.end(), checks.begin(), checks.end());
        // Last, and without this object: what continues here may end the one who asked.
        QPromise<DoctorChecks> done = std::move(m_done);
        done.addResult(std::move(all));
        done.finish();
    }

    std::chrono::milliseconds m_limit;
    QTimer m_deadline;
    QPromise<DoctorChecks> m_done;
    std::vector<DoctorChecks> m_checks;
    int m_outstanding = 1; // the conclusion
    bool m_isFinished = false;
};

// Asks on a thread of its own. One that hangs is left to itself, which is safe as it owns everything it works on. The
// future is the main loop's.
template<typename Question>
auto onThread(Question question) -> QFuture<decltype(question())> {
    using Facts = decltype(question());
    const auto promise = std::make_shared<QPromise<Facts>>();
    promise->start();
    auto future = finishedByMainLoop(promise->future());
    try {
        std::thread([promise, question = std::move(question)] {
            promise->addResult(question());
            promise->finish();
        }).detach();
    } catch (const std::system_error& error) {
        qWarning("no thread could be started: %s", error.what());
    }
    return future;
}

WorkerFacts workerFacts(ProcessLauncher& processes, const QString& path,
                        const std::shared_ptr<std::atomic<bool>>& tooLate) {
    WorkerFacts facts{.path = path, .start = WorkerFacts::Start::fails, .output = {}};
    try {
        const CommandResult result = processes.run(path, {QStringLiteral("--version")}, tooLate);
        facts.output = result.output.section(QLatin1Char('\n'), 0, 0).trimmed();
        if (result.status == 0)
            facts.start = WorkerFacts::Start::works;
        else if (*tooLate)
            facts.start = WorkerFacts::Start::noAnswer;
        else if (facts.output.isEmpty())
            facts.output = QStringLiteral("it ended with status %1").arg(result.status);
    } catch (const LaunchError& error) {
        facts.output = error.text();
    }
    return facts;
}

SpeechModelFacts speechModelFacts(const FileTree& files, SpeechModelFacts facts) {
    facts.files = Presence::present;
    const std::vector<QString> parts{QStringLiteral("en-us/mdef"), QStringLiteral("en-us.lm.bin"),
                                     QStringLiteral("cmudict-en-us.dict")};
    for (const FileStamp& stamp : files.stamps(facts.directory, parts)) {
        if (stamp.kind != FileStamp::Kind::regularFile || stamp.size == 0)
            facts.files = Presence::absent;
    }
    return facts;
}

SoundFacts soundFacts(AudioInputs& inputs) {
    try {
        return {inputs.devices(), {}};
    } catch (const AudioInputError& error) {
        return {std::nullopt, error.text()};
    }
}

ProgramFacts programFacts(MachineProbe& machine, const QString& name) {
    const auto path = machine.program(name);
    return {name, path ? Presence::present : Presence::absent, path.value_or(QString())};
}

void askWorker(Examination& examination, const DoctorOrders& orders) {
    const WorkerFacts silence{.path = orders.worker, .start = {}, .output = {}};
    if (!orders.worker) {
        examination.await(QtFuture::makeReadyFuture(silence), silence);
        return;
    }
    // A worker that does not come to an end is ended, early enough to be gone when the rest is told.
    const auto tooLate = std::make_shared<std::atomic<bool>>(false);
    const auto callOff = [tooLate] { *tooLate = true; };
    QTimer::singleShot(examination.limit() * 2 / 3, &examination, callOff);
    QObject::connect(&examination, &QObject::destroyed, callOff);
    examination.await(onThread([processes = orders.processes, path = *orders.worker, tooLate] {
                          return workerFacts(*processes, path, tooLate);
                      }),
                      silence);
}

void askOllama(Examination& examination, const DoctorOrders& orders) {
    auto service = detectOllamaService(*orders.http, examination, orders.ollamaAddress);
    auto status = onThread([files = orders.files, locations = orders.ollamaLocations] {
                      return isOllamaInstalled(*files, locations);
                  })
                      .then(&examination,
                            [&examination, service](bool isInstalled) mutable {
                                return service.then(&examination, [isInstalled](const OllamaService& found) {
                                    return ollamaStatus(isInstalled, found);
                                });
                            })
                      .unwrap();
    examination.await(status, OllamaStatus());
}

} // namespace

QFuture<DoctorChecks> examineMachine(const DoctorOrders& orders, QObject& context, std::chrono::milliseconds limit) {
    auto* examination = new Examination(context, limit); // owned by the context, and deletes itself
    const auto machine = orders.machine;
    askWorker(*examination, orders);
    const SpeechModelFacts model{orders.speechModelDirectory, Presence::noAnswer, orders.isWorkerOfOurs};
    examination->await(onThread([files = orders.files, model] { return speechModelFacts(*files, model); }), model);
    examination->await(onThread([inputs = orders.audioInputs] { return soundFacts(*inputs); }), SoundFacts());
    examination->await(onThread([machine, directory = orders.dataDirectory] { return machine->storage(directory); }),
                       StorageFacts{.directory = orders.dataDirectory, .error = {}});
    examination->await(onThread([machine] { return machine->keyring(); }), KeyringFacts());
    examination->await(onThread([machine] { return machine->sessionBus(); }), SessionBusFacts());
    examination->await(onThread([machine] { return machine->windows(); }), WindowFacts());
    askOllama(*examination, orders);
    for (const QString& name : orders.programs)
        examination->await(onThread([machine, name] { return programFacts(*machine, name); }),
                           ProgramFacts{name, Presence::noAnswer, {}});
    return examination->conclude(updateCheckOf(orders.manifestURL));
}

} // namespace corvane
