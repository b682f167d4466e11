// The CDDB access player: its window driven by its menus on a disc image, looking discs up on
// servers the test runs on the loopback interface, well-behaved and hostile; and the xmcd record
// read into properties and written back for submission.

#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <functional>

#include "app/Forms.h"
#include "cd/TrafficLog.h"
#include "cd/frmCDDBMain.h"
#include "cd/frmCDDBMatches.h"
#include "cd/frmCDDBSites.h"
#include "platform/cddrives/CdaFile.h"
#include "platform/cddrives/LibcdioCdDrives.h"
#include "platform/clock/QtClock.h"
#include "platform/mci/CdioMciDevice.h"
#include "support/AppTest.h"
#include "support/DiscImage.h"
#include "support/ImageDrives.h"
#include "support/LoopbackCddbServer.h"
#include "support/ScopedEnv.h"

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

class CddbTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        env.set("CANTOVEL_AO", QByteArray("null"));
        // The CUE tells of tracks of 20, 30 and 10 s; the BIN ends 5 s into the second.
        disc = DiscImage::buildSeconds(tempDir(), {20, 30, 10});
        ASSERT_TRUE(QFile::resize(disc.binPath(), 25 * 75 * DiscImage::kSectorBytes));
        env.set("CANTOVEL_CD_IMAGES", disc.cuePath());
        drives = std::make_shared<LibcdioCdDrives>();
        Components::provideService<CdDrives>(drives);
        Components::provideFactory<MciDevice>([] { return std::make_unique<CdioMciDevice>(); });
        savedInput = frmCDDBMain::InputBox;
        frmCDDBMain::InputBox = [this](const QString& prompt, const QString& title,
                                       const QString& value) {
            asked << prompt + "|" + title + "|" + value;
            return answer;
        };
        window = new frmCDDBMain;
        cd = &window->CdBase1;
    }
    void TearDown() override {
        if (window) window->unload();
        frmCDDBMain::InputBox = savedInput;
        server.reset();
        AppTest::TearDown();
    }
    QStringList rows() const {
        QStringList out;
        for (int i = 0; i < window->lvwSongList->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* item = window->lvwSongList->topLevelItem(i);
            out << item->text(0) + "|" + item->text(1) + "|" + item->text(2);
        }
        return out;
    }
    QString log() const { return window->Text2->toPlainText(); }
    // A server the window asks; on the real clock unless told otherwise.
    void serve(bool realTime = true) {
        if (realTime) Components::provideService<Clock>(std::make_shared<QtClock>());
        server = std::make_unique<LoopbackCddbServer>();
        server->on("cddb hello", "200 Hello and welcome.\r\n");
        cd->Server = "127.0.0.1";
        cd->Port = qint16(server->port());
        if (realTime) cd->setConnectTimeout(5000);
    }
    // Lets the quit reach the server and its close come back, as between two commands.
    static void settle() { Clock::get().wait(150); }
    // Runs `act` on the match window as soon as it shows.
    static void onMatches(QTimer& timer, const std::function<void(frmCDDBMatches&)>& act) {
        QObject::connect(&timer, &QTimer::timeout, [&timer, act] {
            if (auto* w = Forms::find<frmCDDBMatches>(); w && w->isVisible()) {
                timer.stop();
                act(*w);
            }
        });
        timer.start(0);
    }

    ScopedEnv env;
    DiscImage disc;
    std::shared_ptr<LibcdioCdDrives> drives;
    std::unique_ptr<LoopbackCddbServer> server;
    QPointer<frmCDDBMain> window;
    CdBase* cd = nullptr;
    decltype(frmCDDBMain::InputBox) savedInput;
    QStringList asked;
    QString answer;
};

TEST_F(CddbTest, TheWindowPlaysTheDiscAndTellsItsIdTrackAndTime) {
    QStringList words;
    QObject::connect(cd, &CdBase::ModeChange, [&](const QString& w) { words << w; });
    const auto tick = [this] { clock().advance(600); };
    tick();
    window->mnuClose->trigger();
    EXPECT_TRUE(window->mnuClose->isChecked());
    tick();
    // A closed device is opened for the ID and closed again; a short image's tracks end
    // with its data.
    window->mnudiscId->trigger();
    EXPECT_EQ(cd->Mode(), MciDevice::mciModeNotOpen);
    ASSERT_EQ(msgBox().texts(), QStringList{"Disc ID:  0f001903"});
    EXPECT_EQ(msgBox().shown[0].title, "Cantovel - CDDB Disc Information:");
    EXPECT_EQ(cd->SongLength(2, false), 5);
    EXPECT_EQ(cd->SongLength(4, false), 0);

    // The Microsoft ID is the serial of the drive's first track file.
    const CdDrive drive = drives->Drives().value(0);
    const auto cda = CdaFile::read(drives->TrackFolder(drive.Letter) + "/Track01.cda");
    ASSERT_TRUE(cda);
    msgBox().reset();
    window->mnuMSidCalc->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList{QString("Drive ") + drive.Letter + ":/\r\nMS id is: " +
                                            QString::number(cda->Serial, 16).toUpper()});
    EXPECT_EQ(cd->GetMSid("Q") + cd->GetMSid(""), "00");

    window->mnuOpen->trigger();
    window->mnuNext->trigger();
    clock().advance(250);
    EXPECT_EQ(window->windowTitle(), "CDDB Access Player: 0:20");
    const QStringList positions{QString::number(20 * 256), "1500", "20", "0:20", ""};
    for (int format = 1; format <= 5; ++format)
        EXPECT_EQ(cd->Position(format), positions[format - 1]) << format;
    // The current track at a boundary is the later track.
    msgBox().reset();
    window->mnuGetCurrentTrack->trigger();
    window->mnuPrev->trigger();
    window->mnuGetCurrentTrack->trigger();
    EXPECT_EQ(msgBox().texts(), (QStringList{"2", "1"}));

    answer = "2";
    window->mnuPlayTrack->trigger();
    EXPECT_EQ(asked.last(), "Enter Song Number|Play Track|");
    EXPECT_EQ(cd->Mode(), MciDevice::mciModePlay);
    EXPECT_EQ(cd->CurrentTrack(), 2);
    tick();
    window->mnuPause->trigger();
    EXPECT_EQ(cd->Mode(), MciDevice::mciModePause);
    // Track numbers past the disc do nothing.
    answer = "4";
    window->mnuPlayTrack->trigger();
    window->mnuSetCurrentTrack->trigger();
    EXPECT_EQ(cd->Mode(), MciDevice::mciModePause);
    // Play after a pause goes on in the track where it was.
    window->mnuPlay->trigger();
    EXPECT_EQ(cd->Mode(), MciDevice::mciModePlay);
    EXPECT_EQ(cd->CurrentTrack(), 2);
    answer = "1.4";
    window->mnuSetCurrentTrack->trigger();
    EXPECT_EQ(asked.last(), "Enter Track Number|Cantovel CDDB Access Player|1");
    EXPECT_EQ(cd->Mode(), MciDevice::mciModeStop);
    window->mnuPlay->trigger();  // the play starts where the track was set
    EXPECT_EQ(cd->CurrentTrack(), 1);
    window->mnuStop->trigger();
    EXPECT_EQ(cd->Command(), "Stop");

    // Open after an eject takes the disc in again.
    window->mnuEject->trigger();
    tick();
    window->mnuOpen->trigger();
    tick();
    EXPECT_EQ(words, (QStringList{"Device is stopped", "Device is not open", "Device is playing",
                                  "Tray is out", "Device is stopped"}));

    // Without a disc the ID is empty and nothing else is said.
    ASSERT_TRUE(QFile::remove(disc.cuePath()));
    msgBox().reset();
    window->mnudiscId->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList{"Disc ID:  "});
    EXPECT_EQ(cd->LastError().Description, "No Audio CD found");
    EXPECT_EQ(cd->LastError().Number, 0x8004025Au);
    EXPECT_EQ(cd->Mode(), MciDevice::mciModeStop);
    EXPECT_EQ(cd->DiscLength, 25);
    // A device that will not open: no drive at all.
    window->mnuClose->trigger();
    Components::provideService<CdDrives>(std::make_shared<ImageDrives>());
    window->mnuOpen->trigger();
    EXPECT_EQ(cd->LastError().Description, "Unable to open device");
    EXPECT_EQ(cd->LastError().Source, "Cddb Control");
    EXPECT_EQ(cd->Cdid(), "");
}

TEST_F(CddbTest, RecordsFillTheBoxesAndTheirTextsGoBackIntoASubmission) {
    QString text = "TTITLE1=First half \r\nTTITLE1=second half\r\nEXTD=x\r\n";
    EXPECT_EQ(cd->PullData(text, "TTITLE1="), "First half second half");
    EXPECT_EQ(text, "EXTD=x\r\n");
    EXPECT_EQ(cd->RemoveTopLine("a\r\nb\r\n") + cd->RemoveTopLine("no end"), "b\r\n");
    QString escaped = "one\\ntwo";  // changed in place
    EXPECT_EQ(cd->NewLineFix(escaped) + escaped, "one\r\ntwoone\r\ntwo");

    // The character after the slash is taken for a blank; the list follows the EXTT count.
    EXPECT_EQ(cd->ParseReadResponse(
                  "210 rock 0e021a03\r\n# Revision: 3\r\nDTITLE=Artist   /Xalbum\r\nTTITLE0=a\r\n"
                  "TTITLE1=b\r\nTTITLE2=c\r\nEXTT0=first\r\nPLAYORDER=2,1\r\n.\r\n"),
              "Artist   /Xalbum\r\n3\r\na");
    EXPECT_EQ(cd->DataRev, 3);
    EXPECT_EQ(cd->Artist + "|" + cd->CdTitle + "|" + cd->PlayOrder, "Artist|album|2,1");
    EXPECT_EQ(cd->GetExtTrackData(1), "first");
    EXPECT_EQ(cd->ParseReadResponse("600 Timeout"), "600 Timeout");
    EXPECT_EQ(cd->Category, "rock");
    EXPECT_EQ(cd->ParseReadResponse("210 newage 0e021a03\r\nDTITLE=Just One Title\r\nTTITLE0=a\r\n"
                                    "TTITLE1=b\r\nEXTD=\r\nEXTT0=\r\nEXTT1=\r\n.\r\n"),
              "Just One Title\r\n2\r\na\r\nb");
    EXPECT_EQ(cd->Title + "|" + cd->Artist + "|" + cd->CdTitle,
              "Just One Title|Just One Title|Just One Title");

    // The boxes write their properties on every change.
    cd->DataRev = 0;
    EXPECT_EQ(cd->SubmitString(), "Error: Invalid DataRev number: 0");
    window->txtRevision->setText("1.6");
    window->txtTitle->setText("Only Title");
    cd->Artist.clear();
    cd->CdTitle.clear();
    cd->Tracks = 3;
    EXPECT_EQ(cd->DataRev, 2);
    cd->SetSongName(1, "Song 1");
    cd->SetSongName(2, "Song 2");
    cd->SetSongName(3, "");
    EXPECT_EQ(cd->SubmitString(), "Error: Missing song name on song: 3");
    window->txtTitle->setText("");
    EXPECT_EQ(cd->SubmitString(), "Error: Missing Title");
    window->txtTitle->setText("Only Title");
    cd->SetSongName(3, "Song 3");
    cd->SetExtTrackData(2, "ext two");
    window->txtExtd->setText("disc ext");
    EXPECT_EQ(cd->SubmitString(),
              "# xmcd\r\n#\r\n# Track frame offsets:\r\n# 150\r\n# 1650\r\n# 2025\r\n#\r\n"
              "# Disc length: 27 Seconds\r\n#\r\n# Revision: 2\r\n"
              "# Submitted via: ActiveX 1.0\r\n#\r\nDISCID=0f001903\r\nDTITLE=Only Title\r\n"
              "TTITLE0=Song 1\r\nTTITLE1=Song 2\r\nTTITLE2=Song 3\r\nEXTD=disc ext\r\n"
              "EXTT0=\r\nEXTT1=ext two\r\nEXTT2=\r\nPLAYORDER=\r\n");
    window->txtArtist->setText("A");
    window->txtCdTitle->setText("B");
    window->txtPlayOrder->setText("1,2");
    EXPECT_TRUE(cd->SubmitString().contains("\r\nDTITLE=A / B\r\n"));
    EXPECT_TRUE(cd->SubmitString().endsWith("\r\nPLAYORDER=1,2\r\n"));

    // The greeting's words take no blanks; the time-out is clamped.
    msgBox().reset();
    cd->setEmail("me @here");
    cd->setRevision("2 0");
    cd->setAppName("My App");
    cd->setHostName("my host");
    EXPECT_EQ(cd->Email() + cd->Revision() + cd->AppName(),
              frmCDDBMain::ContactEmail + "1.0ActiveX");
    EXPECT_EQ(msgBox().texts(),
              (QStringList{"No spaces allowed in Email", "No spaces allowed in Revision",
                           "No spaces allowed in AppName", "No spaces allowed in HostName"}));
    EXPECT_EQ(msgBox().shown[1].title + "|" + msgBox().shown[2].title,
              "Cddb Control Error|Cantovel");
    EXPECT_EQ(Mb::iconOf(msgBox().shown[1].style), Mb::Critical);
    for (const auto& [set, read] : {std::pair{100, 5000}, {70000, 65535}}) {
        cd->setConnectTimeout(set);
        EXPECT_EQ(cd->ConnectTimeout(), read);
        EXPECT_EQ(cd->Timer1.interval(), read);
    }
}

TEST_F(CddbTest, FailedLookUpsSayWhyListTheDiscsTracksAndLogWhatPassedWhileOn) {
    serve(false);
    server->on("cddb hello", "<close>");
    const qint64 start = clock().msecs();
    window->mnuLog->trigger();  // off
    window->mnuAccessCddb->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList{"Timed out waiting for hello responce"});
    EXPECT_GE(clock().msecs() - start, 30000);
    EXPECT_EQ(cd->Winsock1.State(), 0);  // the next operation may connect again
    EXPECT_EQ(log(), "");
    window->mnuLog->trigger();  // on again: nothing comes back
    EXPECT_EQ(log(), "");
    EXPECT_EQ(rows(), (QStringList{"Track: 1|0 min 20 sec|", "Track: 2|0 min 5 sec|",
                                   "Track: 3|0 min 0 sec|"}));

    // A server that says nothing, and one that is gone.
    server->banner.clear();
    msgBox().reset();
    window->mnuAccessCddb->trigger();
    EXPECT_TRUE(log().startsWith("Connecting to: 127.0.0.1 Port: " + QString::number(cd->Port)));
    EXPECT_TRUE(log().endsWith("Timeout"));
    window->mnuClearLog->trigger();
    EXPECT_EQ(log(), "");
    server.reset();  // nobody listens there now
    window->mnuAccessCddb->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList(2, "Timed out waiting to connect"));
    // No server set: the default is filled in. Its resolution is not waited for.
    cd->Server.clear();
    cd->Port = 0;
    QTimer::singleShot(0, [&] { cd->Timer1.fire(); });
    window->mnuAccessCddb->trigger();
    EXPECT_EQ(cd->Server + ":" + QString::number(cd->Port), "gnudb.gnudb.org:8880");

    // Without an email or host nothing is said at all.
    serve(false);
    cd->setEmail("");
    cd->setHostName("");
    msgBox().reset();
    window->mnuAccessCddb->trigger();
    EXPECT_EQ(msgBox().texts(), (QStringList{"Need an email address", "Need a HostName"}));
    EXPECT_FALSE(server->received.join('\n').contains("hello"));

    // A double click on a line plays that track.
    window->show();
    QTreeWidgetItem* second = window->lvwSongList->topLevelItem(1);
    const QPoint at = window->lvwSongList->visualItemRect(second).center();
    QTest::mouseClick(window->lvwSongList->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(window->lvwSongList->viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(cd->Mode(), MciDevice::mciModePlay);
    EXPECT_EQ(cd->CurrentTrack(), 2);
}

TEST_F(CddbTest, ARecordInPiecesFillsTheWindowAndHostileAnswersEndCleanly) {
    serve();
    QList<QByteArray> pieces;
    const qsizetype cut = kRecord.size() - 3;  // one cut inside the ending
    for (qsizetype at = 0; at < cut; at += 97)
        pieces << kRecord.mid(at, std::min<qsizetype>(97, cut - at));
    pieces << kRecord.mid(cut);
    server->on("cddb query", "200 rock 0e021a03 The Loopbacks / Songs of the Interface\r\n");
    server->on("cddb read", pieces);
    int arrivals = 0;
    QObject::connect(&cd->Winsock1, &Winsock::DataArrival, [&] { ++arrivals; });
    window->mnuAccessCddb->trigger();
    EXPECT_GE(arrivals, 3 + int(pieces.size()) - 1);  // banner, hello, query, the pieces
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(rows(), (QStringList{"Handshake|0 min 20 sec|first",
                                   "A Very Long Title That The Server Split Over Two Lines|0 min "
                                   "5 sec|",
                                   "Quit|0 min 0 sec|last"}));
    EXPECT_EQ(window->txtArtist->text() + "|" + window->txtCdTitle->text() + "|" +
                  window->txtCategory->text() + "|" + window->txtExtd->text() + "|" +
                  window->txtRevision->text(),
              "The Loopbacks|Songs of the Interface|rock|Recorded at 127.0.0.1|4");
    EXPECT_TRUE(log().contains("cddb read rock 0e021a03\r\n210 rock"));
    settle();
    EXPECT_EQ(
        server->received,
        (QStringList{"cddb hello cantovel@brightfen.com " + cd->HostName() + " ActiveX 1.0",
                     "cddb query 0f001903 3 150 1650 2025 25", "cddb read rock 0e021a03", "quit"}));

    // The query string asked for is sent as it stands.
    server->on("cddb query", "202 No match found.\r\n");
    window->mnuQueryString->trigger();
    EXPECT_EQ(msgBox().texts(), (QStringList{"Below is the query string for the current CD\r\n\r\n"
                                             "0f001903 3 150 1650 2025 25\r\n\r\nHit OK to "
                                             "access database with this string",
                                             "202 No exact match"}));
    settle();
    // Answers without a disc that show a box; garbage gets just the quit.
    ASSERT_TRUE(QFile::remove(disc.cuePath()));
    const QList<std::pair<QByteArray, QStringList>> cases{
        {"403 Database entry is corrupt.\r\n", {"403 Database entry Is corrupt"}},
        {"409 No handshake.\r\n", {"409 No handshake"}},
        {"\x01\x02 garbage \xff\r\n", {}}};
    for (const auto& [reply, box] : cases) {
        msgBox().reset();
        server->on("cddb query", reply);
        window->mnuAccessCddb->trigger();
        EXPECT_EQ(msgBox().texts(), box);
        settle();
        EXPECT_EQ(server->received.last(), "quit");
    }
    // The disc time is the last disc's.
    EXPECT_TRUE(server->received.contains("cddb query  0  25"));

    // The server goes away in the middle of a record: the read times out, while the
    // window's own timers and clicks go on.
    server->on("cddb query", "200 rock 0e021a03 x\r\n");
    server->on("cddb read", QList<QByteArray>{kRecord.left(300), "<close>"});
    msgBox().reset();
    int ticks = 0;
    Timer user(100);
    QObject::connect(&user, &Timer::timeout, [&] { ++ticks; });
    user.setEnabled(true);
    window->mnuAccessCddb->trigger();
    EXPECT_GT(ticks, 10);
    EXPECT_EQ(msgBox().texts(), QStringList{"Timed out waiting for read responce"});
}

TEST_F(CddbTest, TheMatchWindowReadsTheChosenRowAndClosingItReadsTheFirst) {
    serve();
    server->on("cddb query",
               "211 close matches found\r\nrock 0e021a03 The Loopbacks / Songs\r\n"
               "jazz 0e021a04 Others / Tunes\r\n.\r\n");
    server->on("cddb read", kRecord);
    cd->CloseMatchWinLeft = 40;
    cd->CloseMatchWinTop = 30;
    QStringList lines;
    QPoint placed;
    QTimer pick;
    onMatches(pick, [&](frmCDDBMatches& w) {
        for (int i = 0; i < w.lstMatches->count(); ++i) lines << w.lstMatches->item(i)->text();
        placed = w.pos();
        w.lstMatches->setCurrentRow(1);
        w.cmdSelect->click();
    });
    window->mnuAccessCddb->trigger();
    EXPECT_EQ(lines, (QStringList{"The Loopbacks / Songs\r / rock", "Others / Tunes\r / jazz"}));
    EXPECT_EQ(placed, QPoint(40, 30));
    EXPECT_TRUE(server->received.contains("cddb read jazz 0e021a04"));
    settle();

    QTimer closeIt;
    onMatches(closeIt, [](frmCDDBMatches& w) { w.close(); });
    server->received.clear();
    window->mnuAccessCddb->trigger();
    EXPECT_TRUE(server->received.contains("cddb read rock 0e021a03"));
    settle();

    // Told to take the first match, it reads row one and shows no window.
    cd->UseFirstMatch = true;
    bool windowSeen = false;
    QTimer watch;
    onMatches(watch, [&](frmCDDBMatches& w) {
        windowSeen = true;
        w.close();
    });
    server->received.clear();
    window->mnuAccessCddb->trigger();
    EXPECT_FALSE(windowSeen);
    EXPECT_TRUE(server->received.contains("cddb read rock 0e021a03"));
    EXPECT_EQ(window->txtCategory->text(), "rock");
}

TEST_F(CddbTest, TheSitesWindowSetsTheServerAndListsAndMessagesEndWithAQuit) {
    serve();
    server->on("sites",
               "210 Ok, site information follows (until terminating `.')\r\n"
               "a.example 888 N037.23 W121.53 Near\r\nb.example 8880 N000.00 W000.00 Far\r\n.\r\n");
    server->on("motd", "210 Last modified: today\r\nHello\r\n.\r\n");
    server->on("cddb lscat", "210 OK, category list follows\r\nblues\r\nrock\r\n.\r\n");
    QStringList listed;
    QTimer pick;
    QObject::connect(&pick, &QTimer::timeout, [&] {
        auto* w = Forms::find<frmCDDBSites>();
        if (!w || !w->isVisible()) return;
        pick.stop();
        for (int i = 0; i < w->lvwSites->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* item = w->lvwSites->topLevelItem(i);
            listed << item->text(0) + "|" + item->text(1) + "|" + item->text(2);
        }
        QTest::mouseClick(w->lvwSites->viewport(), Qt::LeftButton, {},
                          w->lvwSites->visualItemRect(w->lvwSites->topLevelItem(1)).center());
        w->cmdAccept->click();
    });
    pick.start(0);
    window->mnuSites->trigger();
    EXPECT_EQ(listed, (QStringList{"a.example|888| N037.23 W121.53 Near",
                                   "b.example|8880|0 N000.00 W000.00 Far"}));
    EXPECT_EQ(cd->Server + ":" + QString::number(cd->Port), "b.example:8880");

    cd->Server = "127.0.0.1";
    cd->Port = qint16(server->port());
    settle();
    window->mnumotd->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList{"210 Last modified: today\r\nHello\r\n.\r\n"});
    settle();
    EXPECT_EQ(cd->Getlscat(), 2);
    EXPECT_EQ(cd->GetCategory(2) + "|" + cd->GetCategory(3), "rock|");
    settle();
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

}  // namespace
}  // namespace cantovel::test
