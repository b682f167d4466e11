// CD to WAV and its copy dialog on a scripted reader, in virtual time: the selection
// checks, the save dialog, runs that end well, are cancelled or fail, the progress rows,
// the conversion options, and the window's own CD and WAV players.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <functional>
#include <memory>

#include "app/AppState.h"
#include "app/Forms.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "cd/CDTrackListView.h"
#include "convert/frmCDtoWAV.h"
#include "convert/frmConfigDlg.h"
#include "convert/frmCopyDlg.h"
#include "support/AppTest.h"
#include "support/FakeCDReader.h"
#include "support/FakeFileDialogs.h"
#include "support/FakeMediaPlayer.h"
#include "support/FakeMixer.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class CDtoWAVTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        AppClosing = VFalse;
        mixer = std::make_shared<FakeMixer>();
        dialogs = std::make_shared<FakeFileDialogs>();
        Components::provideService<Mixer>(mixer);
        Components::provideService<FileDialogs>(dialogs);
        FakeCDReader::install();
        FakeMediaPlayer::install();
        FakeCDReader::setTracks({20, 10, 30});
    }
    void TearDown() override {
        watchers.clear();
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        AppTest::TearDown();
    }
    frmCDtoWAV& open() { return *new frmCDtoWAV(); }
    static FakeCDReader& reader(frmCDtoWAV& f) {
        return *static_cast<FakeCDReader*>(f.CDReader.get());
    }
    static void selectOnly(frmCDtoWAV& f, std::initializer_list<int> lines) {
        f.ListView->clearSelection();
        for (int i : lines) f.ListView->topLevelItem(i)->setSelected(true);
        f.ListView->setCurrentItem(f.ListView->topLevelItem(*lines.begin()), 0,
                                   QItemSelectionModel::NoUpdate);
    }
    // Runs `act` once `ready` holds, looking every 10 ms of virtual time: what a user does
    // while the modal copy dialog is up.
    void when(std::function<bool()> ready, std::function<void()> act) {
        auto timer = std::make_unique<cantovel::Timer>(10);
        cantovel::Timer* t = timer.get();
        QObject::connect(t, &cantovel::Timer::timeout, [t, ready, act] {
            if (!ready()) return;
            t->setEnabled(false);
            act();
        });
        t->setEnabled(true);
        watchers.push_back(std::move(timer));
    }
    static frmCopyDlg* dialog() { return Forms::find<frmCopyDlg>(); }
    static QStringList messages(frmCopyDlg& d) {
        QStringList rows;
        for (int i = 0; i < d.Messages->count(); ++i) rows << d.Messages->item(i)->text();
        return rows;
    }
    // Clicks "Close" when the dialog offers it, keeping its rows for the test.
    void closeWhenDone() {
        when([] { return dialog() && dialog()->btnAbort->text() == "Close"; },
             [this] {
                 finalRows = messages(*dialog());
                 finalPercent2 = dialog()->lblPercent2->text();
                 dialog()->btnAbort_Click();
             });
    }
    void convertTo(frmCDtoWAV& f, const QString& base) {
        dialogs->scriptFiles({base});
        f.CopyTracks1_Click();
    }

    std::shared_ptr<FakeMixer> mixer;
    std::shared_ptr<FakeFileDialogs> dialogs;
    std::vector<std::unique_ptr<cantovel::Timer>> watchers;
    QStringList finalRows;
    QString finalPercent2;
};

const QString kOutputDirectory = QStringLiteral("CD to WAV Output Directory");

TEST_F(CDtoWAVTest, AMachineWithoutADriveOpensWithAnEmptyListAndNoTick) {
    FakeCDReader::disc().devices.clear();
    frmCDtoWAV& f = open();
    EXPECT_EQ(f.windowTitle(), "Cantovel - Convert CD Track to WAV");
    EXPECT_EQ(f.DevCombo->count(), 0);
    EXPECT_EQ(f.ListView->topLevelItemCount(), 0);
    EXPECT_FALSE(f.Timer.isEnabled());
    clock().advance(3000);
    EXPECT_EQ(f.Panels[0]->text(), "");
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

TEST_F(CDtoWAVTest, ADataTrackAmongTheSelectionConvertsNothing) {
    FakeCDReader::disc().tracks[1].IsAudio = false;
    frmCDtoWAV& f = open();
    selectOnly(f, {0, 1, 2});
    f.CopyTracks1_Click();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text,
              "A selected track is not of audio content.  \r\n\r\nEnsure the correct CD is in "
              "your drive before proceeding.");
    EXPECT_EQ(msgBox().shown[0].style, Mb::Exclamation | Mb::SetForeground);
    EXPECT_TRUE(dialogs->calls.isEmpty());
    EXPECT_FALSE(reader(f).calls.join(',').contains("CopyTrack"));

    f.ListView->clearSelection();
    f.CopyTracks1_Click();
    EXPECT_EQ(msgBox().shown.value(1).text,
              "You must select the audio track(s) you wish to convert before proceeding.");
}

TEST_F(CDtoWAVTest, CancellingTheSaveDialogKeepsTheStoredFolder) {
    SaveAppSetting(kOutputDirectory, QStringLiteral("/music/cd"));
    frmCDtoWAV& f = open();
    dialogs->scriptCancel();
    f.CopyTracks1_Click();
    ASSERT_EQ(dialogs->calls.size(), 1);
    const FileDialogRequest& r = dialogs->calls[0].request;
    EXPECT_EQ(dialogs->calls[0].kind, DialogCall::Save);
    EXPECT_EQ(r.title, "Select the Folder and Enter the Filename for the Output WAV File...");
    EXPECT_EQ(r.fileName, "track");
    EXPECT_EQ(r.filter, "WAV Files|*.wav");
    EXPECT_EQ(r.initDir, "/music/cd");
    EXPECT_EQ(ReadAppSetting(kOutputDirectory, {}), "/music/cd");
    EXPECT_TRUE(f.Timer.isEnabled());
    EXPECT_EQ(dialog(), nullptr);
    // The conversion always reopens the drive first.
    EXPECT_EQ(reader(f).calls.filter("Open").size(), 2);
}

TEST_F(CDtoWAVTest, ConvertsTheSelectedTracksOneAfterTheOther) {
    frmCDtoWAV& f = open();
    selectOnly(f, {0, 2});
    closeWhenDone();
    convertTo(f, tempDir() + QStringLiteral("/rip.wav"));
    EXPECT_EQ(reader(f).calls.filter("CopyTrack"),
              QStringList({"CopyTrack=0:" + tempDir() + "/rip01.wav",
                           "CopyTrack=2:" + tempDir() + "/rip03.wav"}));
    EXPECT_EQ(finalRows, QStringList({"Copying Track 01", "Copying Track 03",
                                      "Copy completed without any errors."}));
    EXPECT_EQ(finalPercent2, "100.0 %");
    EXPECT_TRUE(QFile::exists(tempDir() + "/rip03.wav"));
    EXPECT_EQ(ReadAppSetting(kOutputDirectory, {}), ParsePathParts(tempDir() + "/rip.wav", "l"));
    EXPECT_TRUE(f.Timer.isEnabled());
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(dialog(), nullptr);
}

TEST_F(CDtoWAVTest, TheProgressRowsMoveAndBothEndAtAHundredForOneTrack) {
    FakeCDReader::disc().copyFramesPer100Ms = 75;  // ten times the audio's own pace
    frmCDtoWAV& f = open();
    selectOnly(f, {1});
    QString midPercent, midSpeed, lastRow1, lastRemaining1;
    when([] { return dialog() && dialog()->TrackFramesDone >= 300; },
         [&] {
             midPercent = dialog()->lblPercent1->text();
             midSpeed = dialog()->lblSpeed1->text();
         });
    when([] { return dialog() && dialog()->btnAbort->text() == "Close"; },
         [&] {
             lastRow1 = dialog()->lblPercent1->text();
             lastRemaining1 = dialog()->lblRemaining1->text();
             finalPercent2 = dialog()->lblPercent2->text();
             EXPECT_EQ(dialog()->Meter2->value(), 100);
             dialog()->btnAbort_Click();
         });
    convertTo(f, tempDir() + QStringLiteral("/one.wav"));
    // Some 300 frames of 750, read at 750 frames a second: 40 % at 10 X.
    EXPECT_TRUE(midPercent.endsWith(" %")) << midPercent.toStdString();
    EXPECT_GT(midPercent.chopped(2).toDouble(), 30);
    EXPECT_LT(midPercent.chopped(2).toDouble(), 60);
    EXPECT_NEAR(midSpeed.chopped(2).toDouble(), 10.0, 1.5);
    EXPECT_EQ(lastRow1, "100.0 %");
    EXPECT_EQ(lastRemaining1, TimeToString(0));
    EXPECT_EQ(finalPercent2, "100.0 %");
}

TEST_F(CDtoWAVTest, TheFirstTickBeforeAnyFrameShowsANegativeRemainingTime) {
    FakeCDReader::disc().copyFramesPer100Ms = 0;
    frmCDtoWAV& f = open();
    selectOnly(f, {0});
    QString remaining, percent;
    when([] { return dialog() && dialog()->Timer.isEnabled() && dialog()->LastTrackTime > 0; },
         [&] {
             remaining = dialog()->lblRemaining1->text();
             percent = dialog()->lblPercent1->text();
             dialog()->btnAbort_Click();
         });
    convertTo(f, tempDir() + QStringLiteral("/slow.wav"));
    const qint32 t = 70;
    EXPECT_EQ(remaining, TimeToString(frmCopyDlg::MulDiv(t, 1500, 0) - t));
    EXPECT_EQ(percent, "0.0 %");
}

TEST_F(CDtoWAVTest, CancellingDuringACopySaysSoAndLeavesThePartialFile) {
    frmCDtoWAV& f = open();
    selectOnly(f, {0, 1});
    QStringList rows;
    when([] { return dialog() && dialog()->TrackFramesDone > 100; },
         [] { dialog()->btnAbort_Click(); });
    msgBox().onShow = [&](const ShownBox&) {
        if (dialog()) rows = messages(*dialog());
    };
    convertTo(f, tempDir() + QStringLiteral("/cut.wav"));
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text, "CD to WAV conversion has been cancelled.");
    EXPECT_EQ(msgBox().shown[0].style, Mb::Information | Mb::SetForeground);
    EXPECT_EQ(rows, QStringList({"Copying Track 01", "CD to WAV conversion cancelled."}));
    EXPECT_EQ(reader(f).calls.filter("CopyTrack").size(), 1);
    EXPECT_TRUE(reader(f).calls.contains("StopCopy"));
    EXPECT_TRUE(QFile::exists(tempDir() + QStringLiteral("/cut01.wav")));
}

TEST_F(CDtoWAVTest, ACancelInTheFirstHundredMillisecondsOnlyHidesTheDialog) {
    frmCDtoWAV& f = open();
    selectOnly(f, {0});
    when([] { return dialog() != nullptr; }, [] { dialog()->btnAbort_Click(); });
    convertTo(f, tempDir() + QStringLiteral("/early.wav"));
    clock().advance(1000);
    EXPECT_FALSE(reader(f).calls.join(',').contains("CopyTrack"));
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_TRUE(f.Timer.isEnabled());
}

// A write or read failure is told in the rows, and the rest is not tried.
TEST_F(CDtoWAVTest, AWriteOrReadFailureEndsTheRunWithItsRows) {
    const QString failed = QStringLiteral(
        "Errors occurred during coversion process; copy was not completed successfully.");
    const QString full =
        QStringLiteral("Unable to write file.  Your temporary disk may have insufficient space.");
    for (const bool write : {true, false}) {
        SCOPED_TRACE(write ? "write" : "read");
        (write ? FakeCDReader::disc().failWriteAt : FakeCDReader::disc().failReadAt) = 200;
        frmCDtoWAV& f = open();
        selectOnly(f, {0, 2});
        closeWhenDone();
        convertTo(f, tempDir() + QStringLiteral("/bad.wav"));
        EXPECT_EQ(finalRows, write ? QStringList({"Copying Track 01", full, failed})
                                   : QStringList({"Copying Track 01", failed}));
        EXPECT_EQ(reader(f).calls.filter("CopyTrack").size(), 1);
        EXPECT_TRUE(msgBox().shown.isEmpty());
        f.unload();
        FakeCDReader::disc().failWriteAt = FakeCDReader::disc().failReadAt = std::nullopt;
    }
}

TEST_F(CDtoWAVTest, ClosingTheCopyDialogByItsFrameIsACancelWhileItCopies) {
    frmCopyDlg* seen = nullptr;
    frmCDtoWAV& f = open();
    selectOnly(f, {0});
    when([] { return dialog() && dialog()->TrackFramesDone > 0; },
         [&] {
             seen = dialog();
             EXPECT_FALSE(seen->close());  // refused: the copy runs
             EXPECT_TRUE(seen->Aborted);
         });
    convertTo(f, tempDir() + QStringLiteral("/frame.wav"));
    EXPECT_NE(seen, nullptr);
    EXPECT_EQ(msgBox().shown.value(0).text, "CD to WAV conversion has been cancelled.");
}

TEST_F(CDtoWAVTest, TheOptionsDialogShowsAndSetsTheReadersParameters) {
    frmCDtoWAV& f = open();
    f.CDReader->setDeviceType(18);
    f.CDReader->setCopyMode(2);
    frmConfigDlg dlg(f.CDReader.get(), &f);
    EXPECT_EQ(dlg.windowTitle(), "CD Conversion Options...");
    EXPECT_EQ(dlg.comboDeviceType->count(), 24);
    EXPECT_EQ(dlg.comboDeviceType->currentText(), "PLEXTOR");
    EXPECT_EQ(dlg.edBlockCount->text(), "26");
    EXPECT_EQ(dlg.edDeviceName->text(), "<D:>  Fake CD-ROM");
    EXPECT_TRUE(dlg.Option1[2]->isChecked());

    dlg.comboDeviceType->setCurrentIndex(1);
    dlg.edBlockCount->setText(QStringLiteral("12.6"));
    dlg.Option1[0]->setChecked(true);
    dlg.btnCancel_Click();
    EXPECT_EQ(f.CDReader->DeviceType(), 18);
    dlg.btnOK_Click();
    EXPECT_EQ(f.CDReader->DeviceType(), 1);
    EXPECT_EQ(f.CDReader->BlockCount(), 13);
    EXPECT_EQ(f.CDReader->CopyMode(), 0);
    EXPECT_TRUE(dlg.isHidden());
    // The text's value, rounded, whatever it is (a copy reads within what drives take).
    for (const auto& [text, blocks] :
         {std::pair{"300", 300}, std::pair{"0.4", 0}, std::pair{"-7", -7}, std::pair{"1e20", -7}}) {
        dlg.edBlockCount->setText(QString::fromLatin1(text));
        dlg.btnOK->click();
        EXPECT_EQ(f.CDReader->BlockCount(), blocks) << text;
    }
}

TEST_F(CDtoWAVTest, PlaysATrackWithTheBarAndSeesItsEnd) {
    frmCDtoWAV& f = open();
    selectOnly(f, {1});
    f.PlayCDMenu_Click();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioTrack=1");
    EXPECT_EQ(f.PlayCDMenu->text(), "&Stop CD Play");
    EXPECT_EQ(f.Progressbar1->maximum(), 10);
    clock().advance(4000);
    EXPECT_EQ(f.Progressbar1->value(), 4);
    clock().advance(6000);
    EXPECT_EQ(f.Label1->text(), "Audio CD play has successfully completed.");
    EXPECT_FALSE(f.CDPlaying);
    EXPECT_EQ(f.Progressbar1->value(), 0);
    EXPECT_FALSE(f.Timer3.isEnabled());
}

TEST_F(CDtoWAVTest, SeekNextOnTheLastTrackGoesToTrackOne) {
    frmCDtoWAV& f = open();
    selectOnly(f, {2});
    f.PlayCDMenu_Click();
    f.SeekNextMenu_Click();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=150+1500");
    EXPECT_EQ(f.SeekTrack, 0);
    f.SeekPrevMenu_Click();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=2400+2250");
}

TEST_F(CDtoWAVTest, ARemovedDiscEmptiesTheListAndTheSameDiscBackIsNotRelisted) {
    frmCDtoWAV& f = open();
    FakeCDReader::disc().removed = true;
    clock().advance(500);
    EXPECT_EQ(f.ListView->topLevelItemCount(), 0);
    EXPECT_EQ(f.Panels[0]->text(), "CD Not Inserted");
    EXPECT_FALSE(f.CopyTracks1->isEnabled());
    FakeCDReader::disc().removed = false;
    clock().advance(500);
    // Only the count is compared, and it was kept.
    EXPECT_EQ(f.ListView->topLevelItemCount(), 0);
    FakeCDReader::setTracks({20, 10});
    clock().advance(500);
    EXPECT_EQ(f.ListView->topLevelItemCount(), 2);
    EXPECT_TRUE(f.CopyTracks1->isEnabled());
}

TEST_F(CDtoWAVTest, PlaysAWavFileAndFollowsThePlayersStates) {
    FakeMediaPlayer::setLength(tempDir() + QStringLiteral("/check.wav"), 10);
    frmCDtoWAV& f = open();
    f.Toolbar1_ButtonClick(QStringLiteral("Pause"));
    EXPECT_EQ(msgBox().shown.value(0).text, "Play is not currently in progress.");
    dialogs->scriptFiles({tempDir() + QStringLiteral("/check.wav")});
    f.PlayMenu_Click();
    EXPECT_EQ(dialogs->calls.last().request.title, "Select WAV File...");
    EXPECT_EQ(f.PlayMenu->text(), "&Stop");
    EXPECT_TRUE(f.PauseMenu->isEnabled());
    EXPECT_TRUE(f.WavPlaying);
    clock().advance(5000);
    // The bar follows every half second.
    EXPECT_GE(f.Progressbar1->value(), 40);
    EXPECT_LE(f.Progressbar1->value(), 50);
    f.PauseMenu_Click();
    EXPECT_EQ(f.PauseMenu->text(), "&Resume");
    f.PauseMenu_Click();
    EXPECT_EQ(f.PauseMenu->text(), "Pa&use");
    clock().advance(6000);
    EXPECT_EQ(f.PlayMenu->text(), "&Play WAV File");
    EXPECT_FALSE(f.PauseMenu->isEnabled());
    EXPECT_EQ(f.Progressbar1->value(), 0);
}

}  // namespace
