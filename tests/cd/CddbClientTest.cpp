// The CDDB client against servers the test runs on the loopback interface, well-behaved
// and hostile, in virtual time and on the real clock.

#include <QListWidget>
#include <QPushButton>
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
const QString kParsed =
    "The Loopbacks / Songs of the Interface\r\n3\r\nHandshake\r\n"
    "A Very Long Title That The Server Split Over Two Lines\r\nQuit";
const QByteArray kTwoMatches =
    "211 close matches found\r\nrock 0e021a03 The Loopbacks / Songs\r\n"
    "jazz 0e021a04 Others / Tunes\r\n.\r\n";

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
    EXPECT_EQ(c.GetCddb(), kParsed) << log.toStdString();
    clock().advance(100);  // the quit is not waited for
    EXPECT_EQ(server->received, (QStringList{"cddb hello me@here host ActiveX 1.0",
                                             "cddb query 0e021a03 3 150 15010 27755 538",
                                             "cddb read rock 0e021a03", "quit"}));
    EXPECT_EQ(c.Category + "|" + c.Artist + "|" + c.CdTitle + "|" + c.ExtData,
              "rock|The Loopbacks|Songs of the Interface|Recorded at 127.0.0.1");
    EXPECT_EQ(c.DataRev, 4);
    EXPECT_EQ(c.GetExtTrackData(3), "last");
    EXPECT_TRUE(log.startsWith("Connecting to: 127.0.0.1 Port: " + QString::number(c.Port) +
                               "\r\n201 loopback"));
    EXPECT_TRUE(log.contains("cddb read rock 0e021a03\r\n210 rock"));
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_FALSE(c.Timer1.isEnabled());

    // A given query string is sent as it stands, no disc ID worked out.
    server->on("cddb query", "202 No match\r\n");
    mci->commands.clear();
    QString query = "0e021a03 3 150 15010 27755 538";
    c.GetCddbUseQueryString(query);
    EXPECT_EQ(query, "cddb query 0e021a03 3 150 15010 27755 538\r\n");
    EXPECT_TRUE(mci->commands.isEmpty());
}

TEST_F(CddbClientTest, HandshakesThatFailAndServersThatDoNotAnswer) {
    server->closeAfterBanner = true;
    const qint64 start = clock().msecs();
    EXPECT_EQ(cd->GetCddb(), "431 Handshake not successful, closing connection");
    EXPECT_EQ(msgBox().texts(), QStringList{"Timed out waiting for hello responce"});
    EXPECT_GE(clock().msecs() - start, 30000);
    EXPECT_EQ(cd->Winsock1.State(), 0);  // the next operation may connect again

    server->closeAfterBanner = false;
    server->banner.clear();  // silent
    msgBox().reset();
    EXPECT_EQ(cd->GetCddb(), "000 Failure to Connect");
    const quint16 unused = server->port();
    server.reset();  // nobody listens there now
    cd->Port = qint16(unused);
    EXPECT_EQ(cd->GetCddb(), "000 Failure to Connect");
    EXPECT_EQ(msgBox().texts(), QStringList(2, "Timed out waiting to connect"));

    // No server set: the default is filled in. Its resolution is not waited for.
    cd->Server.clear();
    cd->Port = 0;
    QTimer::singleShot(0, [&] { cd->Timer1.fire(); });
    cd->GetCddb();
    EXPECT_EQ(cd->Server + ":" + QString::number(cd->Port), "gnudb.gnudb.org:8880");

    // Without an email or host nothing is said at all.
    server = std::make_unique<LoopbackCddbServer>();
    cd = std::make_unique<CdBase>();
    cd->Server = "127.0.0.1";
    cd->Port = qint16(server->port());
    msgBox().reset();
    EXPECT_EQ(cd->GetCddb(), "431 Handshake not successful, closing connection");
    EXPECT_EQ(msgBox().texts(), (QStringList{"Need an email address", "Need a HostName"}));
    EXPECT_FALSE(server->received.join('\n').contains("hello"));
}

// On the real clock: the production waits, which sleep in the event loop between
// notifications, collect a record sent in many pieces, one cut inside its ending.
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

TEST_F(CddbClientRealTimeTest, ARecordInManyPiecesIsWholeAndHostileAnswersEndCleanly) {
    QList<QByteArray> pieces;
    const qsizetype cut = kRecord.size() - 3;
    for (qsizetype at = 0; at < cut; at += 97)
        pieces << kRecord.mid(at, std::min<qsizetype>(97, cut - at));
    pieces << kRecord.mid(cut);
    server->on("cddb query", "200 rock 0e021a03 The Loopbacks / Songs of the Interface\r\n");
    server->on("cddb read", pieces);
    int arrivals = 0;
    QObject::connect(&cd->Winsock1, &Winsock::DataArrival, [&] { ++arrivals; });
    EXPECT_EQ(cd->GetCddb(), kParsed);
    EXPECT_GE(arrivals, 3 + int(pieces.size()) - 1);  // banner, hello, query, the pieces
    EXPECT_TRUE(msgBox().shown.isEmpty());
    settle();

    // Garbage for a query: no code, so a quit and an empty result.
    server->on("cddb query", "\x01\x02 garbage \xff\r\n");
    EXPECT_EQ(cd->GetCddb(), "");
    settle();
    EXPECT_EQ(server->received.last(), "quit");

    // The server goes away in the middle of a record: the read times out, while the
    // window's own timers and clicks go on.
    server->on("cddb query", "200 rock 0e021a03 x\r\n");
    server->on("cddb read", QList<QByteArray>{kRecord.left(300), "<close>"});
    msgBox().reset();
    int ticks = 0;
    Timer user(100);
    QObject::connect(&user, &Timer::timeout, [&] { ++ticks; });
    user.setEnabled(true);
    EXPECT_EQ(cd->GetCddb(), "600 Timeout");
    EXPECT_GT(ticks, 10);
    EXPECT_EQ(msgBox().texts(), QStringList{"Timed out waiting for read responce"});
}

TEST_F(CddbClientRealTimeTest, CategoriesSitesAndMessagesEndWithAQuit) {
    server->on("cddb lscat", "210 OK, category list follows\r\nblues\r\nrock\r\n.\r\n");
    EXPECT_EQ(cd->Getlscat(), 2);
    EXPECT_EQ(cd->GetCategory(2) + "|" + cd->GetCategory(3), "rock|");
    settle();
    server->on("sites", "401 No site information available.\r\n.\r\n");
    EXPECT_EQ(cd->GetSites(), 0);
    settle();
    // Found connected already (a connection cddbSend left open), both still end with a quit.
    server->on("motd", "210 Last modified: today\r\nHello\r\n.\r\n");
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

TEST_F(CddbClientRealTimeTest, AnswerCodesThatShowABoxEvenWithoutADisc) {
    mci->setDisc({}, 0);
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
    EXPECT_EQ(server->received.value(1), "cddb query  0  0");
}

TEST_F(CddbClientRealTimeTest, TheMatchWindowReadsTheChosenRowAndClosingItReadsTheFirst) {
    server->on("cddb query", kTwoMatches);
    server->on("cddb read", kRecord);
    cd->CloseMatchWinLeft = 40;
    cd->CloseMatchWinTop = 30;
    QStringList lines;
    QPoint placed;
    const auto onWindow = [](QTimer& timer, const std::function<void(frmCDDBMatches&)>& act) {
        QObject::connect(&timer, &QTimer::timeout, [&timer, act] {
            if (auto* w = Forms::find<frmCDDBMatches>(); w && w->isVisible()) {
                timer.stop();
                act(*w);
            }
        });
        timer.start(0);
    };
    QTimer pick;
    onWindow(pick, [&](frmCDDBMatches& w) {
        for (int i = 0; i < w.lstMatches->count(); ++i) lines << w.lstMatches->item(i)->text();
        placed = w.pos();
        w.lstMatches->setCurrentRow(1);
        w.cmdSelect->click();
    });
    cd->GetCddb();
    EXPECT_EQ(lines, (QStringList{"The Loopbacks / Songs\r / rock", "Others / Tunes\r / jazz"}));
    EXPECT_EQ(placed, QPoint(40, 30));
    EXPECT_TRUE(server->received.contains("cddb read jazz 0e021a04"));
    settle();

    QTimer closeIt;
    onWindow(closeIt, [](frmCDDBMatches& w) { w.close(); });
    server->received.clear();
    cd->GetCddb();
    EXPECT_TRUE(server->received.contains("cddb read rock 0e021a03"));
    settle();

    // Told to take the first match, it reads row one and shows no window.
    cd->UseFirstMatch = true;
    bool windowSeen = false;
    QTimer watch;
    onWindow(watch, [&](frmCDDBMatches& w) {
        windowSeen = true;
        w.close();
    });
    server->received.clear();
    cd->GetCddb();
    EXPECT_FALSE(windowSeen);
    EXPECT_TRUE(server->received.contains("cddb read rock 0e021a03"));
    EXPECT_EQ(CloseMatchCount, 2);
    EXPECT_EQ(CloseMatches[2].Category + CloseMatches[2].DiscId + CloseMatches[2].Title,
              "jazz0e021a04Others / Tunes\r");
}

}  // namespace
}  // namespace cantovel::test
