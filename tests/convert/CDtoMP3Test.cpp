// The CD to MP3 window, driven by its menus and list: on a scripted extractor and encoder in
// virtual time (the drive and track lists, the temporary-space question, the names of the
// outputs, a run and its stop), and on cd-paranoia and LAME reading a disc image.
#include <gtest/gtest.h>

#include <QAction>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QToolBar>

#include "app/AppState.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "convert/BitrateMenu.h"
#include "convert/FileConversionFixture.h"
#include "convert/ProgressShape.h"
#include "convert/frmCDtoMP3.h"
#include "platform/clock/Timer.h"
#include "platform/mp3encoder/LameMp3Encoder.h"
#include "platform/trackextractor/ParanoiaTrackExtractor.h"
#include "player/frmTemp.h"
#include "skin/frmSettings.h"
#include "support/AudioFixtures.h"
#include "support/DiscImage.h"
#include "support/FakeTrackExtractor.h"
#include "support/ImageDrives.h"

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

TEST_F(CDtoMP3Test, OpeningListsTheDrivesAndTheStoredDrivesTracksOrEndsTheWindow) {
    Components::provideFactory<TrackExtractor>([] {
        auto fake = std::make_unique<FakeTrackExtractor>();
        fake->initializeResult = 1;
        return fake;
    });
    frmTemp::get().mnuCDtoMP3_Click();
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("Can´t initialize ASPI ! Please use a newer version of "
                                         "ASPI. Program abort!")});
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmCDtoMP3")));

    SaveAppSetting(QStringLiteral("CD to MP3 Drive"), QStringLiteral("1"));
    SaveAppSetting(QStringLiteral("CD to MP3 Base Filename"), QStringLiteral("Song"));
    Components::provideFactory<TrackExtractor>([] {
        auto fake = std::make_unique<FakeTrackExtractor>();
        fake->drives = {QStringLiteral("First"), QStringLiteral("Second")};
        fake->discs[2] = {5000, 3599000};
        return fake;
    });
    frmCDtoMP3& w = open();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Convert CD to MP3"));
    EXPECT_EQ(w.Text2->text(), QStringLiteral("Song"));
    EXPECT_EQ(w.Dir1Path(), out());
    EXPECT_EQ(w.List2->count(), 2);
    EXPECT_EQ(w.Text1->text(), QStringLiteral("Second"));
    EXPECT_EQ(rows(w.List1), QStringList({QStringLiteral("Track 01     Length: 00:05"),
                                          QStringLiteral("Track 02     Length: 59:59")}));
    EXPECT_EQ(msgBox().shown.size(), 1);
    EXPECT_DOUBLE_EQ(w.FullWidth, 3495);

    w.Text2->setText(QStringLiteral("Other"));
    QTest::mouseClick(w.List2->viewport(), Qt::LeftButton, {},
                      w.List2->visualItemRect(w.List2->item(0)).center());
    EXPECT_EQ(w.Text1->text(), QStringLiteral("First"));
    EXPECT_EQ(w.List1->count(), 3);
    w.mnuExit->trigger();
    EXPECT_EQ(ReadAppSetting(QStringLiteral("CD to MP3 Base Filename"), {}),
              QStringLiteral("Other"));
    EXPECT_EQ(ReadAppSetting(QStringLiteral("CD to MP3 Drive"), {}), QStringLiteral("0"));
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
    EXPECT_EQ(open().List1->count(), 3);
    EXPECT_TRUE(sawSettings);
}

TEST_F(CDtoMP3Test, ARunMakesOneMp3ATrackWithTheBarsFollowingAndAnExistingOneIsAskedAbout) {
    SaveAppSetting(QStringLiteral("Conversion Bitrate"), QStringLiteral("3"));
    frmCDtoMP3& w = open();
    w.mnuDownMix->trigger();
    QStringList titles;
    QObject::connect(&w, &QWidget::windowTitleChanged, [&](const QString& t) { titles << t; });
    select(w, {0, 2});
    encoder().run.frameTotal = 200;
    encoder().run.steps = 2;  // one progress at half way
    QList<std::pair<double, double>> seen;
    QObject::connect(&encoder(), &Mp3Encoder::EncodeProgress, &w, [&](qint32 v) {
        if (v == 100) seen.append({w.Shape1->Width(), w.Shape2->Width()});
    });
    onFirstProgress([&] { seen.append({w.Shape1->Width(), w.Shape2->Width()}); });
    w.mnuConvert->trigger();

    EXPECT_EQ(w.windowTitle(), kComplete);
    EXPECT_EQ(w.mnuConvert->text(), QStringLiteral("&Convert"));
    EXPECT_TRUE(titles.contains(QStringLiteral("Convert CD to MP3 - Initializing Conversion...")));
    EXPECT_TRUE(titles.contains(QStringLiteral("Convert CD to MP3 - Conversion in Progress...")));
    const QString tempWav = temp + QStringLiteral("track.wav");
    EXPECT_EQ(acd().extractions, (QList<QPair<QString, int>>{{tempWav, 1}, {tempWav, 3}}));
    EXPECT_EQ(encoder().run.setFilesCalls,
              (QList<QPair<QString, QString>>{{tempWav, out() + "/Track1.mp3"},
                                              {tempWav, out() + "/Track3.mp3"}}));
    EXPECT_EQ(encoder().startSettings[0], qMakePair(qint32(256000), true));
    EXPECT_FALSE(QFileInfo::exists(tempWav));
    EXPECT_TRUE(QFileInfo::exists(out() + "/Track3.mp3"));
    EXPECT_DOUBLE_EQ(w.Shape1->Width(), 0);
    EXPECT_TRUE(msgBox().shown.isEmpty());
    // Half of the first track's encoding, then half of the second's.
    ASSERT_EQ(seen.size(), 3);
    EXPECT_DOUBLE_EQ(seen[0].second, 3495.0 / 1000 * 250);
    EXPECT_DOUBLE_EQ(seen[1].second, 3495.0 / 2);
    EXPECT_DOUBLE_EQ(seen[1].first, 3495.0 / 4);
    EXPECT_DOUBLE_EQ(seen[2].first, 3495.0 / 2 + 3495.0 / 4);

    // An existing MP3 is asked about. Yes: the old file goes first.
    const QString old = out() + QStringLiteral("/Track1.mp3");
    select(w, {0});
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
    EXPECT_EQ(save.request.filter + "|" + save.request.initDir, "MPEG Layer 3|*.mp3|" + out());
    EXPECT_EQ(encoder().run.setFilesCalls.last().second, old);
    // No, and a new name.
    msgBox().script({Mb::No});
    dialogs->scriptFiles({out() + QStringLiteral("/other.mp3")});
    w.mnuConvert->trigger();
    EXPECT_EQ(encoder().run.setFilesCalls.last().second, out() + QStringLiteral("/other.mp3"));

    // An output folder at the root doubles no separator.
    encoder().run.writesOutput = false;
    w.setDir1Path(QStringLiteral("/"));
    select(w, {1});
    w.mnuConvert->trigger();
    EXPECT_EQ(encoder().run.setFilesCalls.last().second, QStringLiteral("/Track2.mp3"));
    EXPECT_EQ(w.OutputName, QStringLiteral("/Track2.wav"));
}

TEST_F(CDtoMP3Test, AStopEndsTheLineInWorkAndTheWindowStaysWhileARunGoesOn) {
    frmCDtoMP3& w = open();
    select(w, {0, 1, 2});
    QString titleAfterStop;
    bool closed = true;
    onFirstProgress([&] {
        closed = w.unload();
        w.Toolbar1->findChild<QAction*>(QStringLiteral("Convert"))->trigger();
        titleAfterStop = w.windowTitle();
    });
    w.mnuConvert->trigger();
    EXPECT_FALSE(closed);
    EXPECT_EQ(titleAfterStop, kInterrupted);
    EXPECT_EQ(acd().aborts, 1);
    // The second line got its extraction; the third never did.
    ASSERT_EQ(acd().extractions.size(), 2);
    EXPECT_EQ(acd().extractions[1].second, 2);
    EXPECT_EQ(w.windowTitle(), kComplete);
    EXPECT_TRUE(encoder().run.setFilesCalls.isEmpty());
    // Outside the run, that extraction goes on and is encoded.
    clock().advance(2000);
    EXPECT_EQ(encoder().run.setFilesCalls.value(0).second, out() + "/Track2.mp3");
    EXPECT_TRUE(QFileInfo::exists(out() + "/Track2.mp3"));

    // With one selected line it ends at once; during the encoding the encoder stops too.
    select(w, {1});
    auto once = std::make_shared<bool>(false);
    QObject::connect(&encoder(), &Mp3Encoder::EncodeProgress, &w, [&w, once] {
        if (!std::exchange(*once, true)) w.mnuConvert->trigger();
    });
    w.mnuConvert->trigger();
    EXPECT_EQ(encoder().run.stops, 1);
    EXPECT_FALSE(encoder().run.running);
    EXPECT_EQ(w.windowTitle(), kComplete);

    // Pressing and releasing a line previews it.
    QTest::mouseClick(w.List1->viewport(), Qt::LeftButton, {},
                      w.List1->visualItemRect(w.List1->item(2)).center());
    ASSERT_EQ(acd().previews.size(), 1);
    EXPECT_EQ(acd().previews[0][0], 3);
    EXPECT_EQ(acd().endPreviews, 1);
}

TEST_F(CDtoMP3Test, NothingToConvertIsToldAndAFailedExtractionWaitsForTheStop) {
    frmCDtoMP3& w = open();
    w.List1->clearSelection();
    w.mnuConvert->trigger();
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("You must first select the track(s) you wish to convert "
                                         "in order to continue.")});
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

// cd-paranoia and LAME on a disc image of two two-second tracks.
class CDtoMP3RunTest : public FileConversionFixture {
  protected:
    void SetUp() override {
        FileConversionFixture::SetUp();
        auto drives = std::make_shared<ImageDrives>();
        drives->add(DiscImage::buildSeconds(tempDir(), {2, 2}).cuePath());
        Components::provideService<CdDrives>(drives);
        Components::provideFactory<TrackExtractor>(
            [] { return std::make_unique<ParanoiaTrackExtractor>(); });
        Components::provideFactory<Mp3Encoder>([] { return std::make_unique<LameMp3Encoder>(); });
        temp = tempDir() + QStringLiteral("/tmp");
        QDir().mkpath(temp);
        SaveAppSetting(QStringLiteral("Temp  Location"), temp);
        SaveAppSetting(QStringLiteral("CD to MP3 Path"), out());
        SaveAppSetting(QStringLiteral("Conversion Bitrate"), QStringLiteral("1"));
    }
    QString temp;
};

// A BIN shorter than its CUE says: its whole track becomes an MP3 of its length; a track of
// which the disc holds nothing, and one whose data went after the window listed it, are told
// by number, and no MP3 and no success follow.
TEST_F(CDtoMP3RunTest, ATrackTheDiscCannotReadIsToldAndBecomesNoMp3) {
    // The CUE tells of three one-second tracks; the BIN holds 100 sectors.
    const DiscImage disc = DiscImage::build(tempDir() + QStringLiteral("/short"), {75, 75, 75});
    ASSERT_TRUE(QFile::resize(disc.binPath(), 100 * DiscImage::kSectorBytes));
    auto drives = std::make_shared<ImageDrives>();
    drives->add(disc.cuePath());
    Components::provideService<CdDrives>(drives);
    frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
    ASSERT_EQ(w.List1->count(), 3);
    EXPECT_EQ(w.List1->item(2)->text(), QStringLiteral("Track 03     Length: 00:00"));
    const auto convert = [&](int row) {
        msgBox().reset();
        w.List1->clearSelection();
        w.List1->item(row)->setSelected(true);
        w.mnuConvert->trigger();
        return msgBox().texts();
    };
    const auto told = [](const char* track) {
        return QStringList{QStringLiteral("Track ") + QLatin1String(track) +
                           QStringLiteral(" could not be read from the CD.  Please ensure a valid "
                                          "audio CD is inserted.  If problems persist, your disc "
                                          "may require cleaning.")};
    };
    // Track 1 is whole: an MP3 of its length, and no temporary WAV left.
    EXPECT_EQ(convert(0), QStringList{});
    EXPECT_EQ(w.windowTitle(), kComplete);
    const Mp3Info mp3 = decodeMp3(out() + QStringLiteral("/Track1.mp3"));
    ASSERT_TRUE(mp3.ok);
    EXPECT_EQ(mp3.bitrateKbps, 64);
    EXPECT_EQ(mp3.channels, 2);
    EXPECT_NEAR(double(mp3.samples) / mp3.rate, 1.0, 0.01);
    EXPECT_GT(mp3.rms, 0.1);
    ASSERT_TRUE(QFile::remove(out() + QStringLiteral("/Track1.mp3")));

    EXPECT_EQ(convert(2), told("03"));
    EXPECT_EQ(w.windowTitle(),
              QStringLiteral("Convert CD to MP3 - Conversion Process Interrupted..."));
    // Track 2's last sectors go after the listing.
    ASSERT_TRUE(QFile::resize(disc.binPath(), 80 * DiscImage::kSectorBytes));
    EXPECT_EQ(convert(1), told("02"));
    EXPECT_NE(w.windowTitle(), kComplete);
    EXPECT_TRUE(QDir(out()).entryList(QDir::Files | QDir::Hidden).isEmpty());
    EXPECT_TRUE(QDir(temp).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

// The temporary space and the output share a disk that fills up (the low-space question
// answered Yes): the user is told which file could not be written, the title is not the
// one of a complete run, and an older MP3 of the output's name stays whole.
TEST_F(CDtoMP3RunTest, ADiskThatFillsUpIsToldAndKeepsTheOlderMp3) {
    const QString full = tempDir() + QStringLiteral("/full");
    SaveAppSetting(QStringLiteral("Temp  Location"), full);
    SaveAppSetting(QStringLiteral("CD to MP3 Path"), full);
    const QString output = full + QStringLiteral("/Track2.mp3");
    const QByteArray older(10000, 'o');
    // The track is 2 s: about 350 KB of WAV on the way to 16 KB of MP3.
    const int code = runOnFillingFolder(full, 128 * 1024, [&] {
        if (!writeBytes(output, older)) return 1;
        msgBox().script({Mb::Yes, Mb::Yes});
        frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
        w.List1->item(1)->setSelected(true);
        w.mnuConvert->trigger();
        QStringList told = msgBox().texts();
        // Asked when the temporary space is short, as a tmpfs here is.
        told.removeIf([](const QString& t) { return t.contains("running low on disk space"); });
        if (told.size() != 1 || !told[0].startsWith(QStringLiteral("Unable to write file:  ")))
            return 2;
        if (w.windowTitle() == kComplete) return 3;
        if (fileBytes(output) != older || !hiddenFiles(full).isEmpty()) return 4;
        return 0;
    });
    EXPECT_EQ(code, 0);
}

}  // namespace
