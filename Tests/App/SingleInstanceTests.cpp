// Two starts beside each other, on a real socket and a real lock.
#include "Support/MainLoop.h"
#include "Support/PrintQt.h"
#include "Support/Waiting.h"

#include "CorvaneApp/Shell/SingleInstance.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>
#include <future>

using namespace corvane;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class SingleInstanceTest : public testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<SingleInstance> instance() const {
        return std::make_unique<SingleInstance>(runtime.path(), data.path());
    }
    [[nodiscard]] QString file(const char* ending) const {
        const QStringList found =
            QDir(runtime.path()).entryList({u"corvane-*"_s + ending}, QDir::AllEntries | QDir::System);
        return found.size() == 1 ? runtime.filePath(found.first()) : QString();
    }
    // As another process would, while this one's loop runs.
    bool handOver(const SingleInstance& from) const {
        auto done = std::async(std::launch::async, [&] { return from.handOver(request, 10s); });
        if (!loopUntil([&] { return done.wait_for(0s) == std::future_status::ready; }))
            ADD_FAILURE() << "no end of it";
        return done.get();
    }

    const QTemporaryDir runtime;
    const QTemporaryDir data;
    const StartRequest request{.window = StartRequest::Window::show,
                               .files = {u"/a b/ü\n\"x\".wav"_s},
                               .activationToken = u"token"_s,
                               .startupID = u"id_TIME1"_s};
};

TEST_F(SingleInstanceTest, TheSecondHandsOverAndTheThirdTakesThePlaceOfTheFirst) {
    auto first = instance();
    const auto second = instance();
    ASSERT_TRUE(first->claim());
    EXPECT_FALSE(second->claim());
    EXPECT_FALSE(second->handOver(request, 1s)) << "it does not listen yet";
    ASSERT_TRUE(first->listen());
    EXPECT_EQ(QFileInfo(file(".socket")).permissions() & (QFile::ReadOther | QFile::WriteOther | QFile::WriteGroup),
              QFile::Permissions());

    std::vector<StartRequest> requests;
    QObject::connect(first.get(), &SingleInstance::requested,
                     [&](const StartRequest& got) { requests.push_back(got); });
    EXPECT_TRUE(handOver(*second));
    EXPECT_THAT(requests, ElementsAre(request));

    const QTemporaryDir other;
    EXPECT_TRUE(SingleInstance(runtime.path(), other.path()).claim()) << "of another data directory";

    first->close();
    EXPECT_FALSE(second->handOver(request, 1s)) << "it is ending";
    first.reset();
    EXPECT_TRUE(second->claim());
}

TEST_F(SingleInstanceTest, WhatAKilledProcessLeftBehindIsNoHindrance) {
    {
        auto killed = instance();
        ASSERT_TRUE(killed->claim());
        ASSERT_TRUE(killed->listen());
        const QString socket = file(".socket");
        ASSERT_TRUE(QFile::rename(socket, socket + u".kept"_s));
        killed.reset();
        ASSERT_TRUE(QFile::rename(socket + u".kept"_s, socket)); // a socket that nobody listens on
    }
    const auto next = instance();
    const auto second = instance();
    ASSERT_TRUE(next->claim());
    EXPECT_FALSE(second->handOver(request, 1s));
    ASSERT_TRUE(next->listen());
    EXPECT_TRUE(handOver(*second));
}

TEST_F(SingleInstanceTest, OfManyAtTheSameMomentOneIsFirst) {
    std::vector<std::unique_ptr<SingleInstance>> all;
    std::vector<std::future<bool>> claims;
    for (int i = 0; i < 20; ++i)
        all.push_back(instance());
    for (const auto& one : all)
        claims.push_back(std::async(std::launch::async, [&one] { return one->claim(); }));
    EXPECT_EQ(std::count_if(claims.begin(), claims.end(), [](auto& claim) { return claim.get(); }), 1);
}

TEST_F(SingleInstanceTest, WhatIsNoRequestIsNotAccepted) {
    const auto first = instance();
    ASSERT_TRUE(first->claim());
    ASSERT_TRUE(first->listen());
    int requests = 0;
    QObject::connect(first.get(), &SingleInstance::requested, [&] { ++requests; });
    for (const QByteArray& words : {QByteArray("{}\n"), QByteArray("show\n"), QByteArray(3 << 20, 'x'),
                                    encoded(request).replace("show", "hide")}) {
        QLocalSocket socket;
        socket.connectToServer(file(".socket"));
        socket.write(words);
        EXPECT_TRUE(loopUntil([&] { return socket.state() == QLocalSocket::UnconnectedState; }));
        EXPECT_EQ(socket.readAll(), QByteArray());
    }
    EXPECT_EQ(requests, 0);
    EXPECT_TRUE(SingleInstance(QString(), data.path()).claim()) << "without a runtime directory";
}

} // namespace
