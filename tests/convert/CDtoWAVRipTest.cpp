// CD to WAV with the real CD reader on a disc image: both tracks ripped to WAV files that
// hold exactly the image's samples, 44.1 kHz 16-bit stereo as libsndfile reads them.
#include <gtest/gtest.h>

#include <sndfile.h>

#include <QApplication>
#include <QListWidget>
#include <QPushButton>
#include <vector>

#include "app/AppState.h"
#include "app/Forms.h"
#include "cd/CDTrackListView.h"
#include "convert/frmCDtoWAV.h"
#include "convert/frmCopyDlg.h"
#include "platform/cdreader/CdioCDReader.h"
#include "platform/clock/QtClock.h"
#include "support/AppTest.h"
#include "support/AudioFixtures.h"
#include "support/DiscImage.h"
#include "support/FakeFileDialogs.h"
#include "support/FakeMediaPlayer.h"
#include "support/FakeMixer.h"
#include "support/ImageDrives.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class CDtoWAVRipTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        AppClosing = VFalse;
        Components::provideService<Clock>(std::make_shared<QtClock>());
        Components::provideService<Mixer>(std::make_shared<FakeMixer>());
        dialogs = std::make_shared<FakeFileDialogs>();
        Components::provideService<FileDialogs>(dialogs);
        FakeMediaPlayer::install();
        drives = std::make_shared<ImageDrives>();
        image = DiscImage::build(tempDir(), {600, 450}).cuePath();
        drives->add(image);
        Components::provideService<CdDrives>(drives);
        Components::provideFactory<CDReader>([] { return std::make_unique<CdioCDReader>(); });
    }
    void TearDown() override {
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        AppTest::TearDown();
    }
    // Copies the selected tracks under `name` as the user does and gives the dialog's
    // messages once its button reads "Close", pressing it then.
    QStringList copy(frmCDtoWAV& f, const QString& name) {
        dialogs->scriptFiles({name});
        QStringList rows;
        cantovel::Timer watch(20);
        QObject::connect(&watch, &cantovel::Timer::timeout, [&] {
            frmCopyDlg* d = Forms::find<frmCopyDlg>();
            if (!d || d->btnAbort->text() != "Close") return;
            for (int i = 0; i < d->Messages->count(); ++i) rows << d->Messages->item(i)->text();
            watch.setEnabled(false);
            d->btnAbort_Click();
        });
        watch.setEnabled(true);
        f.CopyTracks1->trigger();
        return rows;
    }

    std::shared_ptr<FakeFileDialogs> dialogs;
    std::shared_ptr<ImageDrives> drives;
    QString image;
};

TEST_F(CDtoWAVRipTest, RipsBothTracksToWavFilesHoldingTheDiscsSamples) {
    auto* f = new frmCDtoWAV();
    ASSERT_EQ(f->ListView->topLevelItemCount(), 2);
    f->ListView->SelectAll();
    // Far more than a drive takes in one read: the copy reads within what it takes.
    f->CDReader->setBlockCount(5000);
    EXPECT_EQ(copy(*f, tempDir() + QStringLiteral("/Rip.wav")),
              QStringList(
                  {"Copying Track 01", "Copying Track 02", "Copy completed without any errors."}));
    const SoundInfo info = readSoundInfo(tempDir() + QStringLiteral("/Rip02.wav"));
    ASSERT_TRUE(info.ok);
    EXPECT_EQ(info.rate, 44100);
    EXPECT_EQ(info.channels, 2);
    EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_EQ(readPcm16(tempDir() + QStringLiteral("/Rip01.wav")), DiscImage::pcm(1, 0, 600));
    EXPECT_EQ(readPcm16(tempDir() + QStringLiteral("/Rip02.wav")), DiscImage::pcm(2, 0, 450));
}

TEST_F(CDtoWAVRipTest, ADestinationThatFillsUpIsToldAndKeepsTheOlderFile) {
    const QString full = tempDir() + QStringLiteral("/full");
    const QString output = full + QStringLiteral("/Rip01.wav");
    const QByteArray older(10000, 'o');
    // Track 1 is about 1.4 MB.
    const int code = runOnFillingFolder(full, 256 * 1024, [&] {
        if (!writeBytes(output, older)) return 1;
        auto* f = new frmCDtoWAV();
        f->ListView->SelectAll();
        const QStringList rows = copy(*f, full + QStringLiteral("/Rip.wav"));
        if (rows != QStringList({"Copying Track 01",
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
}

}  // namespace
