// Processes that exist only in the test: it sees what was launched and decides how and when each one ends. Thread-safe
// as its original is; the handler runs on a thread of its own, and endProcess() returns when it has returned.
#pragma once

#include "Support/PrintQt.h"

#include "CorvaneCore/Interfaces/ProcessLauncher.h"

#include <QFileInfo>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace corvane {

class FakeProcessLauncher final : public ProcessLauncher {
public:
    [[nodiscard]] std::shared_ptr<LaunchedProcess> launch(const ProcessRequest& request,
                                                          TerminationHandler onTermination) override {
        for (const QString& log : {request.standardOutput, request.standardError}) {
            if (!QFileInfo::exists(log))
                throw LaunchError(QFileInfo(log).fileName() + u": No such file or directory"_s);
        }
        if (!QFileInfo::exists(request.executable))
            throw LaunchError(u"No such file or directory"_s);
        const std::lock_guard guard(m_mutex);
        auto process = std::make_shared<Process>(request, std::move(onTermination),
                                                 firstProcessID + static_cast<std::int64_t>(m_processes.size()));
        m_processes.push_back(process);
        return process;
    }

    // What `onCommand` does and says, on the thread of the caller.
    [[nodiscard]] CommandResult run(const QString& executable, const QStringList& arguments,
                                    const CommandCancellation& cancelled = {},
                                    const ProcessEnvironment& environment = {}) override {
        {
            const std::lock_guard guard(m_mutex);
            m_commands.push_back(QStringList(executable) + arguments);
            m_commandEnvironments.push_back(environment);
        }
        if (!onCommand)
            throw LaunchError(u"No such file or directory"_s);
        return onCommand(arguments, cancelled);
    }
    // Set before the first command.
    std::function<CommandResult(const QStringList& arguments, const CommandCancellation& cancelled)> onCommand;

    // For the test.
    [[nodiscard]] std::vector<ProcessRequest> launched() const {
        const std::lock_guard guard(m_mutex);
        std::vector<ProcessRequest> requests;
        for (const auto& process : m_processes)
            requests.push_back(process->request);
        return requests;
    }
    [[nodiscard]] std::vector<QStringList> commands() const {
        const std::lock_guard guard(m_mutex);
        return m_commands;
    }
    [[nodiscard]] std::vector<ProcessEnvironment> commandEnvironments() const {
        const std::lock_guard guard(m_mutex);
        return m_commandEnvironments;
    }
    // Ends the process launched as the given number, counted from 0; a process ends once.
    void endProcess(std::size_t number, std::int32_t status) {
        std::shared_ptr<Process> process;
        {
            const std::lock_guard guard(m_mutex);
            process = m_processes.at(number);
        }
        if (!process->running.exchange(false))
            return;
        process->status = status;
        if (process->onTermination)
            std::thread(std::exchange(process->onTermination, {}), status).join();
    }

private:
    static constexpr std::int64_t firstProcessID = 1000;

    struct Process final : LaunchedProcess {
        Process(ProcessRequest r, TerminationHandler handler, std::int64_t number)
            : request(std::move(r)), onTermination(std::move(handler)), id(number) {}
        [[nodiscard]] std::int64_t processID() const override { return id; }
        [[nodiscard]] bool isRunning() const override { return running; }
        [[nodiscard]] std::int32_t terminationStatus() const override { return status; }

        ProcessRequest request;
        TerminationHandler onTermination;
        std::int64_t id;
        std::atomic<bool> running = true;
        std::atomic<std::int32_t> status = 0;
    };

    mutable std::mutex m_mutex;
    std::vector<std::shared_ptr<Process>> m_processes;
    std::vector<QStringList> m_commands;
    std::vector<ProcessEnvironment> m_commandEnvironments; // one for each command
};

} // namespace corvane
