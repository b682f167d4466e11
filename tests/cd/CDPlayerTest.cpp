// The Audio CD control panel on a scripted reader, in virtual time.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QSlider>
#include <QTreeWidget>

#include "app/AppState.h"
#include "app/Forms.h"
#include "app/Settings.h"
#include "cd/CDTrackListView.h"
#include "cd/frmCDPlayer.h"
#include "support/AppTest.h"
#include "support/FakeCDReader.h"
#include "support/FakeMixer.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

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
    frmCDPlayer& open() {
        auto* f = new frmCDPlayer();
        return *f;
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

    std::shared_ptr<FakeMixer> mixer;
};

TEST_F(CDPlayerTest, AMachineWithoutADriveOpensEmptyAndSilent) {
    FakeCDReader::disc().devices.clear();
    frmCDPlayer& f = open();
    EXPECT_EQ(f.windowTitle(), "Cantovel - Audio CD Control Panel");
    EXPECT_EQ(f.DevCombo->count(), 0);
    EXPECT_EQ(f.ListView->topLevelItemCount(), 0);
    EXPECT_FALSE(f.Timer.isEnabled());
    clock().advance(2000);
    EXPECT_EQ(f.Panels[0]->text(), "");
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

TEST_F(CDPlayerTest, ListsTheDrivesAndTheTracksWithTimesAndSizes) {
    FakeCDReader::disc().devices.append({QStringLiteral("E"), QStringLiteral("Second")});
    FakeCDReader::disc().tracks[1].IsAudio = false;
    FakeCDReader::disc().tracks[2].CopyProtected = true;
    FakeCDReader::disc().tracks[2].PreEmphasis = true;
    frmCDPlayer& f = open();
    ASSERT_EQ(f.DevCombo->count(), 2);
    EXPECT_EQ(f.DevCombo->itemText(0), "<D:>  Fake CD-ROM");
    EXPECT_EQ(f.DevCombo->itemText(1), "<E:>  Second");
    EXPECT_EQ(reader(f).openedDevices, QList<int>({0}));
    EXPECT_TRUE(f.Timer.isEnabled());
    ASSERT_EQ(f.ListView->topLevelItemCount(), 3);
    EXPECT_EQ(f.TrackCountShown, 3);
    EXPECT_EQ(line(f, 0), QStringList({"01", "0:00:02.00", "0:03:20.00", "33.65 MB", "No", "No"}));
    EXPECT_EQ(line(f, 2),
              QStringList({"03", "0:06:22.00", "0:04:00.00", "40.37 MB", "Yes", "Yes"}));
    EXPECT_EQ(f.ListView->Picture(0), CDTrackListView::AudioPicture);
    EXPECT_EQ(f.ListView->Picture(1), CDTrackListView::DataPicture);

    f.DevCombo->setCurrentIndex(1);
    f.DevCombo_Click();
    EXPECT_EQ(reader(f).openedDevices.last(), 1);
}

TEST_F(CDPlayerTest, PositionTextsCountHoursMinutesSecondsAndFrames) {
    EXPECT_EQ(CDTrackListView::PositionText(CDReader::FromFrames(0), true), "0:00:00.00");
    EXPECT_EQ(CDTrackListView::PositionText(CDReader::FromFrames(75 * 3725 + 74), true),
              "1:02:05.74");
    EXPECT_EQ(CDTrackListView::PositionText(CDReader::FromFrames(75 * 59 + 3), false), "0:00:59");
}

TEST_F(CDPlayerTest, ADriveThatCannotBeOpenedSaysWhyAndListsNothing) {
    FakeCDReader::disc().openError = QStringLiteral("Device busy.");
    frmCDPlayer& f = open();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text,
              "The selected CD-ROM drive could not be opened. \r\nDevice busy.");
    EXPECT_EQ(f.ListView->topLevelItemCount(), 0);
}

TEST_F(CDPlayerTest, PlaysTheFocusedTrackAndTheTickFollowsIt) {
    frmCDPlayer& f = open();
    select(f, 0);
    select(f, 1);
    f.PlayCDMenu_Click();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioTrack=1");
    EXPECT_TRUE(f.CDPlaying);
    EXPECT_EQ(f.Label1->text(), "Audio CD play in progress...");
    clock().advance(500);
    EXPECT_EQ(f.PlayCDMenu->text(), "&Stop CD Play");
    EXPECT_TRUE(f.PauseCDMenu->isEnabled());
    EXPECT_EQ(f.Panels[0]->text(), "CD Inserted");
    EXPECT_EQ(f.Panels[1]->text(), "Time: 0:03:22");
    EXPECT_EQ(f.Panels[2]->text(), "Track:02");

    // Stopping: a caption of its own until the next tick.
    f.Toolbar1_ButtonClick(QStringLiteral("Stop"));
    EXPECT_EQ(reader(f).calls.last(), "StopAudio");
    EXPECT_EQ(f.PlayCDMenu->text(), "Play &Track");
    EXPECT_EQ(f.Label1->text(), "Audio CD play has been stopped.");
    clock().advance(500);
    EXPECT_EQ(f.PlayCDMenu->text(), "&Play Track");
    EXPECT_FALSE(f.SeekNextMenu->isEnabled());
}

TEST_F(CDPlayerTest, RefusesWithoutASelectionOrWithADataTrackAnywhereOnTheDisc) {
    frmCDPlayer& f = open();
    f.ListView->clearSelection();
    f.PlayCDMenu_Click();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text,
              "You must select the audio track(s) you wish to convert before proceeding.");
    EXPECT_EQ(msgBox().shown[0].style, Mb::Information | Mb::SetForeground);

    FakeCDReader::disc().tracks[2].IsAudio = false;
    select(f, 0);
    f.PlayCDMenu_Click();
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_EQ(msgBox().shown[1].text,
              "The selected track is not of audio content.  \r\n\r\nEnsure the correct CD is in "
              "your drive before proceeding.");
    EXPECT_EQ(msgBox().shown[1].style, Mb::Exclamation | Mb::SetForeground);
    EXPECT_FALSE(reader(f).calls.join(',').contains("PlayAudio"));
    EXPECT_FALSE(f.CDPlaying);
}

TEST_F(CDPlayerTest, StopWhenNothingPlaysOnlySaysSo) {
    frmCDPlayer& f = open();
    const QStringList before = reader(f).calls;
    f.Toolbar1_ButtonClick(QStringLiteral("Stop"));
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text, "CD play is not currently in progress from this module.");
    EXPECT_EQ(reader(f).calls, before);
    EXPECT_EQ(f.PlayCDMenu->text(), "&Play Track");
}

TEST_F(CDPlayerTest, SeekingWrapsAroundTheDisc) {
    frmCDPlayer& f = open();
    select(f, 2);
    f.PlayCDMenu_Click();
    f.SeekNextMenu_Click();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=150+15000");
    EXPECT_EQ(f.SeekTrack, 1);
    EXPECT_EQ(f.PlayCDMenu->text(), "&Stop CD Play");
    f.SeekPrevMenu_Click();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=28650+18000");
    EXPECT_EQ(f.SeekTrack, 3);
}

TEST_F(CDPlayerTest, PauseKeepsThePlaceAndResumeTakesTheSeekTrackAsItStands) {
    frmCDPlayer& f = open();
    f.PauseCDMenu_Click();
    EXPECT_EQ(msgBox().shown.value(0).text,
              "CD audio is not currently being played from this module.");

    select(f, 0);
    f.PlayCDMenu_Click();
    clock().advance(2000);
    f.PauseCDMenu_Click();
    EXPECT_EQ(reader(f).calls.last(), "PauseAudio");
    EXPECT_EQ(f.PauseCDMenu->text(), "&Resume CD Play");
    EXPECT_EQ(CDReader::ToFrames(f.ResumePosition), 300);
    f.PauseCDMenu_Click();
    EXPECT_EQ(reader(f).calls.last(), "PlayAudioRange=300+15000");
    EXPECT_EQ(f.PauseCDMenu->text(), "Pa&use CD");

    // After a seek SeekTrack is one-based: the resume takes the next track's length.
    f.SeekNextMenu_Click();  // to track 2
    f.PauseCDMenu_Click();
    f.PauseCDMenu_Click();
    EXPECT_TRUE(reader(f).calls.last().endsWith("+18000")) << reader(f).calls.last().toStdString();
}

TEST_F(CDPlayerTest, ARemovedDiscEmptiesTheListWithinHalfASecond) {
    frmCDPlayer& f = open();
    clock().advance(500);
    ASSERT_EQ(f.ListView->topLevelItemCount(), 3);
    FakeCDReader::disc().removed = true;
    clock().advance(500);
    EXPECT_EQ(f.ListView->topLevelItemCount(), 0);
    EXPECT_EQ(f.TrackCountShown, -1);
    EXPECT_EQ(f.Panels[0]->text(), "CD Not Inserted");
    EXPECT_EQ(f.Panels[1]->text(), "");
    EXPECT_EQ(f.Panels[2]->text(), "");
    // Back in: listed again by the next tick.
    FakeCDReader::disc().removed = false;
    clock().advance(500);
    EXPECT_EQ(f.ListView->topLevelItemCount(), 3);
}

TEST_F(CDPlayerTest, ADiscWithTheSameTrackCountKeepsTheOldListButAnotherCountRefillsIt) {
    frmCDPlayer& f = open();
    FakeCDReader::setTracks({60, 60, 60});
    clock().advance(500);
    EXPECT_EQ(f.ListView->topLevelItem(0)->text(2), "0:03:20.00");
    FakeCDReader::setTracks({60, 60});
    clock().advance(500);
    ASSERT_EQ(f.ListView->topLevelItemCount(), 2);
    EXPECT_EQ(f.ListView->topLevelItem(0)->text(2), "0:01:00.00");
}

TEST_F(CDPlayerTest, MovingTheSliderWhileMutedUnmutes) {
    frmCDPlayer& f = open();
    EXPECT_EQ(f.Slider1->value(), 70);
    EXPECT_EQ(f.Label2->text(), "70");
    f.MuteMenu_Click();
    EXPECT_EQ(f.MuteMenu->text(), "&Un-Mute");
    EXPECT_EQ(mixer->volume, 0);
    f.Slider1->setValue(40);
    EXPECT_EQ(f.Label2->text(), "40");
    EXPECT_EQ(mixer->volume, 40);
    EXPECT_EQ(f.MuteMenu->text(), "&Mute");
    f.MuteMenu_Click();
    f.MuteMenu_Click();
    EXPECT_EQ(mixer->volume, 40);
}

TEST_F(CDPlayerTest, EjectOpensOrClosesByTheDoorAndTheTickGatesIt) {
    frmCDPlayer& f = open();
    f.EjectMenu_Click();
    EXPECT_EQ(reader(f).calls.last(), "Door=0");
    clock().advance(500);
    EXPECT_TRUE(f.EjectMenu->isEnabled());
    EXPECT_EQ(f.Panels[0]->text(), "CD Not Inserted");
    f.EjectMenu_Click();
    EXPECT_EQ(reader(f).calls.last(), "Door=1");
}

TEST_F(CDPlayerTest, ClosingStopsReleasesAndSavesTheReadersSettings) {
    FakeCDReader::disc().devices.append({QStringLiteral("E"), QStringLiteral("Second")});
    frmCDPlayer& f = open();
    f.DevCombo->setCurrentIndex(1);
    f.DevCombo_Click();
    FakeCDReader& r = reader(f);
    f.unload();
    EXPECT_TRUE(r.calls.join(',').endsWith("StopAudio,Close"));
    const QString key = QStringLiteral("Software\\Brightfen\\Cantovel\\DAC");
    EXPECT_EQ(ReadRegValue(RegRoot::CurrentUser, key, QStringLiteral("DeviceID"), {}), "1");
    EXPECT_EQ(ReadRegValue(RegRoot::CurrentUser, key, QStringLiteral("BlockCount"), {}), "26");

    // The next window starts on the saved drive.
    frmCDPlayer& again = open();
    EXPECT_EQ(again.DevCombo->currentIndex(), 1);
}

}  // namespace
