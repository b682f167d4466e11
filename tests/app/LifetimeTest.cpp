// Windows closed inside the waits that let events run, and bursts of commands from later
// starts. Real time throughout: a deferred delete only happens inside a real wait, and the
// nesting that bursts cause needs the real event loop.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QLocalSocket>
#include <QTimer>

#include "app/Forms.h"
#include "app/Settings.h"
#include "app/SubMain.h"
#include "platform/Components.h"
#include "platform/clock/Clock.h"
#include "platform/clock/QtClock.h"
#include "platform/instance/LocalInstanceLink.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CANTOVEL_CLANG_ASAN 1
#endif
#endif
#include "support/AppTest.h"
#include "support/AudioFixtures.h"
#include "support/FakeCDReader.h"
#include "support/FakeInstanceLink.h"
#include "support/FakeMediaPlayer.h"
#include "support/RealMpv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class LifetimeTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        useProgramComponents();
        Components::provideService<Clock>(std::make_shared<QtClock>());
        // A link folder of its own: other programs' tests on this machine use the shared one.
        Components::provideFactory<InstanceLink>(
            [this] { return std::make_unique<LocalInstanceLink>(linkFolder()); });
        FakeCDReader::install();
        FakeMediaPlayer::install();
    }

    QString linkFolder() const { return tempDir() + QStringLiteral("/link"); }
    QString file(const QString& name, const QByteArray& content = "data") {
        const QString path = tempDir() + u'/' + name;
        EXPECT_TRUE(writeBytes(path, content));
        return path;
    }
    // A list of two files, read from the command line or handed over.
    QString twoFileList() {
        const QString a = file(QStringLiteral("a.wav")), b = file(QStringLiteral("b.wav"));
        return file(QStringLiteral("list.m3u"), (a + "\r\n" + b + "\r\n").toLocal8Bit());
    }

    // Closes the main window the way its close box does, as soon as a wait that lets events
    // run is under way; true once it did.
    void closeInsideAWait() {
        auto* poll = new QTimer(qApp);
        QObject::connect(poll, &QTimer::timeout, poll, [this, poll] {
            frmMain* main = frmMain::instance();
            if (!main || EventsRunning::depth() == 0) return;
            closedInWait = true;
            main->close();
            poll->deleteLater();
        });
        poll->start(100);
    }
    // Runs the event loop, as the program does after Sub Main, until the program ends.
    int runEventLoop() {
        QTimer::singleShot(30000, qApp, [] { QCoreApplication::exit(99); });
        return QApplication::exec();
    }
    // Hands a path over from a later start, without waiting for the answer.
    void handOver(const QString& path) {
        auto* socket = new QLocalSocket(qApp);
        socket->connectToServer(linkFolder() + QStringLiteral("/cantovel.socket"));
        socket->write(path.toUtf8() + '\n');
        socket->flush();
    }
    // A later start after the first ended: it finds no instance and shows its window.
    void freshStartShowsTheWindow() {
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(Forms::count(), 0)
            << (Forms::count() ? Forms::all().first()->formName().toStdString() : "");
        EXPECT_EQ(SubMain({QStringLiteral("cantovel")}), -1);
        ASSERT_NE(frmMain::instance(), nullptr);
        EXPECT_TRUE(frmMain::instance()->isVisible());
    }

    bool closedInWait = false;
};

TEST_F(LifetimeTest, ClosedInsideAWaitTheProgramEndsAndTheNextStartShowsItsWindow) {
    // The queue's 2-second gap before a list's first entry, and a CD drive that never gets
    // ready (its 15-second wait): both run before the event loop does.
    FakeCDReader::setTracks({200});
    FakeCDReader::disc().readyAfterMs.reset();
    for (const QString& path : {twoFileList(), file(QStringLiteral("Track01.cda"))}) {
        SCOPED_TRACE(path.toStdString());
        closedInWait = false;
        closeInsideAWait();

        EXPECT_EQ(SubMain({QStringLiteral("cantovel"), path}), 0);

        EXPECT_TRUE(closedInWait);
        EXPECT_TRUE(msgBox().shown.isEmpty());
        freshStartShowsTheWindow();
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    // The gap of a list handed over to a running program: the event loop ends.
    ASSERT_EQ(SubMain({QStringLiteral("cantovel")}), -1);
    handOver(twoFileList());
    closedInWait = false;
    closeInsideAWait();
    EXPECT_EQ(runEventLoop(), 0);
    EXPECT_TRUE(closedInWait);
    freshStartShowsTheWindow();
}

// Memory in use by the process, in bytes.
qint64 residentBytes() {
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly)) return 0;
    return statm.readAll().split(' ').value(1).toLongLong() * 4096;
}

TEST_F(LifetimeTest, ABurstOfTenThousandHandOversNeverNestsAndAFileAfterThemPlays) {
    // The real player: its open of each missing file is where commands used to nest.
    ScopedEnv env;
    RealMpv::install(env, false);
    FakeInstanceLink* link = nullptr;
    Components::provideFactory<InstanceLink>([&link] {
        auto l = std::make_unique<FakeInstanceLink>();
        link = l.get();
        return l;
    });
    ASSERT_EQ(SubMain({QStringLiteral("cantovel")}), -1);
    const QString tone = tempDir() + QStringLiteral("/tone.wav");
    ASSERT_TRUE(writeTone(tone, 30.0));
    int deepest = 0;
    msgBox().onShow = [&deepest](const ShownBox&) {
        deepest = std::max(deepest, EventsRunning::depth());
    };
    [[maybe_unused]] const qint64 before = residentBytes();

    // As the link delivers them: each one queued as it arrives.
    constexpr int Burst = 10000;
    for (int i = 0; i < Burst; ++i)
        QMetaObject::invokeMethod(
            link, [link, i] { link->deliver(QStringLiteral("/nowhere/song%1.mp3").arg(i)); },
            Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        link, [link, tone] { link->deliver(tone); }, Qt::QueuedConnection);
    frmTemp& temp = frmTemp::get();
    ASSERT_TRUE(Clock::get().wait(
        600000, [&temp] { return temp.MP && temp.MP->PlayState() == MediaPlayer::mpPlaying; }));

    EXPECT_EQ(msgBox().shown.size(), Burst);
    EXPECT_LE(deepest, 1);
#if !defined(__SANITIZE_ADDRESS__) && !defined(CANTOVEL_CLANG_ASAN)
    // AddressSanitizer holds freed memory in quarantine, so only a plain build can say
    // that the burst left memory bounded.
    EXPECT_LT(residentBytes() - before, qint64(100) << 20);
#endif
    EXPECT_EQ(frmMain::instance()->TitleText(), QStringLiteral("tone.wav"));
}

}  // namespace
