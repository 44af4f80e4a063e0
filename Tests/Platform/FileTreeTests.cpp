#include "Support/PrintQt.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace corvane;
using Kind = FileStamp::Kind;

namespace {

class FileTreeTest : public testing::Test {
protected:
    [[nodiscard]] QString at(const char* name) const { return directory.filePath(QString::fromUtf8(name)); }
    [[nodiscard]] QByteArray native(const char* name) const { return QFile::encodeName(at(name)); }

    QTemporaryDir directory;
    LinuxFileTree tree;
};

} // namespace

TEST_F(FileTreeTest, ListsNamesOfEveryKindButHiddenOnes) {
    ASSERT_TRUE(QDir(directory.path()).mkdir(u"folder"_s));
    for (const char* name : {"Besprechung – Zürich.json", "a b%c:d", "..strange", ".hidden"})
        writeFileAtomically(at(name), "x");
    ASSERT_EQ(::mkfifo(native("fifo").constData(), 0600), 0);
    ASSERT_EQ(::symlink("nowhere", native("dangling").constData()), 0);

    EXPECT_THAT(tree.list(directory.path()).value(),
                testing::UnorderedElementsAre(u"folder"_s, u"Besprechung – Zürich.json"_s, u"a b%c:d"_s, u"fifo"_s,
                                              u"dangling"_s));
    EXPECT_TRUE(tree.list(at("folder")).value().empty());
    EXPECT_FALSE(tree.list(at("absent")));
    EXPECT_FALSE(tree.list(at("a b%c:d")));
    EXPECT_FALSE(tree.list(at("fifo")));
}

TEST_F(FileTreeTest, StampsWhatALinkLeadsToAndNeverBlocks) {
    writeFileAtomically(at("file"), "12345");
    ASSERT_TRUE(QDir(directory.path()).mkdir(u"folder"_s));
    ASSERT_EQ(::mkfifo(native("fifo").constData(), 0600), 0);
    ASSERT_EQ(::symlink("file", native("link").constData()), 0);
    ASSERT_EQ(::symlink("nowhere", native("dangling").constData()), 0);
    ASSERT_EQ(::symlink("loop", native("loop").constData()), 0);

    const FileStamp file = tree.stamp(at("file"));
    EXPECT_EQ(file.kind, Kind::regularFile);
    EXPECT_EQ(file.size, 5);
    EXPECT_EQ(tree.stamp(at("link")), file);
    EXPECT_EQ(tree.stamp(at("folder")).kind, Kind::directory);
    EXPECT_EQ(tree.stamp(at("fifo")).kind, Kind::other);
    for (const char* name : {"dangling", "loop", "absent", "file/below", ""})
        EXPECT_EQ(tree.stamp(name[0] ? at(name) : QString()), FileStamp()) << name;
    EXPECT_EQ(tree.stamp(at("file") + QChar(0) + u"x"_s), FileStamp());

    const std::vector<QString> names{u"fifo"_s, u"absent"_s, u"folder/../file"_s};
    EXPECT_THAT(tree.stamps(directory.path(), names), testing::ElementsAre(tree.stamp(at("fifo")), FileStamp(), file));
    EXPECT_THAT(tree.stamps(at("absent"), names), testing::Each(FileStamp()));
}

TEST_F(FileTreeTest, ManyStampsComeInTheOrderOfTheirPaths) {
    for (const char* name : {"1", "22", "333"})
        writeFileAtomically(at(name), name);
    std::vector<QString> names;
    for (int i = 0; i < 20'001; ++i)
        names.push_back(QString(i % 3 + 1, QChar('1' + i % 3)));
    const auto stamps = tree.stamps(directory.path(), names);
    ASSERT_EQ(stamps.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        ASSERT_EQ(stamps[i].size, names[i].size()) << i;
}

TEST(FileStamp, SettlesLaterWhereTheFileSystemKeepsWholeSeconds) {
    constexpr std::int64_t second = 1'000'000'000;
    FileStamp fine{.modifiedNanoseconds = 100 * second, .statusNanoseconds = 100 * second + 1};
    EXPECT_FALSE(isSettled(fine, 100 * second + 1));
    EXPECT_TRUE(isSettled(fine, 100 * second + 2));
    fine.modifiedNanoseconds = 200 * second; // set by hand into the future
    EXPECT_FALSE(isSettled(fine, 199 * second));

    const FileStamp coarse{.modifiedNanoseconds = 100 * second, .statusNanoseconds = 100 * second};
    EXPECT_FALSE(isSettled(coarse, 102 * second));
    EXPECT_TRUE(isSettled(coarse, 102 * second + 1));
    EXPECT_TRUE(isSettled(FileStamp(), 100 * second));
}
