// The CD to MP3 window on cd-paranoia and LAME reading disc images, driven by its menus,
// toolbar and lists: the drive and track lists, the temporary-space question, the names of
// the outputs and the question about an existing one, runs, stops, tracks the disc can't
// give, and a disk that fills up.
#include <gtest/gtest.h>

#include <QAction>
#include <QLineEdit>
#include <QTest>
#include <QToolBar>

#include "app/Settings.h"
#include "convert/FileConversionFixture.h"
#include "convert/ProgressShape.h"
#include "convert/frmCDtoMP3.h"
#include "platform/clock/Timer.h"
#include "platform/trackextractor/ParanoiaTrackExtractor.h"
#include "player/frmTemp.h"
#include "skin/frmSettings.h"
#include "support/DiscImage.h"
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
        freeKb = 1e9;
        saved_ = frmCDtoMP3::FreeKilobytes;
        frmCDtoMP3::FreeKilobytes = fakeFreeKilobytes;
        // Two audio tracks of one and two seconds, and a data track.
        drives->add(DiscImage::buildSeconds(tempDir(), {1, 2}, DiscImage::Data::Last).cuePath());
        Components::provideService<CdDrives>(drives);
        Components::provideFactory<TrackExtractor>(
            [] { return std::make_unique<ParanoiaTrackExtractor>(); });
        temp = tempDir() + QStringLiteral("/tmp");
        QDir().mkpath(temp);
        SaveAppSetting(QStringLiteral("Temp  Location"), temp);
        SaveAppSetting(QStringLiteral("CD to MP3 Path"), out());
        SaveAppSetting(QStringLiteral("Conversion Bitrate"), QStringLiteral("1"));
    }
    void TearDown() override {
        frmCDtoMP3::FreeKilobytes = saved_;
        FileConversionFixture::TearDown();
    }
    static void select(frmCDtoMP3& w, std::initializer_list<int> rows) {
        w.List1->clearSelection();
        for (int r : rows) w.List1->item(r)->setSelected(true);
    }
    static void click(QListWidget* list, int row) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(row)).center());
    }
    // Calls `action` once, on the first of `signal`'s emissions.
    template <class Sender, class Signal>
    static void onFirst(Sender* sender, Signal signal, const std::function<void()>& action) {
        auto once = std::make_shared<bool>(false);
        QObject::connect(sender, signal, sender, [once, action] {
            if (!std::exchange(*once, true)) action();
        });
    }
    static double seconds(const QString& mp3) {
        const Mp3Info info = decodeMp3(mp3);
        return info.ok ? double(info.samples) / info.rate : -1;
    }

    std::shared_ptr<ImageDrives> drives = std::make_shared<ImageDrives>();
    QString temp;

  private:
    double (*saved_)(const QString&) = nullptr;
};

// A track extractor whose drive layer can't be set up.
class DeadExtractor : public ParanoiaTrackExtractor {
  public:
    qint16 Initialize() override { return 1; }
};

TEST_F(CDtoMP3Test, OpeningListsTheDrivesAndTheStoredDrivesTracksOrEndsTheWindow) {
    Components::provideFactory<TrackExtractor>([] { return std::make_unique<DeadExtractor>(); });
    frmTemp::get().mnuCDtoMP3->trigger();
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("Can´t initialize ASPI ! Please use a newer version of "
                                         "ASPI. Program abort!")});
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmCDtoMP3")));

    Components::provideFactory<TrackExtractor>(
        [] { return std::make_unique<ParanoiaTrackExtractor>(); });
    drives->add(DiscImage::buildSeconds(tempDir(), {5}, DiscImage::Data::None, "second").cuePath());
    SaveAppSetting(QStringLiteral("CD to MP3 Drive"), QStringLiteral("1"));
    SaveAppSetting(QStringLiteral("CD to MP3 Base Filename"), QStringLiteral("Song"));
    msgBox().reset();
    frmTemp::get().mnuCDtoMP3->trigger();
    frmCDtoMP3& w = *Forms::find<frmCDtoMP3>();
    EXPECT_EQ(w.Text2->text(), QStringLiteral("Song"));
    EXPECT_EQ(w.Dir1Path(), out());
    EXPECT_EQ(rows(w.List2), QStringList({"disc.cue", "second.cue"}));
    EXPECT_EQ(w.Text1->text(), QStringLiteral("second.cue"));
    EXPECT_EQ(rows(w.List1), QStringList{QStringLiteral("Track 01     Length: 00:05")});
    EXPECT_TRUE(msgBox().shown.isEmpty());

    w.Text2->setText(QStringLiteral("Other"));
    click(w.List2, 0);
    EXPECT_EQ(w.Text1->text(), QStringLiteral("disc.cue"));
    EXPECT_EQ(rows(w.List1),
              QStringList({"Track 01     Length: 00:01", "Track 02     Length: 00:02",
                           "Track 03     Length: 00:04"}));
    w.mnuExit->trigger();
    EXPECT_EQ(ReadAppSetting(QStringLiteral("CD to MP3 Base Filename"), {}),
              QStringLiteral("Other"));
    EXPECT_EQ(ReadAppSetting(QStringLiteral("CD to MP3 Drive"), {}), QStringLiteral("0"));
}

TEST_F(CDtoMP3Test, TheTemporarySpaceQuestionComesBelowThirtyMegabytes) {
    freeKb = 30000;
    Forms::touch<frmCDtoMP3>().unload();
    settle();
    EXPECT_TRUE(msgBox().shown.isEmpty());

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
    freeKb = 29999;
    EXPECT_EQ(Forms::touch<frmCDtoMP3>().List1->count(), 3);
    EXPECT_TRUE(sawSettings);
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_TRUE(msgBox().shown[0].text.startsWith(
        QStringLiteral("The \"Temporary Files Location\" you selected is running low")));
    EXPECT_EQ(msgBox().shown[0].buttons(), Mb::YesNo);
}

// One MP3 a track with the bars following; an existing MP3 is asked about: Yes overwrites
// it, No asks for another name and without one the old name stands.
TEST_F(CDtoMP3Test, ARunMakesOneMp3ATrackAndAnExistingOneIsAskedAbout) {
    frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
    w.mnuDownMix->trigger();
    QStringList titles;
    QObject::connect(&w, &QWidget::windowTitleChanged, [&](const QString& t) { titles << t; });
    double widest = 0;
    QObject::connect(w.Mp3Enc1.get(), &Mp3Encoder::EncodeProgress, &w,
                     [&] { widest = std::max(widest, w.Shape1->Width()); });
    select(w, {0, 1});
    w.mnuConvert->trigger();
    EXPECT_EQ(w.windowTitle(), kComplete);
    EXPECT_EQ(w.mnuConvert->text(), QStringLiteral("&Convert"));
    EXPECT_TRUE(titles.contains(QStringLiteral("Convert CD to MP3 - Initializing Conversion...")));
    EXPECT_TRUE(titles.contains(QStringLiteral("Convert CD to MP3 - Conversion in Progress...")));
    const Mp3Info mp3 = decodeMp3(out() + QStringLiteral("/Track2.mp3"));
    EXPECT_EQ(mp3.channels, 1);
    EXPECT_EQ(mp3.bitrateKbps, 64);
    EXPECT_NEAR(double(mp3.samples) / mp3.rate, 2.0, 0.01);
    EXPECT_NEAR(seconds(out() + QStringLiteral("/Track1.mp3")), 1.0, 0.01);
    EXPECT_TRUE(QDir(temp).isEmpty());
    EXPECT_GT(widest, w.FullWidth / 2);
    EXPECT_LE(widest, w.FullWidth);
    EXPECT_DOUBLE_EQ(w.Shape1->Width(), 0);
    EXPECT_TRUE(msgBox().shown.isEmpty());

    const QString old = out() + QStringLiteral("/Track1.mp3");
    const auto convertOver = [&](int answer) {
        EXPECT_TRUE(writeBytes(old, "old"));
        msgBox().script({answer});
        select(w, {0});
        w.mnuConvert->trigger();
    };
    convertOver(Mb::Yes);
    EXPECT_EQ(msgBox().shown.last().text,
              QStringLiteral("The output MP3 filename for the current track already exists.  "
                             "Would you like to overwrite the existing file?"));
    EXPECT_NEAR(seconds(old), 1.0, 0.01);
    dialogs->scriptCancel();
    convertOver(Mb::No);
    const DialogCall& save = dialogs->calls.last();
    EXPECT_EQ(save.request.title, QStringLiteral("Enter Output Filename for Current CD Track..."));
    EXPECT_EQ(save.request.filter + "|" + save.request.initDir, "MPEG Layer 3|*.mp3|" + out());
    EXPECT_NEAR(seconds(old), 1.0, 0.01);
    dialogs->scriptFiles({out() + QStringLiteral("/other.mp3")});
    convertOver(Mb::No);
    EXPECT_EQ(fileBytes(old), "old");
    EXPECT_NEAR(seconds(out() + QStringLiteral("/other.mp3")), 1.0, 0.01);
}

// A stop by the toolbar while a line extracts: the window stays while its run goes on, the
// next line's extraction carries on outside the run and is encoded. A stop while one line
// encodes ends it at once. Pressing a line previews it.
TEST_F(CDtoMP3Test, AStopEndsTheLineInWorkAndTheWindowStaysWhileARunGoesOn) {
    frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
    select(w, {0, 1});
    QString titleAfterStop;
    bool closed = true;
    onFirst(w.ACD1.get(), &TrackExtractor::ExtractProgress, [&] {
        closed = w.unload();
        w.Toolbar1->findChild<QAction*>(QStringLiteral("Convert"))->trigger();
        titleAfterStop = w.windowTitle();
    });
    w.mnuConvert->trigger();
    EXPECT_FALSE(closed);
    EXPECT_EQ(titleAfterStop, kInterrupted);
    EXPECT_EQ(w.windowTitle(), kComplete);
    EXPECT_FALSE(QFileInfo::exists(out() + QStringLiteral("/Track1.mp3")));
    // The temporary WAV goes once the MP3 is done.
    ASSERT_TRUE(waitUntil([&] {
        return QFileInfo::exists(out() + QStringLiteral("/Track2.mp3")) &&
               !QFileInfo::exists(temp + QStringLiteral("/track.wav"));
    }));
    EXPECT_NEAR(seconds(out() + QStringLiteral("/Track2.mp3")), 2.0, 0.01);

    select(w, {0});
    onFirst(w.Mp3Enc1.get(), &Mp3Encoder::EncodeProgress, [&] { w.mnuConvert->trigger(); });
    w.mnuConvert->trigger();
    EXPECT_EQ(w.windowTitle(), kComplete);
    EXPECT_EQ(w.mnuConvert->text(), QStringLiteral("&Convert"));
    EXPECT_TRUE(msgBox().shown.isEmpty());

    click(w.List1, 1);
    EXPECT_EQ(w.List1->currentRow(), 1);
}

// No line selected is told; a line the extractor refuses (the data track) is told and the
// window waits for the user's stop.
TEST_F(CDtoMP3Test, NothingToConvertIsToldAndAFailedExtractionWaitsForTheStop) {
    frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
    w.List1->clearSelection();
    w.mnuConvert->trigger();
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("You must first select the track(s) you wish to convert "
                                         "in order to continue.")});
    msgBox().reset();
    select(w, {2});
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
    EXPECT_TRUE(QDir(out()).isEmpty());
}

// A BIN shorter than its CUE says: its whole track becomes an MP3 of its length; a track of
// which the disc holds nothing, and one whose data went after the window listed it, are told
// by number, and no MP3 and no success follow.
TEST_F(CDtoMP3Test, ATrackTheDiscCannotReadIsToldAndBecomesNoMp3) {
    // The CUE tells of three one-second tracks; the BIN holds 100 sectors.
    const DiscImage disc = DiscImage::build(tempDir() + QStringLiteral("/short"), {75, 75, 75});
    ASSERT_TRUE(QFile::resize(disc.binPath(), 100 * DiscImage::kSectorBytes));
    drives->drives.clear();
    drives->add(disc.cuePath());
    frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
    ASSERT_EQ(w.List1->count(), 3);
    EXPECT_EQ(w.List1->item(2)->text(), QStringLiteral("Track 03     Length: 00:00"));
    const auto convert = [&](int row) {
        msgBox().reset();
        select(w, {row});
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
    EXPECT_EQ(mp3.channels, 2);
    EXPECT_NEAR(double(mp3.samples) / mp3.rate, 1.0, 0.01);
    EXPECT_GT(mp3.rms, 0.1);
    ASSERT_TRUE(QFile::remove(out() + QStringLiteral("/Track1.mp3")));

    EXPECT_EQ(convert(2), told("03"));
    EXPECT_EQ(w.windowTitle(), kInterrupted);
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
TEST_F(CDtoMP3Test, ADiskThatFillsUpIsToldAndKeepsTheOlderMp3) {
    const QString full = tempDir() + QStringLiteral("/full");
    SaveAppSetting(QStringLiteral("Temp  Location"), full);
    SaveAppSetting(QStringLiteral("CD to MP3 Path"), full);
    const QString output = full + QStringLiteral("/Track2.mp3");
    const QByteArray older(10000, 'o');
    // The track is 2 s: about 350 KB of WAV on the way to 16 KB of MP3.
    const int code = runOnFillingFolder(full, 128 * 1024, [&] {
        if (!writeBytes(output, older)) return 1;
        msgBox().script({Mb::Yes});
        frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
        select(w, {1});
        w.mnuConvert->trigger();
        const QStringList told = msgBox().texts();
        if (told.size() != 1 || !told[0].startsWith(QStringLiteral("Unable to write file:  ")))
            return 2;
        if (w.windowTitle() == kComplete) return 3;
        if (fileBytes(output) != older || !hiddenFiles(full).isEmpty()) return 4;
        return 0;
    });
    EXPECT_EQ(code, 0);
}

}  // namespace
