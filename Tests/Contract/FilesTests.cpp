#include "Support/FullDisk.h"
#include "Support/PrintQt.h"

#include "CorvaneContract/Files/Files.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace corvane;

TEST(WriteFileAtomically, AWriteThatRunsOutOfRoomLeavesTheOldFileAndNothingElse) {
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"metadata.json"_s);
    writeFileAtomically(path, "old");
    QString text;
    try {
        const FullDisk disk(4096); // the first bytes still find room
        writeFileAtomically(path, QByteArray(10'000, 'x'));
    } catch (const FileError& error) {
        text = error.text();
    }
    EXPECT_EQ(text, u"metadata.json: File too large"_s);
    EXPECT_EQ(readFile(path), QByteArray("old"));
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST(WriteFileAtomically, ReplacesTheTargetOfALinkPrivately) {
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"file"_s);
    const QString link = directory.filePath(u"link"_s);
    writeFileAtomically(path, "old");
    ASSERT_EQ(::symlink("file", QFile::encodeName(link).constData()), 0);
    writeFileAtomically(link, "new");
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(readFile(path), QByteArray("new"));
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    EXPECT_THROW(writeFileAtomically(directory.path(), "x"), FileError);
    EXPECT_THROW(writeFileAtomically(directory.filePath(u"absent/file"_s), "x"), FileError);
}

TEST(ReadFile, ReadsOnlyRegularFilesWithinTheLimit) {
    const QTemporaryDir directory;
    const auto at = [&](const char* name) { return directory.filePath(name); };
    writeFileAtomically(at("file"), "12345");
    ASSERT_TRUE(QFile::link(at("file"), at("link")));
    QFile huge(at("huge"));
    ASSERT_TRUE(huge.open(QIODevice::WriteOnly) && huge.resize(300LL * 1024 * 1024));
    EXPECT_EQ(readFile(at("file"), 5), "12345");
    EXPECT_EQ(readFile(at("link")), "12345");
    EXPECT_FALSE(readFile(at("file"), 4));
    for (const QString& none : {at("huge"), at("absent"), at("file") + QChar(0) + u'x', u"/dev/zero"_s})
        EXPECT_FALSE(readFile(none)) << none.toStdString();
    writeFileAtomically(at("file"), "\xff");
    EXPECT_FALSE(readTextFile(at("file")));
}
