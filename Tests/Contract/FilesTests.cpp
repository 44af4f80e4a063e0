#include "CorvaneContract/Files/Files.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

using namespace corvane;

TEST(WriteFileAtomically, AWriteThatRunsOutOfRoomLeavesTheOldFileAndNothingElse) {
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("metadata.json"));
    writeFileAtomically(path, "old");
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    // As on a full disk, the first bytes still find room.
    const rlimit small{4096, limit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    QString text;
    try {
        writeFileAtomically(path, QByteArray(10'000, 'x'));
    } catch (const FileError& error) {
        text = error.text();
    }
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, ignored);
    EXPECT_EQ(text, QStringLiteral("metadata.json: File too large"));
    EXPECT_EQ(readFile(path), QByteArray("old"));
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST(WriteFileAtomically, ReplacesTheTargetOfALinkPrivately) {
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("file"));
    const QString link = directory.filePath(QStringLiteral("link"));
    writeFileAtomically(path, "old");
    ASSERT_EQ(::symlink("file", QFile::encodeName(link).constData()), 0);
    writeFileAtomically(link, "new");
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(readFile(path), QByteArray("new"));
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    EXPECT_THROW(writeFileAtomically(directory.path(), "x"), FileError);
    EXPECT_THROW(writeFileAtomically(directory.filePath(QStringLiteral("absent/file")), "x"), FileError);
}
