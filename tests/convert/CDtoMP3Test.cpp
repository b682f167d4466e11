// The CD to MP3 window on a scripted extractor and encoder in virtual time: the drive and
// track lists, the temporary-space question, the names of the outputs, a run and its stop.
#include <gtest/gtest.h>

#include <QAction>
#include <QLineEdit>
#include <QListWidget>

#include "app/AppState.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "convert/BitrateMenu.h"
#include "convert/FileConversionFixture.h"
#include "convert/ProgressShape.h"
#include "convert/frmCDtoMP3.h"
#include "platform/clock/Timer.h"
#include "player/frmTemp.h"
#include "skin/frmSettings.h"
#include "support/FakeTrackExtractor.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const QString kComplete = QStringLiteral("Convert CD to MP3 - Conversion(s) Complete");
const QString kInterrupted =
    QStringLiteral("Convert CD to MP3 - Conversion Process Interrupted...");

double freeKb = 1e9;
double fakeFreeKilobytes(const QString&) {
    return freeKb;
}

class CDtoMP3Test : public FileConversionFixture {
  protected:
    void SetUp() override {
        FileConversionFixture::SetUp();
        FakeTrackExtractor::install();
        freeKb = 1e9;
        saved_ = frmCDtoMP3::FreeKilobytes;
        frmCDtoMP3::FreeKilobytes = fakeFreeKilobytes;
        temp = tempDir() + QStringLiteral("/tmp/");
        QDir().mkpath(temp);
        SaveAppSetting(QStringLiteral("Temp  Location"), temp);
        SaveAppSetting(QStringLiteral("CD to MP3 Path"), out());
    }
    void TearDown() override {
        frmCDtoMP3::FreeKilobytes = saved_;
        FileConversionFixture::TearDown();
    }
    frmCDtoMP3& open() {
        frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
        if (FakeMp3Encoder* e = FakeMp3Encoder::latest()) e->run.autoRun = true;
        return w;
    }
    FakeTrackExtractor& acd() { return *FakeTrackExtractor::latest(); }
    FakeMp3Encoder& encoder() { return *FakeMp3Encoder::latest(); }
    static void select(frmCDtoMP3& w, std::initializer_list<int> rows) {
        w.List1->clearSelection();
        for (int r : rows) w.List1->item(r)->setSelected(true);
    }
    // Calls `action` once, on the extractor's first progress.
    void onFirstProgress(const std::function<void()>& action) {
        auto once = std::make_shared<bool>(false);
        QObject::connect(&acd(), &TrackExtractor::ExtractProgress, &acd(), [once, action] {
            if (!std::exchange(*once, true)) action();
        });
    }

    QString temp;

  private:
    double (*saved_)(const QString&) = nullptr;
};

TEST_F(CDtoMP3Test, OpeningListsTheDrivesAndTheStoredDrivesTracks) {
    SaveAppSetting(QStringLiteral("CD to MP3 Drive"), QStringLiteral("1"));
    SaveAppSetting(QStringLiteral("CD to MP3 Base Filename"), QStringLiteral("Song"));
    FakeTrackExtractor::install();
    Components::provideFactory<TrackExtractor>([] {
        auto fake = std::make_unique<FakeTrackExtractor>();
        fake->drives = {QStringLiteral("First"), QStringLiteral("Second")};
        fake->discs[2] = {5000, 3599000};
        return fake;
    });
    frmCDtoMP3& w = open();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Convert CD to MP3"));
    EXPECT_EQ(w.mnuExit->text(), QStringLiteral("E&xit\tAlt+F4"));
    EXPECT_EQ(w.Text2->text(), QStringLiteral("Song"));
    EXPECT_EQ(w.Dir1Path(), out());
    EXPECT_EQ(w.List2->count(), 2);
    EXPECT_EQ(w.Text1->text(), QStringLiteral("Second"));
    EXPECT_EQ(acd().selectedDrive, 2);
    ASSERT_EQ(w.List1->count(), 2);
    EXPECT_EQ(w.List1->item(0)->text(), QStringLiteral("Track 01     Length: 00:05"));
    EXPECT_EQ(w.List1->item(1)->text(), QStringLiteral("Track 02     Length: 59:59"));
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_DOUBLE_EQ(w.FullWidth, 3495);
    EXPECT_DOUBLE_EQ(w.Shape1->Width(), 0);

    w.Text2->setText(QStringLiteral("Other"));
    w.List2->setCurrentRow(0);
    w.List2_Click();
    EXPECT_EQ(w.Text1->text(), QStringLiteral("First"));
    EXPECT_EQ(w.List1->count(), 3);
    w.unload();
    EXPECT_EQ(ReadAppSetting(QStringLiteral("CD to MP3 Base Filename"), {}),
              QStringLiteral("Other"));
    EXPECT_EQ(ReadAppSetting(QStringLiteral("CD to MP3 Drive"), {}), QStringLiteral("0"));
}

TEST_F(CDtoMP3Test, AnExtractorThatCannotStartEndsTheWindow) {
    Components::provideFactory<TrackExtractor>([] {
        auto fake = std::make_unique<FakeTrackExtractor>();
        fake->initializeResult = 1;
        return fake;
    });
    frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("Can´t initialize ASPI ! Please use a newer version of "
                                         "ASPI. Program abort!")});
    EXPECT_EQ(msgBox().shown[0].icon(), 0);
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmCDtoMP3")));
    // The menu command shows no window then.
    frmTemp::get().mnuCDtoMP3_Click();
    EXPECT_EQ(msgBox().shown.size(), 2);
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmCDtoMP3")));
    Q_UNUSED(w);
}

TEST_F(CDtoMP3Test, TheTemporarySpaceQuestionComesBelowThirtyMegabytes) {
    freeKb = 30000;
    open().unload();
    settle();
    EXPECT_TRUE(msgBox().shown.isEmpty());

    freeKb = 29999;
    msgBox().script({Mb::Yes});
    open().unload();
    settle();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_TRUE(msgBox().shown[0].text.startsWith(
        QStringLiteral("The \"Temporary Files Location\" you selected is running low")));
    EXPECT_EQ(msgBox().shown[0].buttons(), Mb::YesNo);
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Information);
    EXPECT_FALSE(Forms::find<frmSettings>() && Forms::find<frmSettings>()->isVisible());

    // No shows the settings, and the window waits until they are closed.
    msgBox().script({Mb::No});
    bool sawSettings = false;
    Timer closer(500);
    QObject::connect(&closer, &Timer::timeout, [&] {
        if (frmSettings* s = Forms::find<frmSettings>(); s && s->isVisible()) {
            sawSettings = s->isModal();
            s->hide();
        }
    });
    closer.setEnabled(true);
    frmCDtoMP3& w = open();
    EXPECT_TRUE(sawSettings);
    EXPECT_EQ(w.List1->count(), 3);
}

TEST_F(CDtoMP3Test, ARunMakesOneMp3ATrackAndRemovesTheTemporaryWav) {
    SaveAppSetting(QStringLiteral("Conversion Bitrate"), QStringLiteral("3"));
    frmCDtoMP3& w = open();
    w.mnuDownMix->trigger();
    QStringList titles;
    QObject::connect(&w, &QWidget::windowTitleChanged, [&](const QString& t) { titles << t; });
    select(w, {0, 2});
    w.mnuConvert->trigger();

    EXPECT_EQ(w.windowTitle(), kComplete);
    EXPECT_EQ(w.mnuConvert->text(), QStringLiteral("&Convert"));
    EXPECT_TRUE(titles.contains(QStringLiteral("Convert CD to MP3 - Initializing Conversion...")));
    EXPECT_TRUE(titles.contains(QStringLiteral("Convert CD to MP3 - Conversion in Progress...")));
    const QString tempWav = temp + QStringLiteral("track.wav");
    ASSERT_EQ(acd().extractions.size(), 2);
    EXPECT_EQ(acd().extractions[0], qMakePair(tempWav, 1));
    EXPECT_EQ(acd().extractions[1], qMakePair(tempWav, 3));
    ASSERT_EQ(encoder().run.setFilesCalls.size(), 2);
    EXPECT_EQ(encoder().run.setFilesCalls[0], qMakePair(tempWav, out() + "/Track1.mp3"));
    EXPECT_EQ(encoder().run.setFilesCalls[1], qMakePair(tempWav, out() + "/Track3.mp3"));
    EXPECT_EQ(encoder().startSettings[0], qMakePair(qint32(256000), true));
    EXPECT_FALSE(QFileInfo::exists(tempWav));
    EXPECT_TRUE(QFileInfo::exists(out() + "/Track3.mp3"));
    EXPECT_DOUBLE_EQ(w.Shape1->Width(), 0);
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

TEST_F(CDtoMP3Test, TheBarsFollowTheExtractionAndTheEncoding) {
    frmCDtoMP3& w = open();
    select(w, {0, 1});
    encoder().run.frameTotal = 200;
    QList<std::pair<double, double>> seen;
    QObject::connect(&encoder(), &Mp3Encoder::EncodeProgress, &w, [&](qint32 v) {
        if (v == 100) seen.append({w.Shape1->Width(), w.Shape2->Width()});
    });
    onFirstProgress([&] { seen.append({w.Shape1->Width(), w.Shape2->Width()}); });
    encoder().run.steps = 2;  // one progress at half way
    w.mnuConvert->trigger();
    ASSERT_EQ(seen.size(), 3);
    EXPECT_DOUBLE_EQ(seen[0].second, 3495.0 / 1000 * 250);
    // Half of the first track's encoding, then half of the second's.
    EXPECT_DOUBLE_EQ(seen[1].second, 3495.0 / 2);
    EXPECT_DOUBLE_EQ(seen[1].first, 3495.0 / 4);
    EXPECT_DOUBLE_EQ(seen[2].first, 3495.0 / 2 + 3495.0 / 4);
}

TEST_F(CDtoMP3Test, AnOutputFolderAtTheRootDoublesNoSeparator) {
    frmCDtoMP3& w = open();
    encoder().run.writesOutput = false;
    w.setDir1Path(QStringLiteral("/"));
    select(w, {1});
    w.mnuConvert->trigger();
    ASSERT_EQ(encoder().run.setFilesCalls.size(), 1);
    EXPECT_EQ(encoder().run.setFilesCalls[0].second, QStringLiteral("/Track2.mp3"));
    EXPECT_EQ(w.OutputName, QStringLiteral("/Track2.wav"));
}

TEST_F(CDtoMP3Test, AStopStartsTheNextSelectedLineWhichThenRunsToItsMp3) {
    frmCDtoMP3& w = open();
    select(w, {0, 1, 2});
    QString titleAfterStop;
    onFirstProgress([&] {
        w.mnuConvert->trigger();
        titleAfterStop = w.windowTitle();
    });
    w.mnuConvert->trigger();
    EXPECT_EQ(titleAfterStop, kInterrupted);
    EXPECT_EQ(acd().aborts, 1);
    // The second line got its extraction; the third never did.
    ASSERT_EQ(acd().extractions.size(), 2);
    EXPECT_EQ(acd().extractions[1].second, 2);
    EXPECT_EQ(w.windowTitle(), kComplete);
    EXPECT_FALSE(w.StopRequested);
    EXPECT_TRUE(encoder().run.setFilesCalls.isEmpty());
    // Outside the run, that extraction goes on and is encoded.
    clock().advance(2000);
    ASSERT_EQ(encoder().run.setFilesCalls.size(), 1);
    EXPECT_EQ(encoder().run.setFilesCalls[0].second, out() + "/Track2.mp3");
    EXPECT_TRUE(QFileInfo::exists(out() + "/Track2.mp3"));
}

TEST_F(CDtoMP3Test, AStopWithOneSelectedLineEndsAtOnceAndAStopWhileEncodingStopsTheEncoder) {
    frmCDtoMP3& w = open();
    select(w, {1});
    onFirstProgress([&] { w.Toolbar1_ButtonClick(QStringLiteral("Convert")); });
    w.mnuConvert->trigger();
    EXPECT_EQ(acd().extractions.size(), 1);
    EXPECT_EQ(w.windowTitle(), kComplete);
    clock().advance(2000);
    EXPECT_TRUE(encoder().run.setFilesCalls.isEmpty());

    // During the encoding, the encoder stops too and keeps no run going.
    auto once = std::make_shared<bool>(false);
    QObject::connect(&encoder(), &Mp3Encoder::EncodeProgress, &w, [&w, once] {
        if (!std::exchange(*once, true)) w.mnuConvert->trigger();
    });
    w.mnuConvert->trigger();
    EXPECT_EQ(encoder().run.stops, 1);
    EXPECT_FALSE(encoder().run.running);
    EXPECT_EQ(w.windowTitle(), kComplete);
}

TEST_F(CDtoMP3Test, AnExistingMp3IsAskedAbout) {
    frmCDtoMP3& w = open();
    const QString old = out() + QStringLiteral("/Track1.mp3");
    select(w, {0});
    const auto makeOld = [&] {
        QFile f(old);
        f.open(QIODevice::WriteOnly);
        f.write("old");
    };
    // Yes: the old file goes first.
    makeOld();
    msgBox().script({Mb::Yes});
    w.mnuConvert->trigger();
    EXPECT_EQ(msgBox().shown.last().text,
              QStringLiteral("The output MP3 filename for the current track already exists.  "
                             "Would you like to overwrite the existing file?"));
    EXPECT_EQ(msgBox().shown.last().icon(), Mb::Question);
    EXPECT_EQ(encoder().run.setFilesCalls.last().second, old);

    // No, and a cancelled dialog: the old name stands.
    msgBox().script({Mb::No});
    dialogs->scriptCancel();
    w.mnuConvert->trigger();
    const DialogCall& save = dialogs->calls.last();
    EXPECT_EQ(save.kind, DialogCall::Save);
    EXPECT_EQ(save.request.title, QStringLiteral("Enter Output Filename for Current CD Track..."));
    EXPECT_EQ(save.request.filter, QStringLiteral("MPEG Layer 3|*.mp3"));
    EXPECT_EQ(save.request.initDir, out());
    EXPECT_EQ(encoder().run.setFilesCalls.last().second, old);

    // No, and a new name.
    msgBox().script({Mb::No});
    dialogs->scriptFiles({out() + QStringLiteral("/other.mp3")});
    w.mnuConvert->trigger();
    EXPECT_EQ(encoder().run.setFilesCalls.last().second, out() + QStringLiteral("/other.mp3"));
}

TEST_F(CDtoMP3Test, NothingToConvertIsToldAndAFailedExtractionWaitsForTheStop) {
    frmCDtoMP3& w = open();
    w.List1->clearSelection();
    w.mnuConvert->trigger();
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("You must first select the track(s) you wish to convert "
                                         "in order to continue.")});
    EXPECT_EQ(w.windowTitle(), kComplete);

    msgBox().reset();
    acd().refusals[2] = TrackExtractor::NoDisc;
    select(w, {1});
    Timer stop(5000);
    QObject::connect(&stop, &Timer::timeout, [&] {
        stop.setEnabled(false);
        w.mnuConvert->trigger();
    });
    stop.setEnabled(true);
    w.mnuConvert->trigger();
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral(
                  "An error occurred while attempting to load the selected track.  Please ensure "
                  "a valid audio CD is inserted.  If problems persist, your disc may require "
                  "cleaning.")});
    EXPECT_GE(clock().msecs(), 5000);
    EXPECT_EQ(w.mnuConvert->text(), QStringLiteral("&Convert"));
}

TEST_F(CDtoMP3Test, TheWindowStaysWhileARunGoesOn) {
    frmCDtoMP3& w = open();
    select(w, {0});
    bool closed = true;
    onFirstProgress([&] { closed = w.unload(); });
    w.mnuConvert->trigger();
    EXPECT_FALSE(closed);
    EXPECT_EQ(w.windowTitle(), kComplete);
    // Pressing and releasing a line previews it.
    w.List1->setCurrentRow(2);
    w.List1_MouseDown();
    w.List1_MouseUp();
    ASSERT_EQ(acd().previews.size(), 1);
    EXPECT_EQ(acd().previews[0][0], 3);
    EXPECT_EQ(acd().endPreviews, 1);
}

}  // namespace
