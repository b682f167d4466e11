// The CDDB access player's windows on a scripted CD device.

#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QTreeWidget>
#include "cd/TrafficLog.h"

#include "app/Forms.h"
#include "cd/frmCDDBMain.h"
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

    QPointer<frmCDDBMain> window;
    decltype(frmCDDBMain::InputBox) savedInput;
    QStringList asked;
    QString answer;
};

TEST_F(CddbWindowsTest, LoadingOpensTheDeviceAndUnloadingStopsAndClosesIt) {
    EXPECT_EQ(window->windowTitle(), "Cantovel - CDDB Access Player");
    EXPECT_TRUE(mci->open);
    EXPECT_TRUE(window->mnuOpen->isChecked());
    EXPECT_FALSE(window->mnuClose->isChecked());
    EXPECT_EQ(window->CdBase1.Email(), frmCDDBMain::ContactEmail);
    EXPECT_EQ(window->CdBase1.HostName(), window->CdBase1.GetMyHostName());
    EXPECT_EQ(window->CdBase1.ConnectTimeout(), 30000);
    window->unload();
    EXPECT_EQ(mci->commands.mid(mci->commands.size() - 2), (QStringList{"Stop", "Close"}));
}

TEST_F(CddbWindowsTest, TheTitleBarShowsTheDiscTime) {
    mci->position = 150 + 65 * 75;
    clock().advance(250);
    EXPECT_EQ(window->windowTitle(), "CDDB Access Player: 1:05");
    window->mnuClose->trigger();
    EXPECT_FALSE(mci->open);
    EXPECT_TRUE(window->mnuClose->isChecked());
    clock().advance(250);
    EXPECT_EQ(window->windowTitle(), "CDDB Access Player: 0:00");
}

TEST_F(CddbWindowsTest, AFailedLookUpListsTheTracksOfTheDiscWithTheirLengths) {
    window->CdBase1.Server = "127.0.0.1";
    window->CdBase1.Port = 9;  // nobody answers there
    window->mnuAccessCddb->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList{"Timed out waiting to connect"});
    EXPECT_EQ(rows(), (QStringList{"Track: 1|3 min 18 sec|", "Track: 2|2 min 49 sec|",
                                   "Track: 3|2 min 49 sec|"}));
    EXPECT_EQ(window->txtRevision->text(), "0");
    EXPECT_TRUE(window->Text2->toPlainText().startsWith("Connecting to: 127.0.0.1 Port: 9"));
    EXPECT_TRUE(window->Text2->toPlainText().endsWith("Timeout"));
}

TEST_F(CddbWindowsTest, TheLogKeepsOnlyWhatPassedWhileItWasOn) {
    window->mnuLog->trigger();  // off
    window->CdBase1.Server = "127.0.0.1";
    window->CdBase1.Port = 9;
    window->CdBase1.GetSites();
    EXPECT_EQ(window->Text2->toPlainText(), "");
    window->mnuLog->trigger();  // on again: nothing comes back
    EXPECT_EQ(window->Text2->toPlainText(), "");
    window->CdBase1.GetSites();
    EXPECT_FALSE(window->Text2->toPlainText().isEmpty());
    window->mnuClearLog->trigger();
    EXPECT_EQ(window->Text2->toPlainText(), "");
}

TEST_F(CddbWindowsTest, TheLogKeepsAllOfATenMegabyteAnswer) {
    Components::provideService<Clock>(std::make_shared<QtClock>());
    LoopbackCddbServer server;
    server.on("cddb hello", "200 Hello and welcome.\r\n");
    server.on("cddb query", "200 rock 0e021a03 x\r\n");
    QByteArray huge = "210 rock 0e021a03 follows\r\nDTITLE=";
    huge += QByteArray(10 * 1024 * 1024, 'A');
    huge += "\r\n.\r\n";
    server.on("cddb read", huge);
    window->CdBase1.Server = "127.0.0.1";
    window->CdBase1.Port = qint16(server.port());
    window->mnuAccessCddb->trigger();
    Clock::get().wait(150);  // the quit goes out
    const QString log = window->Text2->toPlainText();
    EXPECT_GT(log.size(), 10 * 1024 * 1024);
    EXPECT_TRUE(log.startsWith("Connecting to: 127.0.0.1"));
    EXPECT_TRUE(log.contains("DTITLE=AAAA"));
    EXPECT_TRUE(log.contains(QString(10 * 1024 * 1024, 'A')));
    EXPECT_TRUE(log.contains(".\r\nquit\r\n")) << log.right(80).toStdString();
}

TEST_F(CddbWindowsTest, TheBoxesWriteTheirPropertiesOnEveryChange) {
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

TEST_F(CddbWindowsTest, DiscIdAndTrackCommands) {
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
}

TEST_F(CddbWindowsTest, ADoubleClickPlaysTheSelectedLine) {
    window->lvwSongList->clear();
    window->lvwSongList_DblClick();  // an empty list does nothing
    EXPECT_EQ(mci->Mode(), MciDevice::mciModeStop);
    window->CdBase1.Cdid();
    window->RefreshDisplay();
    window->lvwSongList->setCurrentItem(window->lvwSongList->topLevelItem(1));
    window->lvwSongList_DblClick();
    EXPECT_EQ(mci->from, 15010);
    EXPECT_EQ(mci->to, 27755);
}

// The window on the real CD audio device, a disc image in the drive.
class CddbOnAnImageTest : public AppTest {};

TEST_F(CddbOnAnImageTest, OpenAfterEjectTakesTheDiscInAgain) {
    auto drives = std::make_shared<ImageDrives>();
    drives->add(DiscImage::buildSeconds(tempDir(), {20, 30}).cuePath());
    Components::provideService<CdDrives>(drives);
    Components::provideFactory<MciDevice>([] { return std::make_unique<CdioMciDevice>(); });
    QPointer<frmCDDBMain> window = new frmCDDBMain;
    QStringList words;
    QObject::connect(&window->CdBase1, &CdBase::ModeChange,
                     [&](const QString& word) { words << word; });
    window->mnudiscId->trigger();
    const QStringList id = msgBox().texts();
    ASSERT_EQ(id.size(), 1);
    ASSERT_NE(id[0], "Disc ID:  ");

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
