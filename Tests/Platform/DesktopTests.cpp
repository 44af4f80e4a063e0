#include "Support/Fakes/FakeWorkspace.h"
#include "Support/PrintQt.h"
#include "Support/Waiting.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvanePlatform/Linux/Desktop/XdgWorkspace.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"
#include "CorvanePlatform/Null/NullAudioFileInspector.h"
#include "CorvanePlatform/Null/NullAudioInputs.h"
#include "CorvanePlatform/Null/NullAudioPlayers.h"
#include "CorvanePlatform/Null/NullFrontmostApplicationReader.h"
#include "CorvanePlatform/Null/NullSecretStore.h"
#include "CorvanePlatform/Null/NullWorkspace.h"

#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace corvane;

TEST(XdgWorkspace, HandsOneArgumentAndTheUsersUmaskToXdgOpen) {
    const QTemporaryDir directory;
    const QByteArray path = qgetenv("PATH");
    const auto restore = qScopeGuard([path, mask = ::umask(022)] {
        qputenv("PATH", path);
        ::umask(mask);
    });
    LinuxProcessLauncher launcher;
    XdgWorkspace workspace(launcher);
    qputenv("PATH", directory.path().toUtf8());
    EXPECT_FALSE(workspace.open(u"/tmp"_s)) << "without xdg-open";

    const QString program = directory.filePath(u"xdg-open"_s);
    writeFileAtomically(program, "#!/bin/sh\n(umask; echo \"$#\"; echo \"$1\") >\"${0%/*}/part\"\n"
                                 "/bin/mv \"${0%/*}/part\" \"${0%/*}/said\"\n");
    ASSERT_TRUE(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
    ::umask(077);
    const QString said = directory.filePath(u"said"_s);
    const std::pair<const char*, const char*> cases[] = {
        {"/a b/$HOME;`x`", "/a b/$HOME;`x`"},
        {"https://example.org/?a=1&b=ü", "https://example.org/?a=1&b=ü"},
        {"--help", "./--help"}};
    for (const auto& [argument, expected] : cases) {
        EXPECT_TRUE(workspace.open(QString::fromUtf8(argument)));
        ASSERT_TRUE(waitFor([&] { return QFile::exists(said); }));
        EXPECT_EQ(readTextFile(said), u"0022\n1\n%1\n"_s.arg(QString::fromUtf8(expected)));
        QFile::remove(said);
    }
    EXPECT_FALSE(workspace.open(QString()));
    EXPECT_FALSE(FakeWorkspace().open(QString()));
}

TEST(EnsureUtf8Locale, KeepsQtQuietAndTextWholeInEveryLocale) {
    LinuxProcessLauncher launcher;
    for (const char* locale : {"LANG=C", "LC_ALL=POSIX", "LC_ALL=xx_XX.UTF-8", "LC_ALL=C.UTF-8"}) {
        const CommandResult result = launcher.run(
            u"/usr/bin/env"_s, {u"-i"_s, QString::fromUtf8(locale), QStringLiteral(PRINT_ARGUMENT), u"Zürich 🎙"_s});
        EXPECT_EQ(result.output, u"Zürich 🎙"_s) << locale;
    }
}

TEST(NullPlatform, HasNothingAndSaysSo) {
    EXPECT_FALSE(NullWorkspace().open(u"/tmp"_s));
    EXPECT_FALSE(NullAudioFileInspector().durationSeconds(u"/tmp"_s));
    EXPECT_EQ(NullFrontmostApplicationReader().read().result(), std::nullopt);
    EXPECT_THROW((void)NullAudioInputs().microphone()->format(), AudioInputError);
    EXPECT_THROW((void)NullAudioPlayers().open(u"/tmp"_s), AudioPlayerError);
    EXPECT_THROW(NullSecretStore().saveNotionToken({}), TokenStoreError);
    EXPECT_THROW((void)NullSecretStore().hasHuggingFaceToken(), TokenStoreError);
}
