#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>

#include "app/FileNames.h"
#include "platform/instance/LocalInstanceLink.h"
#include "support/AudioFixtures.h"

using namespace cantovel;
using cantovel::test::waitUntil;

namespace {

constexpr int Generous = 10000;  // a bound for waits that should end at once

// Runs this test program again as a second instance doing `mode` (see InstanceLinkChild).
class Child {
  public:
    Child(const QString& folder, const QString& mode) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("CANTOVEL_LINK_CHILD", mode);
        env.insert("CANTOVEL_LINK_FOLDER", folder);
        process.setProcessEnvironment(env);
        process.start(QCoreApplication::applicationFilePath(),
                      {"--gtest_filter=InstanceLinkChild.*"});
        pid = process.processId();
    }
    bool finish() {
        const bool ended = process.waitForFinished(Generous);
        output += process.readAllStandardOutput();
        return ended && process.exitStatus() == QProcess::NormalExit;
    }
    QProcess process;  // killed, if still running, when it goes
    qint64 pid = 0;
    QByteArray output;
};

void say(const QByteArray& line) {
    std::fputs((line + '\n').constData(), stdout);
    std::fflush(stdout);
}

}  // namespace

// The second process of the tests below; skipped when run on its own.
TEST(InstanceLinkChild, Run) {
    // "listen", or "race <moment> <starts>".
    const QStringList mode = qEnvironmentVariable("CANTOVEL_LINK_CHILD").split(u' ');
    if (mode[0].isEmpty()) GTEST_SKIP() << "runs only as the second process of the link tests";
    LocalInstanceLink link(qEnvironmentVariable("CANTOVEL_LINK_FOLDER"));
    if (mode[0] == "race") {
        // Several starts at one moment: each claims the place, the losers hand over.
        const qint64 at = mode.value(1).toLongLong();
        while (QDateTime::currentMSecsSinceEpoch() < at) QThread::usleep(200);
        if (!link.claim()) {
            QString error;
            const bool sent =
                link.execute(QString::number(QCoreApplication::applicationPid()), Generous, &error);
            say(sent ? "SENT" : "FAILED:" + error.toUtf8());
            return;
        }
        say("RUNNING");
        const int senders = mode.value(2).toInt() - 1;
        int got = 0;
        QObject::connect(&link, &InstanceLink::commandReceived, [&](const QString& c) {
            say("GOT:" + c.toUtf8());
            ++got;
        });
        waitUntil([&] { return got == senders; });
        return;
    }
    // Listens, then ends the way a crash does: lock file and socket stay behind.
    ASSERT_TRUE(link.listen());
    say("LISTENING");
    std::_Exit(0);
}

class InstanceLinkTest : public ::testing::Test {
  protected:
    QTemporaryDir dir;
};

TEST_F(InstanceLinkTest, NoInstanceAMuteOneOrAWrongAnswerIsAnError) {
    LocalInstanceLink link(dir.path());
    EXPECT_FALSE(link.otherInstanceRunning());
    QString error;
    // A long time-out that the answer must not wait for: the error says no one listens,
    // not that time ran out.
    EXPECT_FALSE(link.execute("[Restore App]", 600000, &error));
    EXPECT_EQ(error, "No running instance listens.");

    {
        QLocalServer mute;
        ASSERT_TRUE(mute.listen(link.socketPath()));
        EXPECT_FALSE(link.execute("[Restore App]", 200, &error));
        EXPECT_EQ(error, "The running instance did not answer within 200 ms.");
    }
    QLocalServer rude;
    ASSERT_TRUE(rude.listen(link.socketPath()));
    QObject::connect(&rude, &QLocalServer::newConnection, [&] {
        QLocalSocket* s = rude.nextPendingConnection();
        s->write("NO\n");
        s->flush();
    });
    EXPECT_FALSE(link.execute("[Restore App]", Generous, &error));
    EXPECT_EQ(error, "The running instance gave an unexpected answer.");
    EXPECT_FALSE(link.execute("two\nlines", Generous, &error));
}

TEST_F(InstanceLinkTest, ALockLeftByADeadProcessIsNoRunningInstance) {
    {
        Child child(dir.path(), "listen");
        ASSERT_TRUE(child.finish());
        ASSERT_TRUE(child.output.contains("LISTENING\n")) << child.output.toStdString();
    }
    LocalInstanceLink link(dir.path());
    ASSERT_TRUE(QFileInfo::exists(link.lockPath()));
    ASSERT_TRUE(QFileInfo::exists(link.socketPath()));
    EXPECT_FALSE(link.otherInstanceRunning());
    QString error;
    EXPECT_FALSE(link.execute("x", Generous, &error));
    EXPECT_EQ(error, "The running instance refused the link.");
    // The stale socket gives way to the new instance, which then serves, on a socket that
    // is its owner's only.
    ASSERT_TRUE(link.listen());
    EXPECT_FALSE(link.otherInstanceRunning());  // it is the running instance itself
    EXPECT_EQ(QFileInfo(link.socketPath()).permissions() & 0x0077, 0);  // group and others
    QStringList received;
    QObject::connect(&link, &InstanceLink::commandReceived,
                     [&](const QString& c) { received << c; });
    LocalInstanceLink second(dir.path());
    EXPECT_TRUE(second.otherInstanceRunning());
    EXPECT_FALSE(second.listen());
    // Names arrive as sent, one that is not UTF-8 with its own bytes.
    const QStringList sent{"[Restore App]", QString::fromUtf8("\"/music/Ärger – ♪.mp3\""),
                           NameFromBytes("\"/music/caf\xE9.mp3\"")};
    for (const QString& command : sent) {
        error = "stale";
        EXPECT_TRUE(second.execute(command, Generous, &error)) << error.toStdString();
        EXPECT_TRUE(error.isEmpty());
    }
    EXPECT_TRUE(waitUntil([&] { return received.size() == 3; }));
    EXPECT_EQ(received, sent);
}

TEST_F(InstanceLinkTest, StartsAtTheSameMomentLeaveOneRunningInstanceThatHearsTheRest) {
    constexpr int racers = 4;
    const QString at = QString::number(QDateTime::currentMSecsSinceEpoch() + 1500);
    std::vector<std::unique_ptr<Child>> children;
    for (int i = 0; i < racers; ++i)
        children.push_back(
            std::make_unique<Child>(dir.path(), QStringLiteral("race %1 %2").arg(at).arg(racers)));
    int running = 0, sent = 0;
    QByteArray heard;
    for (auto& child : children) {
        ASSERT_TRUE(child->finish()) << child->output.toStdString();
        if (child->output.contains("RUNNING\n")) {
            ++running;
            heard = child->output;
        }
        if (child->output.contains("SENT\n")) ++sent;
    }
    EXPECT_EQ(running, 1);
    EXPECT_EQ(sent, racers - 1);
    for (auto& child : children)
        if (child->output.contains("SENT\n")) {
            const QByteArray pid = QByteArray::number(child->pid);
            EXPECT_TRUE(heard.contains("GOT:" + pid + "\n")) << heard.toStdString();
        }
}
