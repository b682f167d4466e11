// The CDDB access player's windows, driven by their menus, on a scripted CD device or a
// disc image, against a loopback server.

#include <QFile>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QTreeWidget>

#include "app/Forms.h"
#include "cd/TrafficLog.h"
#include "cd/frmCDDBMain.h"
#include "cd/frmCDDBSites.h"
#include "platform/cddrives/CdDrives.h"
#include "platform/clock/QtClock.h"
#include "platform/mci/CdioMciDevice.h"
#include "support/CdBaseFixture.h"
#include "support/DiscImage.h"
#include "support/ImageDrives.h"
#include "support/LoopbackCddbServer.h"

namespace cantovel::test {
namespace {

class CddbWindowsTest : public CdBaseFixture {
  protected:
    void SetUp() override {
        CdBaseFixture::SetUp();
        savedInput = frmCDDBMain::InputBox;
        frmCDDBMain::InputBox = [this](const QString& prompt, const QString& title,
                                       const QString& value) {
            asked << prompt + "|" + title + "|" + value;
            return answer;
        };
        window = new frmCDDBMain;
        mci->setDisc({150, 15010, 27755}, 40500);
    }
    void TearDown() override {
        if (window) window->unload();
        frmCDDBMain::InputBox = savedInput;
        CdBaseFixture::TearDown();
    }
    QStringList rows() const {
        QStringList out;
        for (int i = 0; i < window->lvwSongList->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* item = window->lvwSongList->topLevelItem(i);
            out << item->text(0) + "|" + item->text(1) + "|" + item->text(2);
        }
        return out;
    }
    // A server on the real clock, the window asking it.
    std::unique_ptr<LoopbackCddbServer> serve() {
        Components::provideService<Clock>(std::make_shared<QtClock>());
        auto server = std::make_unique<LoopbackCddbServer>();
        server->on("cddb hello", "200 Hello and welcome.\r\n");
        window->CdBase1.Server = "127.0.0.1";
        window->CdBase1.Port = qint16(server->port());
        return server;
    }

    QPointer<frmCDDBMain> window;
    decltype(frmCDDBMain::InputBox) savedInput;
    QStringList asked;
    QString answer;
};

TEST_F(CddbWindowsTest, OpensTheDeviceShowsTheTimeAndClosesItOnUnload) {
    EXPECT_EQ(window->windowTitle(), "Cantovel - CDDB Access Player");
    EXPECT_TRUE(mci->open);
    EXPECT_TRUE(window->mnuOpen->isChecked());
    EXPECT_EQ(window->CdBase1.Email(), frmCDDBMain::ContactEmail);
    EXPECT_EQ(window->CdBase1.HostName(), window->CdBase1.GetMyHostName());
    mci->position = 150 + 65 * 75;
    clock().advance(250);
    EXPECT_EQ(window->windowTitle(), "CDDB Access Player: 1:05");
    window->mnuClose->trigger();
    EXPECT_FALSE(mci->open);
    EXPECT_TRUE(window->mnuClose->isChecked());
    clock().advance(250);
    EXPECT_EQ(window->windowTitle(), "CDDB Access Player: 0:00");
    window->mnuOpen->trigger();
    window->unload();
    EXPECT_EQ(mci->commands.mid(mci->commands.size() - 2), (QStringList{"Stop", "Close"}));
}

TEST_F(CddbWindowsTest, AFailedLookUpListsTheDiscsTracksAndTheLogKeepsWhatPassedWhileOn) {
    window->CdBase1.Server = "127.0.0.1";
    window->CdBase1.Port = 9;   // nobody answers there
    window->mnuLog->trigger();  // off
    window->mnuAccessCddb->trigger();
    EXPECT_EQ(window->Text2->toPlainText(), "");
    window->mnuLog->trigger();  // on again: nothing comes back
    EXPECT_EQ(window->Text2->toPlainText(), "");
    window->mnuAccessCddb->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList(2, "Timed out waiting to connect"));
    EXPECT_EQ(rows(), (QStringList{"Track: 1|3 min 18 sec|", "Track: 2|2 min 49 sec|",
                                   "Track: 3|2 min 49 sec|"}));
    EXPECT_EQ(window->txtRevision->text(), "0");
    EXPECT_TRUE(window->Text2->toPlainText().startsWith("Connecting to: 127.0.0.1 Port: 9"));
    EXPECT_TRUE(window->Text2->toPlainText().endsWith("Timeout"));
    window->mnuClearLog->trigger();
    EXPECT_EQ(window->Text2->toPlainText(), "");

    // A double click on a line plays that track.
    window->show();
    QTreeWidgetItem* second = window->lvwSongList->topLevelItem(1);
    const QPoint at = window->lvwSongList->visualItemRect(second).center();
    QTest::mouseClick(window->lvwSongList->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(window->lvwSongList->viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(mci->from, 15010);
    EXPECT_EQ(mci->to, 27755);
}

TEST_F(CddbWindowsTest, TheSitesWindowSetsTheServerAndTheMessageOfTheDayIsShown) {
    auto server = serve();
    server->on("sites",
               "210 Ok, site information follows (until terminating `.')\r\n"
               "a.example 888 N037.23 W121.53 Near\r\nb.example 8880 N000.00 W000.00 Far\r\n.\r\n");
    server->on("motd", "210 Last modified: today\r\nHello\r\n.\r\n");
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
    EXPECT_EQ(window->CdBase1.Server + ":" + QString::number(window->CdBase1.Port),
              "b.example:8880");

    window->CdBase1.Server = "127.0.0.1";
    window->CdBase1.Port = qint16(server->port());
    Clock::get().wait(150);
    window->mnumotd->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList{"210 Last modified: today\r\nHello\r\n.\r\n"});
}

TEST_F(CddbWindowsTest, DiscIdTrackCommandsAndTheBoxes) {
    window->mnudiscId->trigger();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text, "Disc ID:  0e021a03");
    EXPECT_EQ(msgBox().shown[0].title, "Cantovel - CDDB Disc Information:");
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Information);

    answer = "2.4";
    window->mnuSetCurrentTrack->trigger();
    EXPECT_EQ(asked.last(), "Enter Track Number|Cantovel CDDB Access Player|1");
    mci->position = 15010 + 5;
    window->mnuGetCurrentTrack->trigger();
    EXPECT_EQ(msgBox().texts().last(), "2");
    answer = "3";
    window->mnuPlayTrack->trigger();
    EXPECT_EQ(asked.last(), "Enter Song Number|Play Track|");
    EXPECT_EQ(mci->from, 27755);
    EXPECT_EQ(mci->Mode(), MciDevice::mciModePlay);
    window->mnuPause->trigger();
    EXPECT_EQ(mci->commands.last(), "Pause");

    // The boxes write their properties on every change.
    window->txtRevision->setText("3.6");
    window->txtTitle->setText("T");
    window->txtArtist->setText("A");
    window->txtCdTitle->setText("C");
    window->txtExtd->setText("E");
    window->txtPlayOrder->setText("1,2");
    const CdBase& c = window->CdBase1;
    EXPECT_EQ(c.DataRev, 4);
    EXPECT_EQ(c.Title + c.Artist + c.CdTitle + c.ExtData + c.PlayOrder, "TACE1,2");
}

// The window on the real CD audio device, a disc image in the drive.
class CddbOnAnImageTest : public AppTest {};

// The CUE tells of tracks of 20, 30 and 10 s; the BIN ends 5 s into the second.
TEST_F(CddbOnAnImageTest, AShortImagesTracksEndWithItsDataAndOpenAfterEjectTakesItInAgain) {
    const DiscImage disc = DiscImage::buildSeconds(tempDir(), {20, 30, 10});
    ASSERT_TRUE(QFile::resize(disc.binPath(), 25 * 75 * DiscImage::kSectorBytes));
    auto drives = std::make_shared<ImageDrives>();
    drives->add(disc.cuePath());
    Components::provideService<CdDrives>(drives);
    Components::provideFactory<MciDevice>([] { return std::make_unique<CdioMciDevice>(); });
    QPointer<frmCDDBMain> window = new frmCDDBMain;
    QStringList words;
    QObject::connect(&window->CdBase1, &CdBase::ModeChange,
                     [&](const QString& word) { words << word; });
    window->CdBase1.Server = "127.0.0.1";
    window->CdBase1.Port = 9;  // nobody answers there
    window->mnuQueryString->trigger();
    // Starts in frames, then the disc's time in seconds.
    EXPECT_TRUE(msgBox().texts().value(0).contains("0f001903 3 150 1650 2025 25\r\n"))
        << msgBox().texts().value(0).toStdString();
    QStringList lengths;
    for (int i = 0; i < window->lvwSongList->topLevelItemCount(); ++i)
        lengths << window->lvwSongList->topLevelItem(i)->text(1);
    EXPECT_EQ(lengths, (QStringList{"0 min 20 sec", "0 min 5 sec", "0 min 0 sec"}));

    msgBox().reset();
    window->mnudiscId->trigger();
    const QStringList id = msgBox().texts();
    ASSERT_EQ(id, QStringList{"Disc ID:  0f001903"});

    window->mnuEject->trigger();
    clock().advance(600);
    EXPECT_EQ(words.value(words.size() - 1), "Tray is out");
    window->mnuOpen->trigger();
    clock().advance(600);
    EXPECT_EQ(words.value(words.size() - 1), "Device is stopped");
    msgBox().reset();
    window->mnudiscId->trigger();
    EXPECT_EQ(msgBox().texts(), id);
    window->unload();
}

}  // namespace
}  // namespace cantovel::test
