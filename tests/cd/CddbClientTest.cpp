// The CDDB client against servers the test runs on the loopback interface, well-behaved
// and hostile, in virtual time.

#include <QElapsedTimer>
#include <QListWidget>
#include <QTimer>
#include <functional>

#include "app/Forms.h"
#include "cd/CdBase_Code.h"
#include "cd/frmCDDBMatches.h"
#include "platform/clock/QtClock.h"
#include "support/CdBaseFixture.h"
#include "support/LoopbackCddbServer.h"

namespace cantovel::test {
namespace {

const QByteArray kRecord =
    "210 rock 0e021a03 CD database entry follows (until terminating `.')\r\n"
    "# xmcd\r\n#\r\n# Track frame offsets:\r\n#\t150\r\n#\t15010\r\n#\t27755\r\n#\r\n"
    "# Disc length: 540 seconds\r\n#\r\n# Revision: 4\r\n#\r\n"
    "DISCID=0e021a03\r\nDTITLE=The Loopbacks / Songs of the Interface\r\n"
    "TTITLE0=Handshake\r\nTTITLE1=A Very Long Title That The Server Split Over \r\n"
    "TTITLE1=Two Lines\r\nTTITLE2=Quit\r\nEXTD=Recorded at 127.0.0.1\r\n"
    "EXTT0=first\r\nEXTT1=\r\nEXTT2=last\r\nPLAYORDER=\r\n.\r\n";

class CddbClientTest : public CdBaseFixture {
  protected:
    void SetUp() override {
        CdBaseFixture::SetUp();
        server = std::make_unique<LoopbackCddbServer>();
        server->on("cddb hello", "200 Hello and welcome me@here running ActiveX 1.0.\r\n");
        CdBase& c = make();
        c.Server = "127.0.0.1";
        c.Port = qint16(server->port());
        c.setEmail("me@here");
        c.setHostName("host");
        c.setConnectTimeout(30000);
        QObject::connect(&c, &CdBase::DataSent, [this](const QString& t, int) { log += t; });
    }
    void TearDown() override {
        server.reset();
        CdBaseFixture::TearDown();
    }
    std::unique_ptr<LoopbackCddbServer> server;
    QString log;
};

TEST_F(CddbClientTest, AnExactMatchIsReadAndParsed) {
    server->on("cddb query", "200 rock 0e021a03 The Loopbacks / Songs of the Interface\r\n");
    server->on("cddb read", kRecord);
    CdBase& c = *cd;
    const QString result = c.GetCddb();
    clock().advance(100);  // the quit is not waited for
    EXPECT_EQ(result,      // log follows on failure
              "The Loopbacks / Songs of the Interface\r\n3\r\nHandshake\r\n"
              "A Very Long Title That The Server Split Over Two Lines\r\nQuit")
        << log.toStdString();
    EXPECT_EQ(server->received, (QStringList{"cddb hello me@here host ActiveX 1.0",
                                             "cddb query 0e021a03 3 150 15010 27755 538",
                                             "cddb read rock 0e021a03", "quit"}));
    EXPECT_EQ(c.Category, "rock");
    EXPECT_EQ(c.DataRev, 4);
    EXPECT_EQ(c.Artist, "The Loopbacks");
    EXPECT_EQ(c.CdTitle, "Songs of the Interface");
    EXPECT_EQ(c.ExtData, "Recorded at 127.0.0.1");
    EXPECT_EQ(c.GetExtTrackData(3), "last");
    EXPECT_EQ(MatchTitle, "The Loopbacks / Songs of the Interface\r\n");
    EXPECT_TRUE(log.startsWith("Connecting to: 127.0.0.1 Port: " + QString::number(c.Port) +
                               "\r\n201 loopback"));
    EXPECT_TRUE(log.contains("cddb read rock 0e021a03\r\n210 rock"));
    EXPECT_TRUE(log.endsWith("quit\r\n") || log.endsWith("Goodbye.\r\n"));
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_FALSE(c.Timer1.isEnabled());
}

TEST_F(CddbClientTest, AServerThatClosesAfterItsBannerFailsTheHandshake) {
    server->closeAfterBanner = true;
    const qint64 start = clock().msecs();
    EXPECT_EQ(cd->GetCddb(), "431 Handshake not successful, closing connection");
    EXPECT_EQ(msgBox().texts(), QStringList{"Timed out waiting for hello responce"});
    EXPECT_GE(clock().msecs() - start, 30000);
    EXPECT_LT(clock().msecs() - start, 31000);
    EXPECT_TRUE(log.contains("Timeout"));
    // The connection is over: the next operation may connect again.
    EXPECT_EQ(cd->Winsock1.State(), 0);
}

TEST_F(CddbClientTest, WithoutAnEmailNothingIsSaid) {
    cd = std::make_unique<CdBase>();
    cd->Server = "127.0.0.1";
    cd->Port = qint16(server->port());
    EXPECT_EQ(cd->GetCddb(), "431 Handshake not successful, closing connection");
    EXPECT_EQ(msgBox().texts(), (QStringList{"Need an email address", "Need a HostName"}));
    EXPECT_FALSE(server->received.join('\n').contains("hello"));
    EXPECT_FALSE(server->received.join('\n').contains("query"));
}

TEST_F(CddbClientTest, TwoCloseMatchesAndUseFirstMatchReadsRowOneWithoutAWindow) {
    server->on("cddb query",
               "211 close matches found\r\nrock 0e021a03 The Loopbacks / Songs\r\n"
               "jazz 0e021a04 Others / Tunes\r\n.\r\n");
    server->on("cddb read", kRecord);
    cd->UseFirstMatch = true;
    bool windowSeen = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout,
                     [&] { windowSeen |= Forms::find<frmCDDBMatches>() != nullptr; });
    watch.start(0);
    cd->GetCddb();
    EXPECT_EQ(CloseMatchCount, 2);
    EXPECT_EQ(CloseMatches[1].Title, "The Loopbacks / Songs\r");
    EXPECT_EQ(CloseMatches[2].Title, "Others / Tunes\r");
    EXPECT_EQ(CloseMatches[2].Category, "jazz");
    EXPECT_EQ(CloseMatches[2].DiscId, "0e021a04");
    EXPECT_TRUE(server->received.contains("cddb read rock 0e021a03"));
    EXPECT_FALSE(windowSeen);
}

TEST_F(CddbClientTest, WithNoDiscTheQueryStillGoesOut) {
    mci->setDisc({}, 0);
    server->on("cddb query", "202 No match found.\r\n");
    EXPECT_EQ(cd->GetCddb(), "");
    clock().advance(100);
    ASSERT_GE(server->received.size(), 2);
    EXPECT_EQ(server->received[1], "cddb query  0  0");
    EXPECT_EQ(msgBox().texts(), QStringList{"202 No exact match"});
    EXPECT_EQ(server->received.last(), "quit");
}

TEST_F(CddbClientTest, ASilentServerOrNoServerTimesOutConnecting) {
    server->banner.clear();
    EXPECT_EQ(cd->GetCddb(), "000 Failure to Connect");
    EXPECT_EQ(msgBox().texts(), QStringList{"Timed out waiting to connect"});
    const quint16 unused = server->port();
    server.reset();  // nobody listens there now
    cd->Port = qint16(unused);
    msgBox().reset();
    EXPECT_EQ(cd->GetCddb(), "000 Failure to Connect");
    EXPECT_EQ(msgBox().texts(), QStringList{"Timed out waiting to connect"});
}

TEST_F(CddbClientTest, TheDefaultServerIsFilledInWhenNoneIsSet) {
    cd->Server.clear();
    cd->Port = 0;
    // Resolution of the real host is not waited for: the socket is closed at once here.
    QTimer::singleShot(0, [&] { cd->Timer1.fire(); });
    cd->GetCddb();
    EXPECT_EQ(cd->Server, "gnudb.gnudb.org");
    EXPECT_EQ(cd->Port, 8880);
}

TEST_F(CddbClientTest, AGivenQueryStringIsSentAsItStands) {
    server->on("cddb query", "202 No match\r\n");
    QString query = "0e021a03 3 150 15010 27755 538";
    cd->GetCddbUseQueryString(query);
    EXPECT_EQ(query, "cddb query 0e021a03 3 150 15010 27755 538\r\n");
    EXPECT_EQ(server->received.value(1), "cddb query 0e021a03 3 150 15010 27755 538");
    EXPECT_TRUE(mci->commands.isEmpty());  // no disc ID was worked out
}

// The same client on the real clock: the production waits, which sleep in the event loop
// between notifications, collect a record sent in many pieces, one cut inside its ending.
class CddbClientRealTimeTest : public CddbClientTest {
  protected:
    void SetUp() override {
        CddbClientTest::SetUp();
        Components::provideService<Clock>(std::make_shared<QtClock>());
        // Timers made under the fake clock are armed afresh on the real one.
        server = std::make_unique<LoopbackCddbServer>();
        server->on("cddb hello", "200 Hello and welcome.\r\n");
        cd->Port = qint16(server->port());
        cd->setConnectTimeout(5000);
    }
    // Lets the quit reach the server and its close come back, as between two commands.
    void settle() { Clock::get().wait(150); }
};

TEST_F(CddbClientRealTimeTest, ARecordInManyPiecesIsWhole) {
    QList<QByteArray> pieces;
    const qsizetype cut = kRecord.size() - 3;
    for (qsizetype at = 0; at < cut; at += 97)
        pieces << kRecord.mid(at, std::min<qsizetype>(97, cut - at));
    pieces << kRecord.mid(cut);
    server->on("cddb query", "200 rock 0e021a03 The Loopbacks / Songs of the Interface\r\n");
    server->on("cddb read", pieces);
    int arrivals = 0;
    QObject::connect(&cd->Winsock1, &Winsock::DataArrival, [&] { ++arrivals; });
    EXPECT_EQ(cd->GetCddb(),
              "The Loopbacks / Songs of the Interface\r\n3\r\nHandshake\r\n"
              "A Very Long Title That The Server Split Over Two Lines\r\nQuit");
    EXPECT_GE(arrivals, 3 + int(pieces.size()) - 1);  // banner, hello, query, the pieces
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

TEST_F(CddbClientRealTimeTest, HostileAnswersEndCleanlyWithinTheTimeOut) {
    // Garbage for a query: no code, so a quit and an empty result.
    server->on("cddb query", "\x01\x02 garbage \xff\r\n");
    EXPECT_EQ(cd->GetCddb(), "");
    settle();
    EXPECT_EQ(server->received.last(), "quit");

    // Ten megabytes of one line, properly ended.
    server->on("cddb query", "200 rock 0e021a03 x\r\n");
    QByteArray huge = "210 rock 0e021a03 follows\r\nDTITLE=";
    huge += QByteArray(10 * 1024 * 1024, 'A');
    huge += "\r\n.\r\n";
    server->on("cddb read", huge);
    const QString result = cd->GetCddb();
    EXPECT_EQ(cd->Title.size(), 10 * 1024 * 1024);
    EXPECT_TRUE(result.endsWith("A\r\n0"));
    settle();

    // The server goes away in the middle of a record: the read times out.
    server->on("cddb read", QList<QByteArray>{kRecord.left(300), "<close>"});
    msgBox().reset();
    EXPECT_EQ(cd->GetCddb(), "600 Timeout");
    EXPECT_EQ(msgBox().texts(), QStringList{"Timed out waiting for read responce"});
}

TEST_F(CddbClientRealTimeTest, AByteASecondTimesOutWhileOtherEventsRun) {
    server->on("cddb query", "200 rock 0e021a03 x\r\n");
    server->drip("cddb read", kRecord);
    int ticks = 0;
    Timer user(100);  // stands for the window's own timer, or a click, during the wait
    QObject::connect(&user, &Timer::timeout, [&] { ++ticks; });
    user.setEnabled(true);
    QElapsedTimer took;
    took.start();
    EXPECT_EQ(cd->GetCddb(), "600 Timeout");
    EXPECT_GE(took.elapsed(), 4500);  // coarse timers may end up to 5 % early
    EXPECT_LT(took.elapsed(), 5000 + 2000);
    EXPECT_GT(ticks, 20);
    EXPECT_TRUE(msgBox().texts().contains("Timed out waiting for read responce"));
}

TEST_F(CddbClientRealTimeTest, SitesCategoriesAndTheMessageOfTheDay) {
    server->on("sites",
               "210 Ok, site information follows (until terminating `.')\r\n"
               "a.example 888 N037.23 W121.53 Near\r\nb.example 8880 N000.00 W000.00 Far\r\n.\r\n");
    EXPECT_EQ(cd->GetSites(), 2);
    EXPECT_EQ(cd->SiteAddress(1), "a.example");
    EXPECT_EQ(cd->SitePort(1), 888);
    EXPECT_EQ(cd->SiteLocation(1), " N037.23 W121.53 Near");
    EXPECT_EQ(cd->SitePort(2), 8880);
    EXPECT_EQ(cd->SiteLocation(2), "0 N000.00 W000.00 Far");
    EXPECT_EQ(cd->SiteAddress(3), "");
    settle();

    server->on("cddb lscat", "210 OK, category list follows\r\nblues\r\nrock\r\n.\r\n");
    EXPECT_EQ(cd->Getlscat(), 2);
    EXPECT_EQ(cd->GetCategory(2), "rock");
    EXPECT_EQ(cd->GetCategory(3), "");
    settle();

    server->on("motd", "210 Last modified: today\r\nHello\r\n.\r\n");
    server->received.clear();
    EXPECT_EQ(cd->GetMotd(), "210 Last modified: today\r\nHello\r\n.\r\n");
    settle();
    EXPECT_EQ(server->received.count("motd"), 2);

    server->on("sites", "401 No site information available.\r\n.\r\n");
    EXPECT_EQ(cd->GetSites(), 0);
    settle();

    // Found connected already (a connection cddbSend left open), both still end with a quit.
    for (const auto& ask : {std::function<void()>([&] { EXPECT_EQ(cd->GetSites(), 0); }),
                            std::function<void()>([&] { EXPECT_EQ(cd->GetMotd(), "Error"); })}) {
        cd->cddbSend("");
        ASSERT_EQ(cd->Winsock1.State(), Winsock::sckConnected);
        server->received.clear();
        ask();
        settle();
        EXPECT_EQ(server->received, QStringList{"quit"});
    }
}

TEST_F(CddbClientRealTimeTest, AnswerCodesThatShowABox) {
    const QList<std::pair<QByteArray, QString>> cases{
        {"202 No match found.\r\n", "202 No exact match"},
        {"403 Database entry is corrupt.\r\n", "403 Database entry Is corrupt"},
        {"409 No handshake.\r\n", "409 No handshake"}};
    for (const auto& [answer, box] : cases) {
        msgBox().reset();
        server->on("cddb query", answer);
        EXPECT_EQ(cd->GetCddb(), "");
        EXPECT_EQ(msgBox().texts(), QStringList{box});
        settle();
    }
}

TEST_F(CddbClientRealTimeTest, TheMatchWindowReadsTheChosenRowAndClosingItReadsTheFirst) {
    server->on("cddb query",
               "211 close matches found\r\nrock 0e021a03 The Loopbacks / Songs\r\n"
               "jazz 0e021a04 Others / Tunes\r\n.\r\n");
    server->on("cddb read", kRecord);
    cd->CloseMatchWinLeft = 40;
    cd->CloseMatchWinTop = 30;
    QStringList lines;
    QPoint placed;
    QTimer pick;
    QObject::connect(&pick, &QTimer::timeout, [&] {
        if (auto* w = Forms::find<frmCDDBMatches>(); w && w->isVisible()) {
            pick.stop();
            for (int i = 0; i < w->lstMatches->count(); ++i)
                lines << w->lstMatches->item(i)->text();
            placed = w->pos();
            w->lstMatches->setCurrentRow(1);
            w->cmdSelect_Click();
        }
    });
    pick.start(0);
    cd->GetCddb();
    EXPECT_EQ(lines, (QStringList{"The Loopbacks / Songs\r / rock", "Others / Tunes\r / jazz"}));
    EXPECT_EQ(placed, QPoint(40, 30));
    EXPECT_TRUE(server->received.contains("cddb read jazz 0e021a04"));
    settle();

    QTimer closeIt;
    QObject::connect(&closeIt, &QTimer::timeout, [&] {
        if (auto* w = Forms::find<frmCDDBMatches>(); w && w->isVisible()) {
            closeIt.stop();
            w->close();
        }
    });
    closeIt.start(0);
    server->received.clear();
    cd->GetCddb();
    EXPECT_TRUE(server->received.contains("cddb read rock 0e021a03"));
}

}  // namespace
}  // namespace cantovel::test
