#include "Support/Fakes/InMemoryUserDefaults.h"
#include "Support/FullDisk.h"
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
#include <sys/stat.h>
#include <unistd.h>

#include <random>

using namespace corvane;

namespace {

const QString key = u"key"_s;

struct Memory {
    InMemoryUserDefaults defaults;
};

struct File {
    QTemporaryDir directory;
    FileUserDefaults defaults{directory.filePath(u"Corvane/defaults.json"_s)};
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
             .standardOutput = u"/dev/null"_s,
             .standardError = u"/dev/null"_s},
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
    const QString text = u"„Zürich“ \"\\/\n\t"_s + QChar(0) + u"\U0001F399"_s;
    const auto date = QDateTime(QDate(1969, 12, 31), QTime(23, 59, 59, 123), Qt::UTC);
    const UserDefaults::Value values[] = {true,
                                          false,
                                          std::int64_t(0),
                                          std::int64_t(1),
                                          std::int64_t(9007199254740993),
                                          INT64_MIN,
                                          INT64_MAX,
                                          text,
                                          u""_s,
                                          u"2026-01-31T09:30:00Z"_s,
                                          date,
                                          QByteArray("\0\xff\n", 3),
                                          QByteArray("")};
    for (const auto& value : values) {
        defaults.set(key, value);
        ASSERT_EQ(defaults.object(key), value) << "alternative " << value.index();
        const std::array isOfType{defaults.boolean(key).has_value(), defaults.integer(key).has_value(),
                                  defaults.string(key).has_value(), defaults.date(key).has_value(),
                                  defaults.data(key).has_value()};
        for (std::size_t type = 0; type < isOfType.size(); ++type)
            EXPECT_EQ(isOfType[type], type == value.index());
    }
    defaults.set(key, date.toOffsetFromUtc(3600));
    EXPECT_EQ(defaults.date(key).value().timeSpec(), Qt::UTC);
    for (const QString& name : {QString(), u"a.b/c \"ü\""_s}) {
        defaults.set(name, true);
        EXPECT_EQ(defaults.boolean(name), true);
    }
    defaults.remove(key);
    EXPECT_FALSE(defaults.object(key));
    EXPECT_EQ(defaults.boolean(QString()), true);
}

TEST_F(FileUserDefaultsTest, CanBeWrittenByHandAndKeepsWhatItDoesNotKnow) {
    ASSERT_TRUE(QDir(directory.path()).mkdir(u"Corvane"_s));
    writeFileAtomically(path, R"({"whole": 5, "real": 1.5, "list": [1, {"a": null}], "nothing": null, "flag": true,
        "day": {"date": "2026-01-31T10:30:00+01:00"}, "nowhere": {"date": "2026-01-31T10:30:00"},
        "no date": {"date": "soon"}, "bytes": {"data": "AP8="}, "no bytes": {"data": "*"}, "more": {"data": "", "x": 1}})");
    EXPECT_EQ(defaults.integer(u"whole"_s), 5);
    EXPECT_EQ(defaults.boolean(u"flag"_s), true);
    EXPECT_EQ(defaults.date(u"day"_s), QDateTime(QDate(2026, 1, 31), QTime(9, 30), Qt::UTC));
    EXPECT_EQ(defaults.data(u"bytes"_s), QByteArray("\0\xff", 2));
    for (const char* name : {"real", "list", "nothing", "nowhere", "no date", "no bytes", "more"})
        EXPECT_FALSE(defaults.object(QString::fromUtf8(name))) << name;

    auto expected = JsonDocument(readFile(path).value()).root().object().free();
    defaults.set(u"list"_s, u"replaced"_s);
    defaults.set(u"half a pair"_s, QString(QChar(0xD83C)));
    defaults.remove(u"flag"_s);
    expected.at(u"list"_s) = u"replaced"_s;
    expected.at(u"day"_s) = JSONValue::Object{{u"date"_s, u"2026-01-31T09:30:00.000Z"_s}};
    expected.insert_or_assign(u"half a pair"_s, u"?"_s);
    expected.erase(u"flag"_s);
    const auto written = JsonDocument(readFile(path).value()).root().object().free();
    for (const auto& [name, value] : expected)
        EXPECT_TRUE(written.contains(name) && written.at(name) == value) << name.toStdString();
    EXPECT_EQ(written.size(), expected.size());
}

TEST_F(FileUserDefaultsTest, EveryReadSeesAnEditInPlaceAndALoss) {
    defaults.set(key, std::int64_t(19));
    // To the same size, several within one tick of the clock.
    for (char digit = '0'; digit <= '9'; ++digit) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.seek(file.readAll().indexOf("1") + 1);
        file.write(QByteArray(1, digit));
        file.close();
        ASSERT_EQ(defaults.integer(key), 10 + digit - '0');
    }
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_FALSE(defaults.object(key));
}

TEST_F(FileUserDefaultsTest, IsPrivate) {
    ::umask(0);
    defaults.set(key, true);
    ::umask(022);
    const std::pair<QString, unsigned> modes[] = {{at("Corvane"), 0700U}, {path, 0600U}, {path + u".lock"_s, 0600U}};
    for (const auto& [name, mode] : modes) {
        struct stat status {};
        ASSERT_EQ(::stat(QFile::encodeName(name).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, mode) << name.toStdString();
    }
}

TEST_F(FileUserDefaultsTest, ADamagedFileIsMovedAsideByTheFirstWriteAndKept) {
    ASSERT_TRUE(QDir(directory.path()).mkdir(u"Corvane"_s));
    const std::pair<const char*, QByteArray> cases[] = {{"", "{\"key\": tru"}, {"2", "[1]"}, {"3", ""}};
    for (const auto& [number, content] : cases) {
        writeFileAtomically(path, content);
        EXPECT_FALSE(defaults.object(key));
        defaults.remove(key);
        EXPECT_EQ(readFile(path), content);
        defaults.set(key, true);
        EXPECT_EQ(defaults.boolean(key), true);
    }
    for (const auto& [number, content] : cases)
        EXPECT_EQ(readFile(path + u".damaged"_s + number), content);
}

TEST_F(FileUserDefaultsTest, AWriteThatFailsIsLoggedAndLosesNothing) {
    defaults.set(key, u"old"_s);
    const QByteArray before = readFile(path).value();
    const auto failureOf = [](FileUserDefaults& failing) {
        testing::internal::CaptureStderr();
        failing.set(key, u"new"_s);
        return testing::internal::GetCapturedStderr();
    };
    {
        const FullDisk disk(10);
        defaults.set(key, u"new"_s);
    }
    EXPECT_EQ(readFile(path), before);

    ASSERT_TRUE(QFile::rename(path, at("elsewhere")));
    ASSERT_TRUE(QDir(directory.path()).mkdir(u"Corvane/defaults.json"_s));
    EXPECT_THAT(failureOf(defaults), testing::HasSubstr("was not saved")) << "a folder in the place of the file";
    EXPECT_FALSE(defaults.object(key));

    path = at("elsewhere") + u"/defaults.json"_s;
    FileUserDefaults below(path);
    EXPECT_THAT(failureOf(below), testing::HasSubstr("elsewhere: Not a directory"));
}

TEST_F(FileUserDefaultsTest, TwoProcessesThatWriteAtOnceLoseNothing) {
    const auto first = write("first", 1, 150);
    const auto second = write("second", 1, 150);
    for (std::int64_t number = 1; number <= 50; ++number)
        defaults.set(u"own%1"_s.arg(number), number);
    waitForEnd(*first);
    waitForEnd(*second);
    EXPECT_EQ(defaults.integer(u"first"_s), 150);
    EXPECT_EQ(defaults.integer(u"second"_s), 150);
    for (std::int64_t number = 1; number <= 50; ++number)
        EXPECT_EQ(defaults.integer(u"own%1"_s.arg(number)), number);
}

TEST_F(FileUserDefaultsTest, AWriterMayBeKilledAtAnyMoment) {
    defaults.set(u"other"_s, QString(10'000, u'x'));
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
        ASSERT_EQ(defaults.string(u"other"_s).value_or(QString()).size(), 10'000);
    }
    EXPECT_FALSE(QFile::exists(path + u".damaged"_s));
}
