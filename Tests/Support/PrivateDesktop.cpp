#include "Support/PrivateDesktop.h"

#include "Support/PrintQt.h"
#include "Support/Waiting.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <QFile>
#include <QStandardPaths>

#include <signal.h>

#include <algorithm>
#include <stdexcept>

namespace corvane {

namespace {

const QString accessibilityLauncher = u"/usr/libexec/at-spi-bus-launcher"_s;

QString found(const char* program) {
    return QStandardPaths::findExecutable(QString::fromUtf8(program));
}

} // namespace

bool PrivateDesktop::isInstalled() {
    const auto programs = {"Xvfb", "openbox", "chromium", "dbus-daemon", "dbus-send"};
    return QFile::exists(accessibilityLauncher) &&
           std::ranges::none_of(programs, [](const char* program) { return found(program).isEmpty(); });
}

PrivateDesktop::PrivateDesktop(Accessibility accessibility, WindowManager manager) {
    m_environment = {{u"HOME"_s, m_directory.path()},
                     {u"XDG_RUNTIME_DIR"_s, m_directory.path()},
                     {u"XDG_CONFIG_HOME"_s, m_directory.path()},
                     {u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus.address()},
                     {u"GSETTINGS_BACKEND"_s, u"memory"_s}, // where the bus keeps whether it is enabled
                     {u"LC_ALL"_s, u"C.UTF-8"_s}};
    const QString display = m_directory.filePath(u"display"_s);
    m_xServer = launch(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s, u"-noreset"_s}, display);
    if (!waitFor([&] { return readTextFile(display).value_or(QString()).contains(u'\n'); }))
        throw std::runtime_error("the X server does not start");
    m_environment[u"DISPLAY"_s] = u':' + readTextFile(display)->trimmed();
    if (manager == WindowManager::present)
        startWindowManager();
    if (accessibility != Accessibility::absent)
        startAccessibility(accessibility);
}

PrivateDesktop::~PrivateDesktop() {
    // The last ones first: a program that loses its server complains.
    for (auto process = m_processes.rbegin(); process != m_processes.rend(); ++process)
        end(*process);
}

DesktopSession PrivateDesktop::session() const {
    return {.x11Display = m_environment.at(u"DISPLAY"_s).toUtf8(),
            .waylandDisplay = {},
            .swaySocket = {},
            .sessionBusAddress = m_bus.address().toUtf8()};
}

// A window that comes before the manager is ready is not given the focus.
void PrivateDesktop::startWindowManager() {
    const QString ready = m_directory.filePath(u"ready"_s);
    (void)launch(u"openbox"_s, {u"--startup"_s, u"touch "_s + ready});
    if (!waitFor([&ready] { return QFile::exists(ready); }))
        throw std::runtime_error("the window manager does not start");
}

void PrivateDesktop::startAccessibility(Accessibility accessibility) {
    m_accessibility = launch(accessibilityLauncher, {u"--launch-immediately"_s});
    if (!waitFor([this] { return m_bus.hasOwner("org.a11y.Bus") && accessibilityBus() != 0; }))
        throw std::runtime_error("the accessibility bus does not start");
    const QString value = accessibility == Accessibility::on ? u"true"_s : u"false"_s;
    const CommandResult set = LinuxProcessLauncher().run(
        found("dbus-send"), {u"--bus="_s + m_bus.address(), u"--print-reply"_s, u"--dest=org.a11y.Bus"_s,
                             u"/org/a11y/bus"_s, u"org.freedesktop.DBus.Properties.Set"_s, u"string:org.a11y.Status"_s,
                             u"string:IsEnabled"_s, u"variant:boolean:"_s + value});
    if (set.status != 0)
        throw std::runtime_error(set.output.toStdString());
}

// The launcher keeps the daemon as its child.
std::int64_t PrivateDesktop::accessibilityBus() const {
    if (!m_accessibility)
        return 0;
    const auto process = m_accessibility->processID();
    QFile children(u"/proc/%1/task/%1/children"_s.arg(process));
    return children.open(QIODevice::ReadOnly) ? children.readAll().split(' ').first().toLongLong() : 0;
}

// setpriv ends the program with the test, however that ends.
std::shared_ptr<LaunchedProcess> PrivateDesktop::launch(const QString& program, const QStringList& arguments,
                                                        const QString& log) {
    if (!log.isEmpty())
        writeFileAtomically(log, {});
    m_processes.push_back(
        LinuxProcessLauncher().launch({.executable = found("setpriv"),
                                       .arguments = QStringList{u"--pdeathsig"_s, u"KILL"_s, program} + arguments,
                                       .environment = m_environment,
                                       .standardOutput = log.isEmpty() ? u"/dev/null"_s : log,
                                       .standardError = u"/dev/null"_s},
                                      {}));
    return m_processes.back();
}

std::shared_ptr<LaunchedProcess> PrivateDesktop::showWindow(const QString& instance, const QString& windowClass,
                                                            const QString& title, Title kind) {
    const QStringList arguments{instance, windowClass, title};
    return launch(QStringLiteral(SHOW_WINDOW), kind == Title::old ? arguments + QStringList{u"old"_s} : arguments);
}

std::shared_ptr<LaunchedProcess> PrivateDesktop::browse(const QStringList& arguments) {
    const QStringList common{u"--user-data-dir="_s + m_directory.filePath(u"profile"_s),
                             u"--no-sandbox"_s, // which root cannot have
                             u"--no-first-run"_s,
                             u"--no-default-browser-check"_s,
                             u"--password-store=basic"_s,
                             u"--disable-gpu"_s,
                             u"--disable-background-networking"_s,
                             u"--disable-component-update"_s,
                             u"--ignore-certificate-errors"_s};
    return launch(u"chromium"_s, common + arguments);
}

void PrivateDesktop::end(const std::shared_ptr<LaunchedProcess>& process) {
    const auto signal = [&process](int number) {
        if (process->isRunning())
            ::kill(static_cast<pid_t>(process->processID()), number);
    };
    signal(SIGCONT);
    signal(SIGTERM);
    if (!waitFor([&process] { return !process->isRunning(); }, std::chrono::seconds(5)))
        signal(SIGKILL);
    (void)waitFor([&process] { return !process->isRunning(); });
}

} // namespace corvane
