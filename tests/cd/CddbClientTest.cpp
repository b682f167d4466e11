// The CDDB client against servers the test runs on the loopback interface, well-behaved
// and hostile, in virtual time.

#include <QTimer>

#include "app/Forms.h"
#include "cd/CdBase_Code.h"
#include "cd/frmCDDBMatches.h"
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

}  // namespace
}  // namespace cantovel::test
