// The Audio CD control panel in virtual time, driven by its menu, toolbar, drive list and
// volume slider: on a scripted reader, and on the real one with disc images as users make
// them (a BIN named otherwise than its CUE, an image that cannot be read).
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstring>

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QSlider>
#include <QTest>
#include <QTreeWidget>

#include "app/AppState.h"
#include "app/FileNames.h"
#include "app/Forms.h"
#include "app/Settings.h"
#include "cd/CDTrackListView.h"
#include "cd/frmCDPlayer.h"
#include "platform/cdreader/CdioCDReader.h"
#include "support/AppTest.h"
#include "support/DiscImage.h"
#include "support/FakeCDReader.h"
#include "support/FakeMixer.h"
#include "support/ImageDrives.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// Moves the image's BIN to `bin` (bytes, from the CUE's folder) and writes `fileLine` as the
// CUE's FILE line.
void moveBin(const DiscImage& disc, const QByteArray& bin, const QByteArray& fileLine) {
    const QByteArray folder = NameToBytes(disc.cuePath()).chopped(int(strlen("disc.cue")));
    if (bin.contains('/')) ::mkdir((folder + bin.left(bin.lastIndexOf('/'))).constData(), 0700);
    ASSERT_EQ(::rename(NameToBytes(disc.binPath()).constData(), (folder + bin).constData()), 0);
    QFile cue(disc.cuePath());
    ASSERT_TRUE(cue.open(QIODevice::ReadOnly));
    QByteArray text = cue.readAll();
    cue.close();
    text = fileLine + "\r\n" + text.mid(text.indexOf('\n') + 1);
    ASSERT_TRUE(cue.open(QIODevice::WriteOnly | QIODevice::Truncate));
    cue.write(text);
}

class CDPlayerTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        AppClosing = VFalse;  // the last test's teardown closed "the program"
        mixer = std::make_shared<FakeMixer>();
        Components::provideService<Mixer>(mixer);
        FakeCDReader::install();
        FakeCDReader::setTracks({200, 180, 240});
    }
    void TearDown() override {
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        AppTest::TearDown();
    }
    static FakeCDReader& reader(frmCDPlayer& f) {
        return *static_cast<FakeCDReader*>(f.CDReader.get());
    }
    static QStringList line(frmCDPlayer& f, int i) {
        QStringList texts;
        for (int c = 0; c < 6; ++c) texts << f.ListView->topLevelItem(i)->text(c);
        return texts;
    }
    // Adds line `i` to the selection and gives it the focus.
    static void select(frmCDPlayer& f, int i) {
        f.ListView->setCurrentItem(f.ListView->topLevelItem(i), 0, QItemSelectionModel::Select);
    }
    static QString panels(frmCDPlayer& f) {
        return f.Panels[0]->text() + "|" + f.Panels[1]->text() + "|" + f.Panels[2]->text();
    }

    std::shared_ptr<FakeMixer> mixer;
};

TEST_F(CDPlayerTest, ListsTheDrivesAndTracksOrSaysWhyNot) {
    FakeCDReader::disc().openError = QStringLiteral("Device busy.");
    auto* busy = new frmCDPlayer();
    EXPECT_EQ(msgBox().texts(),
              QStringList{"The selected CD-ROM drive could not be opened. \r\nDevice busy."});
    EXPECT_EQ(busy->ListView->topLevelItemCount(), 0);
    busy->unload();
    const auto drives = FakeCDReader::disc().devices;
    FakeCDReader::disc().devices.clear();
    auto* none = new frmCDPlayer();
    EXPECT_EQ(none->DevCombo->count() + none->ListView->topLevelItemCount(), 0);
    clock().advance(2000);
    EXPECT_EQ(panels(*none), "||");
    none->unload();

    FakeCDReader::disc().devices = drives;
    FakeCDReader::disc().openError.clear();
    FakeCDReader::disc().devices.append({QStringLiteral("E"), QStringLiteral("Second")});
    FakeCDReader::disc().tracks[1].IsAudio = false;
    FakeCDReader::disc().tracks[2].CopyProtected = true;
    FakeCDReader::disc().tracks[2].PreEmphasis = true;
    auto& f = *new frmCDPlayer();
    ASSERT_EQ(f.DevCombo->count(), 2);
    EXPECT_EQ(f.DevCombo->itemText(1), "<E:>  Second");
    ASSERT_EQ(f.ListView->topLevelItemCount(), 3);
    EXPECT_EQ(line(f, 0), QStringList({"01", "0:00:02.00", "0:03:20.00", "33.65 MB", "No", "No"}));
    EXPECT_EQ(line(f, 2),
              QStringList({"03", "0:06:22.00", "0:04:00.00", "40.37 MB", "Yes", "Yes"}));
    EXPECT_EQ(f.ListView->Picture(0), CDTrackListView::AudioPicture);
    EXPECT_EQ(f.ListView->Picture(1), CDTrackListView::DataPicture);

    // The second drive, chosen from the list, is kept for the next window.
    QTest::keyClick(f.DevCombo, Qt::Key_Down);
    EXPECT_EQ(reader(f).openedDevices, (QList<int>{0, 1}));
    FakeCDReader& r = reader(f);
    f.ToolbarButton("Exit")->trigger();
    EXPECT_TRUE(r.calls.join(',').endsWith("StopAudio,Close"));
    const QString key = QStringLiteral("Software\\Brightfen\\Cantovel\\DAC");
    EXPECT_EQ(ReadRegValue(RegRoot::CurrentUser, key, QStringLiteral("DeviceID"), {}), "1");
    EXPECT_EQ((new frmCDPlayer())->DevCombo->currentIndex(), 1);
}

TEST_F(CDPlayerTest, PlayPauseSeekAndStop) {
    auto& f = *new frmCDPlayer();
    // Nothing plays yet: stop and pause only say so; without a selection play refuses.
    f.ToolbarButton("Stop")->trigger();
    f.PauseCDMenu->trigger();
    f.ListView->clearSelection();
    f.PlayCDMenu->trigger();
    EXPECT_EQ(msgBox().texts(),
              (QStringList{"CD play is not currently in progress from this module.",
                           "CD audio is not currently being played from this module.",
                           "You must select the audio track(s) you wish to convert before "
                           "proceeding."}));
    EXPECT_FALSE(reader(f).calls.join(',').contains("Audio"));

    select(f, 0);
    select(f, 1);
    f.PlayCDMenu->trigger();  // the focused line
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioTrack=1");
    EXPECT_EQ(f.Label1->text(), "Audio CD play in progress...");
    clock().advance(500);
    EXPECT_EQ(f.PlayCDMenu->text(), "&Stop CD Play");
    EXPECT_EQ(panels(f), "CD Inserted|Time: 0:03:22|Track:02");
    clock().advance(1500);
    f.PauseCDMenu->trigger();
    EXPECT_EQ(reader(f).calls.last(), "PauseAudio");
    EXPECT_EQ(f.PauseCDMenu->text(), "&Resume CD Play");
    f.ToolbarButton("Pause")->trigger();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=15300+13500");
    EXPECT_EQ(f.PauseCDMenu->text(), "Pa&use CD");

    // Seeking wraps around the disc; after a seek the resume takes the next track's length.
    f.SeekNextMenu->trigger();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=28650+18000");
    f.SeekNextMenu->trigger();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=150+15000");
    f.PauseCDMenu->trigger();
    f.PauseCDMenu->trigger();
    EXPECT_TRUE(reader(f).calls.last().endsWith("+13500")) << reader(f).calls.last().toStdString();
    f.SeekPrevMenu->trigger();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=28650+18000");

    // Stopping: a caption of its own until the next tick.
    f.ToolbarButton("Stop")->trigger();
    EXPECT_EQ(reader(f).calls.last(), "StopAudio");
    EXPECT_EQ(f.PlayCDMenu->text(), "Play &Track");
    EXPECT_EQ(f.Label1->text(), "Audio CD play has been stopped.");
    clock().advance(500);
    EXPECT_EQ(f.PlayCDMenu->text(), "&Play Track");
    EXPECT_FALSE(f.SeekNextMenu->isEnabled());

    // A data track anywhere on the disc refuses play.
    msgBox().reset();
    FakeCDReader::disc().tracks[2].IsAudio = false;
    select(f, 0);
    f.ToolbarButton("Play")->trigger();
    EXPECT_EQ(msgBox().texts(),
              QStringList{"The selected track is not of audio content.  \r\n\r\nEnsure the "
                          "correct CD is in your drive before proceeding."});
    EXPECT_FALSE(f.CDPlaying);
}

// The door, and a disc taken out and put back, are seen on a whole image below.
TEST_F(CDPlayerTest, ADiscOfTheSameTrackCountKeepsItsListAndTheSliderUnmutes) {
    auto& f = *new frmCDPlayer();
    FakeCDReader::setTracks({60, 60, 60});
    clock().advance(500);
    EXPECT_EQ(f.ListView->topLevelItem(0)->text(2), "0:03:20.00");
    FakeCDReader::setTracks({60, 60});
    clock().advance(500);
    ASSERT_EQ(f.ListView->topLevelItemCount(), 2);
    EXPECT_EQ(f.ListView->topLevelItem(0)->text(2), "0:01:00.00");

    // Moving the slider while muted unmutes.
    EXPECT_EQ(f.Label2->text(), "70");
    f.ToolbarButton("Mute")->trigger();
    EXPECT_EQ(f.MuteMenu->text(), "&Un-Mute");
    EXPECT_EQ(mixer->volume, 0);
    f.Slider1->setValue(40);
    EXPECT_EQ(f.Label2->text(), "40");
    EXPECT_EQ(mixer->volume, 40);
    EXPECT_EQ(f.MuteMenu->text(), "&Mute");
    f.MuteMenu->trigger();
    f.MuteMenu->trigger();
    EXPECT_EQ(mixer->volume, 40);
}

// Disc images as users make them, through the real reader.
TEST_F(CDPlayerTest, TheControlPanelReadsTheBinTheCueNamesAndTellsOfAnUnreadableOnce) {
    auto drives = std::make_shared<ImageDrives>();
    Components::provideService<CdDrives>(drives);
    Components::provideFactory<CDReader>([] { return std::make_unique<CdioCDReader>(); });
    // D: the BIN it names is gone and none of its own name stands beside it.
    const DiscImage gone = DiscImage::build(tempDir() + QStringLiteral("/e"), {150});
    moveBin(gone, "elsewhere.bin", "FILE \"gone.bin\" BINARY");
    ASSERT_TRUE(QFile::remove(tempDir() + QStringLiteral("/e/elsewhere.bin")));
    // E: a quoted name with spaces and a byte that is no UTF-8, in a folder of its own.
    const DiscImage quoted = DiscImage::build(tempDir() + QStringLiteral("/d"), {150, 75});
    moveBin(quoted, "bins/Ma musique \xe9.bin", "FILE \"bins/Ma musique \xe9.bin\" BINARY");
    // F: an unquoted name; G: a FILE line naming nothing, the BIN of the CUE's name beside.
    const DiscImage bare = DiscImage::build(tempDir() + QStringLiteral("/f"), {75, 75, 75});
    moveBin(bare, "other.bin", "FILE other.bin BINARY");
    const DiscImage own = DiscImage::build(tempDir() + QStringLiteral("/g"), {75});
    moveBin(own, "disc.bin", "FILE \"Track 1.wav\" WAVE");
    // H: a whole image.
    const DiscImage whole = DiscImage::build(tempDir() + QStringLiteral("/h"), {300, 225});
    for (const DiscImage* d : {&gone, &quoted, &bare, &own, &whole}) drives->add(d->cuePath());

    auto* f = new frmCDPlayer();
    ASSERT_EQ(f->DevCombo->count(), 5);
    EXPECT_EQ(msgBox().texts(), QStringList{"Unable to read CD directory"});
    EXPECT_EQ(f->ListView->topLevelItemCount(), 0);
    // The status tick does not ask again.
    clock().advance(3000);
    EXPECT_EQ(msgBox().shown.size(), 1);

    QTest::keyClick(f->DevCombo, Qt::Key_Down);
    ASSERT_EQ(f->ListView->topLevelItemCount(), 2);
    EXPECT_EQ(f->ListView->topLevelItem(1)->text(2), "0:00:01.00");
    QTest::keyClick(f->DevCombo, Qt::Key_Down);
    EXPECT_EQ(f->ListView->topLevelItemCount(), 3);
    QTest::keyClick(f->DevCombo, Qt::Key_Down);
    EXPECT_EQ(f->ListView->topLevelItemCount(), 1);
    clock().advance(1000);
    EXPECT_EQ(msgBox().shown.size(), 1);

    // No "digital copy permitted" flag in the image: the track reads as protected. Behind an
    // open door, changed, or gone, the image is looked at anew.
    QTest::keyClick(f->DevCombo, Qt::Key_Down);
    ASSERT_EQ(f->ListView->topLevelItemCount(), 2);
    EXPECT_EQ(line(*f, 1), QStringList({"02", "0:00:06.00", "0:00:03.00", "0.50 MB", "Yes", "No"}));
    f->EjectMenu->trigger();
    clock().advance(500);
    EXPECT_EQ(panels(*f), "CD Not Inserted||");
    f->EjectMenu->trigger();
    clock().advance(500);
    EXPECT_EQ(f->ListView->topLevelItemCount(), 2);
    ASSERT_TRUE(DiscImage::build(tempDir() + QStringLiteral("/h"), {100, 100, 100}).ok());
    clock().advance(500);
    EXPECT_EQ(f->ListView->topLevelItemCount(), 3);
    ASSERT_TRUE(QFile::remove(whole.cuePath()));
    clock().advance(500);
    EXPECT_EQ(panels(*f), "CD Not Inserted||");
    // Qt cannot remove a name that is no UTF-8 along with the test's folder.
    ::unlink((NameToBytes(tempDir()) + "/d/bins/Ma musique \xe9.bin").constData());
}

}  // namespace
