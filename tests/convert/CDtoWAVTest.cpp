// CD to WAV and its copy dialog, driven by the window's menus and the dialog's button: on a
// scripted reader in virtual time (the selection checks, the save dialog, runs that end
// well, are cancelled or fail, the progress rows, the options, the window's own CD and WAV
// players), and on the real reader with a disc image, the WAV files read with libsndfile.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <functional>

#include "app/Settings.h"
#include "app/Utilities.h"
#include "cd/CDTrackListView.h"
#include "convert/FileConversionFixture.h"
#include "convert/frmCDtoWAV.h"
#include "convert/frmConfigDlg.h"
#include "convert/frmCopyDlg.h"
#include "platform/cdreader/CdioCDReader.h"
#include "platform/clock/QtClock.h"
#include "support/DiscImage.h"
#include "support/FakeCDReader.h"
#include "support/FakeMediaPlayer.h"
#include "support/FakeMixer.h"
#include "support/ImageDrives.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class CDtoWAVTest : public FileConversionFixture {
  protected:
    void SetUp() override {
        FileConversionFixture::SetUp();
        Components::provideService<Mixer>(std::make_shared<FakeMixer>());
        FakeCDReader::install();
        FakeMediaPlayer::install();
        FakeCDReader::setTracks({20, 10, 30});
    }
    void TearDown() override {
        watchers.clear();
        FileConversionFixture::TearDown();
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
    // Clicks "Close" when the dialog offers it, keeping its rows for the test.
    void closeWhenDone() {
        when([] { return dialog() && dialog()->btnAbort->text() == "Close"; },
             [this] {
                 finalRows = rows(dialog()->Messages);
                 finalPercent2 = dialog()->lblPercent2->text();
                 dialog()->btnAbort->click();
             });
    }
    void convertTo(frmCDtoWAV& f, const QString& base) {
        dialogs->scriptFiles({base});
        f.CopyTracks1->trigger();
    }

    std::vector<std::unique_ptr<cantovel::Timer>> watchers;
    QStringList finalRows;
    QString finalPercent2;
};

const QString kOutputDirectory = QStringLiteral("CD to WAV Output Directory");

TEST_F(CDtoWAVTest, NothingIsConvertedWithoutAudioTracksOrAFileName) {
    FakeCDReader::disc().tracks[1].IsAudio = false;
    SaveAppSetting(kOutputDirectory, QStringLiteral("/music/cd"));
    frmCDtoWAV& f = open();
    selectOnly(f, {0, 1, 2});
    f.CopyTracks1->trigger();
    f.ListView->clearSelection();
    f.ToolbarButton("Convert")->trigger();
    EXPECT_EQ(msgBox().texts(),
              (QStringList{"A selected track is not of audio content.  \r\n\r\nEnsure the "
                           "correct CD is in your drive before proceeding.",
                           "You must select the audio track(s) you wish to convert before "
                           "proceeding."}));
    EXPECT_TRUE(dialogs->calls.isEmpty());

    // A cancelled save dialog keeps the stored folder.
    selectOnly(f, {0});
    dialogs->scriptCancel();
    f.CopyTracks1->trigger();
    ASSERT_EQ(dialogs->calls.size(), 1);
    const FileDialogRequest& r = dialogs->calls[0].request;
    EXPECT_EQ(r.title, "Select the Folder and Enter the Filename for the Output WAV File...");
    EXPECT_EQ(r.fileName + "|" + r.filter + "|" + r.initDir, "track|WAV Files|*.wav|/music/cd");
    EXPECT_EQ(ReadAppSetting(kOutputDirectory, {}), "/music/cd");
    EXPECT_TRUE(f.Timer.isEnabled());
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_FALSE(reader(f).calls.join(',').contains("CopyTrack"));
}

TEST_F(CDtoWAVTest, ConvertsTheSelectedTracksOneAfterTheOtherWithMovingRows) {
    FakeCDReader::disc().copyFramesPer100Ms = 75;  // ten times the audio's own pace
    frmCDtoWAV& f = open();
    selectOnly(f, {1, 2});
    QString midPercent, midSpeed, lastRemaining1;
    when([] { return dialog() && dialog()->TrackFramesDone >= 300; },
         [&] {
             midPercent = dialog()->lblPercent1->text();
             midSpeed = dialog()->lblSpeed1->text();
         });
    when([] { return dialog() && dialog()->btnAbort->text() == "Close"; },
         [&] { lastRemaining1 = dialog()->lblRemaining1->text(); });
    closeWhenDone();
    convertTo(f, tempDir() + QStringLiteral("/rip.wav"));
    EXPECT_EQ(finalRows, QStringList({"Copying Track 02", "Copying Track 03",
                                      "Copy completed without any errors."}));
    // Some 300 frames of 750, read at 750 frames a second: 40 % at 10 X.
    EXPECT_GT(midPercent.chopped(2).toDouble(), 30) << midPercent.toStdString();
    EXPECT_LT(midPercent.chopped(2).toDouble(), 60);
    EXPECT_NEAR(midSpeed.chopped(2).toDouble(), 10.0, 1.5);
    EXPECT_EQ(lastRemaining1, TimeToString(0));
    EXPECT_EQ(finalPercent2, "100.0 %");
    EXPECT_TRUE(QFile::exists(tempDir() + "/rip03.wav"));
    EXPECT_EQ(ReadAppSetting(kOutputDirectory, {}), ParsePathParts(tempDir() + "/rip.wav", "l"));
    EXPECT_TRUE(f.Timer.isEnabled());
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(dialog(), nullptr);

    // A read failure is told in the rows, and the rest is not tried.
    FakeCDReader::disc().failReadAt = 200;
    selectOnly(f, {0, 2});
    closeWhenDone();
    convertTo(f, tempDir() + QStringLiteral("/bad.wav"));
    EXPECT_EQ(finalRows, QStringList({"Copying Track 01",
                                      "Errors occurred during coversion process; copy was not "
                                      "completed successfully."}));
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

TEST_F(CDtoWAVTest, CancellingByTheButtonOrTheFrameSaysSoAndLeavesThePartialFile) {
    frmCDtoWAV& f = open();
    // In the first hundred milliseconds a cancel only hides the dialog.
    selectOnly(f, {0});
    when([] { return dialog() != nullptr; }, [] { dialog()->btnAbort->click(); });
    convertTo(f, tempDir() + QStringLiteral("/early.wav"));
    clock().advance(1000);
    EXPECT_FALSE(reader(f).calls.join(',').contains("CopyTrack"));
    EXPECT_TRUE(msgBox().shown.isEmpty());

    selectOnly(f, {0, 1});
    QStringList shown;
    when([] { return dialog() && dialog()->TrackFramesDone > 100; },
         [] { dialog()->btnAbort->click(); });
    msgBox().onShow = [&](const ShownBox&) {
        if (dialog()) shown = rows(dialog()->Messages);
    };
    convertTo(f, tempDir() + QStringLiteral("/cut.wav"));
    EXPECT_EQ(msgBox().texts(), QStringList{"CD to WAV conversion has been cancelled."});
    EXPECT_EQ(shown, QStringList({"Copying Track 01", "CD to WAV conversion cancelled."}));
    EXPECT_EQ(reader(f).calls.filter("CopyTrack").size(), 1);
    EXPECT_TRUE(reader(f).calls.contains("StopCopy"));
    EXPECT_TRUE(QFile::exists(tempDir() + QStringLiteral("/cut01.wav")));

    // Closing the dialog by its frame while it copies is a cancel.
    msgBox().onShow = nullptr;
    msgBox().reset();
    bool refused = false;
    when([] { return dialog() && dialog()->TrackFramesDone > 0; },
         [&] { refused = !dialog()->close() && dialog()->Aborted; });
    convertTo(f, tempDir() + QStringLiteral("/frame.wav"));
    EXPECT_TRUE(refused);
    EXPECT_EQ(msgBox().texts(), QStringList{"CD to WAV conversion has been cancelled."});
}

TEST_F(CDtoWAVTest, TheOptionsDialogShowsAndSetsTheReadersParameters) {
    frmCDtoWAV& f = open();
    f.CDReader->setDeviceType(18);
    f.CDReader->setCopyMode(2);
    QStringList shown;
    const auto answer = [&](const char* blocks, bool ok) {
        when([] { return Forms::find<frmConfigDlg>() && Forms::find<frmConfigDlg>()->isVisible(); },
             [&shown, blocks, ok] {
                 frmConfigDlg& dlg = *Forms::find<frmConfigDlg>();
                 shown =
                     QStringList{dlg.windowTitle(), QString::number(dlg.comboDeviceType->count()),
                                 dlg.comboDeviceType->currentText(), dlg.edBlockCount->text(),
                                 dlg.edDeviceName->text()};
                 dlg.comboDeviceType->setCurrentIndex(1);
                 dlg.edBlockCount->setText(QString::fromLatin1(blocks));
                 dlg.Option1[0]->setChecked(true);
                 (ok ? dlg.btnOK : dlg.btnCancel)->click();
             });
        f.ConfigDrive->trigger();
    };
    answer("12.6", false);
    EXPECT_EQ(shown, (QStringList{"CD Conversion Options...", "24", "PLEXTOR", "26",
                                  "<D:>  Fake CD-ROM"}));
    EXPECT_EQ(f.CDReader->DeviceType(), 18);
    EXPECT_EQ(f.CDReader->CopyMode(), 2);
    answer("12.6", true);
    EXPECT_EQ(f.CDReader->DeviceType(), 1);
    EXPECT_EQ(f.CDReader->BlockCount(), 13);
    EXPECT_EQ(f.CDReader->CopyMode(), 0);
    // A figure no integer holds leaves the count as it was.
    answer("1e20", true);
    EXPECT_EQ(f.CDReader->BlockCount(), 13);
}

TEST_F(CDtoWAVTest, PlaysATrackWithTheBarSeeksAroundTheDiscAndSeesItsEnd) {
    frmCDtoWAV& f = open();
    selectOnly(f, {2});
    f.PlayCDMenu->trigger();
    f.SeekNextMenu->trigger();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=150+1500");
    f.SeekPrevMenu->trigger();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=2400+2250");
    f.PlayCDMenu->trigger();  // stops

    selectOnly(f, {1});
    f.PlayCDMenu->trigger();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioTrack=1");
    EXPECT_EQ(f.PlayCDMenu->text(), "&Stop CD Play");
    EXPECT_EQ(f.Progressbar1->maximum(), 10);
    clock().advance(4000);
    EXPECT_EQ(f.Progressbar1->value(), 4);
    clock().advance(6000);
    EXPECT_EQ(f.Label1->text(), "Audio CD play has successfully completed.");
    EXPECT_FALSE(f.CDPlaying);
    EXPECT_EQ(f.Progressbar1->value(), 0);

    // A removed disc empties the list; the same count back is not listed again.
    FakeCDReader::disc().removed = true;
    clock().advance(500);
    EXPECT_EQ(f.ListView->topLevelItemCount(), 0);
    EXPECT_EQ(f.Panels[0]->text(), "CD Not Inserted");
    EXPECT_FALSE(f.CopyTracks1->isEnabled());
    FakeCDReader::disc().removed = false;
    clock().advance(500);
    EXPECT_EQ(f.ListView->topLevelItemCount(), 0);
    FakeCDReader::setTracks({20, 10});
    clock().advance(500);
    EXPECT_EQ(f.ListView->topLevelItemCount(), 2);
    EXPECT_TRUE(f.CopyTracks1->isEnabled());
}

TEST_F(CDtoWAVTest, PlaysAWavFileAndFollowsThePlayersStates) {
    FakeMediaPlayer::setLength(tempDir() + QStringLiteral("/check.wav"), 10);
    frmCDtoWAV& f = open();
    f.ToolbarButton("Pause")->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList{"Play is not currently in progress."});
    dialogs->scriptFiles({tempDir() + QStringLiteral("/check.wav")});
    f.PlayMenu->trigger();
    EXPECT_EQ(dialogs->calls.last().request.title, "Select WAV File...");
    EXPECT_EQ(f.PlayMenu->text(), "&Stop");
    EXPECT_TRUE(f.WavPlaying);
    clock().advance(5000);
    // The bar follows every half second.
    EXPECT_GE(f.Progressbar1->value(), 40);
    EXPECT_LE(f.Progressbar1->value(), 50);
    f.PauseMenu->trigger();
    EXPECT_EQ(f.PauseMenu->text(), "&Resume");
    f.PauseMenu->trigger();
    EXPECT_EQ(f.PauseMenu->text(), "Pa&use");
    clock().advance(6000);
    EXPECT_EQ(f.PlayMenu->text(), "&Play WAV File");
    EXPECT_FALSE(f.PauseMenu->isEnabled());
    EXPECT_EQ(f.Progressbar1->value(), 0);
}

// The real CD reader on a disc image, in real time.
class CDtoWAVRipTest : public CDtoWAVTest {
  protected:
    void SetUp() override {
        CDtoWAVTest::SetUp();
        Components::provideService<Clock>(std::make_shared<QtClock>());
        auto drives = std::make_shared<ImageDrives>();
        drives->add(DiscImage::build(tempDir(), {600, 450}).cuePath());
        Components::provideService<CdDrives>(drives);
        Components::provideFactory<CDReader>([] { return std::make_unique<CdioCDReader>(); });
    }
    // Copies the selected tracks under `name` and gives the dialog's rows once it offers
    // "Close", clicking it then.
    QStringList copy(frmCDtoWAV& f, const QString& name) {
        closeWhenDone();
        convertTo(f, name);
        return finalRows;
    }
};

// Both tracks become WAV files holding the disc's samples; a destination that fills up,
// holding an older file of the output's name, is told and keeps that file whole; another
// format chosen from the menu is the one written.
TEST_F(CDtoWAVRipTest, RipsTheDiscsSamplesInTheChosenFormatAndAFullDestinationIsTold) {
    frmCDtoWAV& f = open();
    ASSERT_EQ(f.ListView->topLevelItemCount(), 2);
    f.SelectAll1->trigger();
    // Far more than a drive takes in one read: the copy reads within what it takes.
    f.CDReader->setBlockCount(5000);
    EXPECT_EQ(copy(f, tempDir() + QStringLiteral("/Rip.wav")),
              QStringList(
                  {"Copying Track 01", "Copying Track 02", "Copy completed without any errors."}));
    const SoundInfo info = readSoundInfo(tempDir() + QStringLiteral("/Rip02.wav"));
    EXPECT_EQ(info.rate, 44100);
    EXPECT_EQ(info.channels, 2);
    EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_EQ(readPcm16(tempDir() + QStringLiteral("/Rip01.wav")), DiscImage::pcm(1, 0, 600));
    EXPECT_EQ(readPcm16(tempDir() + QStringLiteral("/Rip02.wav")), DiscImage::pcm(2, 0, 450));
    f.unload();

    const QString full = tempDir() + QStringLiteral("/full");
    const QString output = full + QStringLiteral("/Rip01.wav");
    const QByteArray older(10000, 'o');
    // Track 1 is about 1.4 MB.
    const int code = runOnFillingFolder(full, 256 * 1024, [&] {
        if (!writeBytes(output, older)) return 1;
        frmCDtoWAV& g = open();
        g.SelectAll1->trigger();
        const QStringList told = copy(g, full + QStringLiteral("/Rip.wav"));
        if (told != QStringList({"Copying Track 01",
                                 "Unable to write file.  Your temporary disk may have "
                                 "insufficient space.",
                                 "Errors occurred during coversion process; copy was not "
                                 "completed successfully."}))
            return 2;
        if (fileBytes(output) != older || !hiddenFiles(full).isEmpty()) return 3;
        if (QFileInfo::exists(full + QStringLiteral("/Rip02.wav"))) return 4;
        return 0;
    });
    EXPECT_EQ(code, 0);

    // The format chosen from the menu: 24-bit mono at half the rate.
    Components::provideFactory<FormatChooser>([] {
        auto chooser = std::make_unique<FakeFormatChooser>();
        chooser->script({WaveFormat{WaveFormat::Pcm24, 22050, 1}});
        return chooser;
    });
    frmCDtoWAV& h = open();
    h.SelectWaveformat1->trigger();
    selectOnly(h, {0});
    copy(h, tempDir() + QStringLiteral("/Small.wav"));
    const SoundInfo small = readSoundInfo(tempDir() + QStringLiteral("/Small01.wav"));
    EXPECT_EQ(small.format, SF_FORMAT_WAV | SF_FORMAT_PCM_24);
    EXPECT_EQ(small.rate * 10 + small.channels, 220501);
    EXPECT_NEAR(double(small.frames), 600 * 588 / 2, 64);
}

}  // namespace
