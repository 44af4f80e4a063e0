#include "CorvanePlatform/Linux/Frontmost/DesktopFrontmostApplicationReader.h"

#include "CorvanePlatform/Linux/UniqueFd.h"

#include <QObject>
#include <QPromise>
#include <QTimer>

#include <sys/eventfd.h>

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds answerTime{600};
constexpr std::chrono::milliseconds lookTime{550}; // leaves room for the way back to the main loop

} // namespace

// The main thread's side numbers the questions; the other side answers all that were asked when its look began.
class DesktopFrontmostApplicationReader::Looker {
public:
    using Answer = std::optional<FrontmostApplication>;

    Looker(DesktopSession session, FrontmostStatus& status) : m_status(status), m_look(std::move(session)) {}
    ~Looker();
    Looker(const Looker&) = delete;
    Looker& operator=(const Looker&) = delete;

    [[nodiscard]] QFuture<Answer> ask();

private:
    struct Question {
        std::uint64_t number = 0;
        QPromise<Answer> promise;
    };
    void run();
    [[nodiscard]] Answer look();
    void finishUpTo(std::uint64_t number, const Answer& answer);

    // Main thread.
    FrontmostStatus& m_status;
    std::vector<Question> m_questions;
    QObject m_context;

    // Between both.
    std::mutex m_mutex;
    std::condition_variable m_asked;
    std::uint64_t m_lastNumber = 0;
    bool m_isEnding = false;
    UniqueFd m_cancel{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};

    // Looking thread.
    DesktopLook m_look;
    std::thread m_thread;
};

QFuture<DesktopFrontmostApplicationReader::Looker::Answer> DesktopFrontmostApplicationReader::Looker::ask() {
    Question& question = m_questions.emplace_back();
    question.promise.start();
    {
        const std::scoped_lock lock(m_mutex);
        question.number = ++m_lastNumber;
    }
    m_asked.notify_one();
    if (!m_thread.joinable())
        m_thread = std::thread([this] { run(); });
    QTimer::singleShot(answerTime, Qt::PreciseTimer, &m_context,
                       [this, number = question.number] { finishUpTo(number, std::nullopt); });
    return question.promise.future();
}

DesktopFrontmostApplicationReader::Looker::~Looker() {
    {
        const std::scoped_lock lock(m_mutex);
        m_isEnding = true;
    }
    ::eventfd_write(m_cancel.get(), 1);
    m_asked.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void DesktopFrontmostApplicationReader::Looker::run() {
    for (std::uint64_t answered = 0;;) {
        {
            std::unique_lock lock(m_mutex);
            m_asked.wait(lock, [&] { return m_isEnding || m_lastNumber > answered; });
            if (m_isEnding)
                return;
            answered = m_lastNumber;
        }
        const Answer answer = look();
        QMetaObject::invokeMethod(
            &m_context,
            [this, answered, answer, status = m_look.status()] {
                m_status = status;
                finishUpTo(answered, answer);
            },
            Qt::QueuedConnection);
    }
}

DesktopFrontmostApplicationReader::Looker::Answer DesktopFrontmostApplicationReader::Looker::look() {
    try {
        return m_look.look(Deadline(Deadline::Clock::now() + lookTime, m_cancel.get()));
    } catch (const std::exception& error) {
        qWarning("What is in front could not be read: %s", error.what());
        return std::nullopt;
    }
}

// A question that was answered is gone, so that the timer or a late answer finds nothing to do.
void DesktopFrontmostApplicationReader::Looker::finishUpTo(std::uint64_t number, const Answer& answer) {
    std::vector<Question> finished;
    const auto firstLater =
        std::ranges::find_if(m_questions, [number](const Question& question) { return question.number > number; });
    std::move(m_questions.begin(), firstLater, std::back_inserter(finished));
    m_questions.erase(m_questions.begin(), firstLater);
    // Whoever is told now may ask again, or end the reader.
    for (Question& question : finished) {
        question.promise.addResult(answer);
        question.promise.finish();
    }
}

DesktopFrontmostApplicationReader::DesktopFrontmostApplicationReader(DesktopSession session)
    : m_looker(std::make_unique<Looker>(std::move(session), m_status)) {}

DesktopFrontmostApplicationReader::~DesktopFrontmostApplicationReader() = default;

QFuture<std::optional<FrontmostApplication>> DesktopFrontmostApplicationReader::read() {
    return m_looker->ask();
}

} // namespace corvane
