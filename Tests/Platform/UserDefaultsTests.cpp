#include "Support/Fakes/InMemoryUserDefaults.h"
#include "Support/PrintQt.h"
#include "Support/Waiting.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"
#include "CorvanePlatform/Linux/Settings/FileUserDefaults.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>

using namespace corvane;

namespace {

const QString key = QStringLiteral("key");

struct Memory {
    InMemoryUserDefaults defaults;
};

struct File {
    QTemporaryDir directory;
    FileUserDefaults defaults{directory.filePath(QStringLiteral("Corvane/defaults.json"))};
};

template<typename Implementation>
class UserDefaultsContract : public testing::Test {};
using Implementations = testing::Types<Memory, File>;
TYPED_TEST_SUITE(UserDefaultsContract, Implementations);

class FileUserDefaultsTest : public testing::Test {
protected:
    [[nodiscard]] QString at(const char* name) const { return directory.filePath(QString::fromUtf8(name)); }
    std::shared_ptr<LaunchedProcess> write(const char* name, std::int64_t first, std::int64_t last) {
        return launcher.launch(
            {.executable = QStringLiteral(WRITE_DEFAULTS),
             .arguments = {path, QString::fromUtf8(name), QString::number(first), QString::number(last)},
             .environment = {},
             .standardOutput = QStringLiteral("/dev/null"),
             .standardError = QStringLiteral("/dev/null")},
            {});
    }
    static void waitForEnd(const LaunchedProcess& process) {
        ASSERT_TRUE(waitFor([&] { return !process.isRunning(); }, std::chrono::seconds(60)));
    }

    QTemporaryDir directory;
    QString path = at("Corvane/defaults.json");
    LinuxProcessLauncher launcher;
    FileUserDefaults defaults{path};
};

} // namespace

TYPED_TEST(UserDefaultsContract, KeepsEveryValueAndItsType) {
    TypeParam implementation;
    UserDefaults& defaults = implementation.defaults;
    EXPECT_FALSE(defaults.object(key));
    defaults.remove(key);
    const QString text = QStringLiteral("„Zürich“ \"\\/\n\t") + QChar(0) + QStringLiteral("\U0001F399");
    const auto date = QDateTime(QDate(1969, 12, 31), QTime(23, 59, 59, 123), Qt::UTC);
    const std::vector<UserDefaults::Value> values{true,
                                                  false,
                                                  std::int64_t(0),
                                                  std::int64_t(1),
                                                  std::int64_t(9007199254740993),
                                                  INT64_MIN,
                                                  INT64_MAX,
                                                  text,
                                                  QString(QLatin1String("")),
                                                  QStringLiteral("2026-01-31T09:30:00Z"),
                                                  date,
                                                  QByteArray("\0\xff\n", 3),
                                                  QByteArray("")};
    for (const auto& value : values) {
        defaults.set(key, value);
        ASSERT_EQ(defaults.object(key), value) << "alternative " << value.index();
        EXPECT_EQ(defaults.boolean(key).has_value(), value.index() == 0);
        EXPECT_EQ(defaults.integer(key).has_value(), value.index() == 1);
        EXPECT_EQ(defaults.string(key).has_value(), value.index() == 2);
        EXPECT_EQ(defaults.date(key).has_value(), value.index() == 3);
        EXPECT_EQ(defaults.data(key).has_value(), value.index() == 4);
    }
    defaults.set(key, date.toOffsetFromUtc(3600));
    EXPECT_EQ(defaults.date(key).value().timeSpec(), Qt::UTC);
    for (const QString& name : {QString(), QStringLiteral("a.b/c \"ü\"")}) {
        defaults.set(name, true);
        EXPECT_EQ(defaults.boolean(name), true);
    }
    defaults.remove(key);
    EXPECT_FALSE(defaults.object(key));
    EXPECT_EQ(defaults.boolean(QString()), true);
}

TEST_F(FileUserDefaultsTest, CanBeWrittenByHandAndKeepsWhatItDoesNotKnow) {
    ASSERT_TRUE(QDir(directory.path()).mkdir(QStringLiteral("Corvane")));
    writeFileAtomically(path, R"({"whole": 5, "real": 1.5, "list": [1, {"a": null}], "nothing": null, "flag": true,
        "day": {"date": "2026-01-31T10:30:00+01:00"}, "nowhere": {"date": "2026-01-31T10:30:00"},
        "no date": {"date": "soon"}, "bytes": {"data": "AP8="}, "no bytes": {"data": "*"}, "more": {"data": "", "x": 1}})");
    EXPECT_EQ(defaults.integer(QStringLiteral("whole")), 5);
    EXPECT_EQ(defaults.boolean(QStringLiteral("flag")), true);
    EXPECT_EQ(defaults.date(QStringLiteral("day")), QDateTime(QDate(2026, 1, 31), QTime(9, 30), Qt::UTC));
    EXPECT_EQ(defaults.data(QStringLiteral("bytes")), QByteArray("\0\xff", 2));
    for (const char* name : {"real", "list", "nothing", "nowhere", "no date", "no bytes", "more"})
        EXPECT_FALSE(defaults.object(QString::fromUtf8(name))) << name;

    auto expected = JsonDocument(readFile(path).value()).root().object().free();
    defaults.set(QStringLiteral("list"), QStringLiteral("replaced"));
    defaults.set(QStringLiteral("half a pair"), QString(QChar(0xD83C)));
    defaults.remove(QStringLiteral("flag"));
    expected.at(QStringLiteral("list")) = QStringLiteral("replaced");
    expected.at(QStringLiteral("day")) =
        JSONValue::Object{{QStringLiteral("date"), QStringLiteral("2026-01-31T09:30:00.000Z")}};
    expected.insert_or_assign(QStringLiteral("half a pair"), QStringLiteral("?"));
    expected.erase(QStringLiteral("flag"));
    const auto written = JsonDocument(readFile(path).value()).root().object().free();
    for (const auto& [name, value] : expected)
        EXPECT_TRUE(written.contains(name) && written.at(name) == value) << name.toStdString();
    EXPECT_EQ(written.size(), expected.size());
}

TEST_F(FileUserDefaultsTest, EveryReadSeesWhatAnotherProcessWrote) {
    FileUserDefaults other(path);
    for (std::int64_t number = 0; number < 20; ++number) {
        other.set(key, number);
        ASSERT_EQ(defaults.integer(key), number);
    }
    // Edits in place to the same size, several within one tick of the clock.
    for (char digit = '0'; digit <= '9'; ++digit) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.seek(file.readAll().indexOf("9"));
        file.write(QByteArray(1, digit));
        file.close();
        ASSERT_EQ(defaults.integer(key), 10 + digit - '0');
        file.open(QIODevice::ReadWrite);
        file.seek(file.readAll().lastIndexOf(digit));
        file.write("9");
    }
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_FALSE(defaults.object(key));
}

TEST_F(FileUserDefaultsTest, IsPrivate) {
    ::umask(0);
    defaults.set(key, true);
    const auto mode = [](const QString& name) {
        struct stat status {};
        EXPECT_EQ(::stat(QFile::encodeName(name).constData(), &status), 0);
        return status.st_mode & 07777;
    };
    EXPECT_EQ(mode(at("Corvane")), 0700U);
    EXPECT_EQ(mode(path), 0600U);
    EXPECT_EQ(mode(path + QStringLiteral(".lock")), 0600U);
    ::umask(022);
}

TEST_F(FileUserDefaultsTest, ADamagedFileIsMovedAsideByTheFirstWriteAndKept) {
    ASSERT_TRUE(QDir(directory.path()).mkdir(QStringLiteral("Corvane")));
    const QByteArray damaged[] = {"{\"key\": tru", "[1]", ""};
    for (const QByteArray& content : damaged) {
        writeFileAtomically(path, content);
        EXPECT_FALSE(defaults.object(key));
        defaults.remove(key);
        EXPECT_EQ(readFile(path), content);
        defaults.set(key, true);
        EXPECT_EQ(defaults.boolean(key), true);
    }
    EXPECT_EQ(readFile(path + QStringLiteral(".damaged")), damaged[0]);
    EXPECT_EQ(readFile(path + QStringLiteral(".damaged2")), damaged[1]);
    EXPECT_EQ(readFile(path + QStringLiteral(".damaged3")), damaged[2]);
}

TEST_F(FileUserDefaultsTest, AWriteThatFailsIsLoggedAndLosesNothing) {
    defaults.set(key, QStringLiteral("old"));
    const QByteArray before = readFile(path).value();
    const auto expectFailure = [&](const char* reason) {
        testing::internal::CaptureStderr();
        defaults.set(key, QStringLiteral("new"));
        EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("was not saved")) << reason;
    };
    // A full disk: no file may grow past the size of this one.
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const auto ignored = ::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{10, limit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    defaults.set(key, QStringLiteral("new"));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    ::signal(SIGXFSZ, ignored);
    EXPECT_EQ(readFile(path), before);

    ASSERT_TRUE(QFile::rename(path, at("elsewhere")));
    ASSERT_TRUE(QDir(directory.path()).mkdir(QStringLiteral("Corvane/defaults.json")));
    expectFailure("a folder in the place of the file");
    EXPECT_FALSE(defaults.object(key));

    path = at("elsewhere") + QStringLiteral("/defaults.json");
    FileUserDefaults below(path);
    testing::internal::CaptureStderr();
    below.set(key, true);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("elsewhere: Not a directory"));
}

TEST_F(FileUserDefaultsTest, TwoProcessesThatWriteAtOnceLoseNothing) {
    const auto first = write("first", 1, 150);
    const auto second = write("second", 1, 150);
    for (std::int64_t number = 1; number <= 50; ++number)
        defaults.set(QStringLiteral("own%1").arg(number), number);
    waitForEnd(*first);
    waitForEnd(*second);
    EXPECT_EQ(defaults.integer(QStringLiteral("first")), 150);
    EXPECT_EQ(defaults.integer(QStringLiteral("second")), 150);
    for (std::int64_t number = 1; number <= 50; ++number)
        EXPECT_EQ(defaults.integer(QStringLiteral("own%1").arg(number)), number);
}

TEST_F(FileUserDefaultsTest, AWriterMayBeKilledAtAnyMoment) {
    defaults.set(QStringLiteral("other"), QString(10'000, QLatin1Char('x')));
    defaults.set(key, std::int64_t(0));
    std::minstd_rand random(1);
    std::int64_t last = 0;
    for (int round = 0; round < 60; ++round) {
        const auto writer = write("key", last + 1, last + 1'000'000);
        ASSERT_TRUE(waitFor([&] { return defaults.integer(key) > last; })) << "round " << round;
        ::usleep(random() % 5'000); // any moment of a write, which takes about this long
        ASSERT_EQ(::kill(static_cast<pid_t>(writer->processID()), SIGKILL), 0);
        waitForEnd(*writer);
        ASSERT_NO_THROW(JsonDocument(readFile(path).value_or(QByteArray()))) << "round " << round;
        ASSERT_GT(defaults.integer(key), last);
        last = *defaults.integer(key);
        ASSERT_EQ(defaults.string(QStringLiteral("other")).value_or(QString()).size(), 10'000);
    }
    EXPECT_FALSE(QFile::exists(path + QStringLiteral(".damaged")));
}
