// Disc images as users make them: a BIN named otherwise than its CUE, an image that cannot
// be read, and a BIN shorter than its CUE says, seen through the control panel and the reader.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstring>

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QTest>
#include <QTreeWidget>

#include "app/AppState.h"
#include "app/FileNames.h"
#include "app/Forms.h"
#include "cd/CDTrackListView.h"
#include "cd/frmCDPlayer.h"
#include "platform/cdreader/CdioCDReader.h"
#include "support/AppTest.h"
#include "support/DiscImage.h"
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

class DiscImageWindowsTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        AppClosing = VFalse;
        Components::provideService<Mixer>(std::make_shared<FakeMixer>());
        drives = std::make_shared<ImageDrives>();
        Components::provideService<CdDrives>(drives);
        Components::provideFactory<CDReader>([] { return std::make_unique<CdioCDReader>(); });
    }
    void TearDown() override {
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        AppTest::TearDown();
    }
    std::shared_ptr<ImageDrives> drives;
};

TEST_F(DiscImageWindowsTest, TheControlPanelReadsTheBinTheCueNamesAndTellsOfAnUnreadableOnce) {
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
    for (const DiscImage* d : {&gone, &quoted, &bare, &own}) drives->add(d->cuePath());

    auto* f = new frmCDPlayer();
    ASSERT_EQ(f->DevCombo->count(), 4);
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
    // Qt cannot remove a name that is no UTF-8 along with the test's folder.
    ::unlink((NameToBytes(tempDir()) + "/d/bins/Ma musique \xe9.bin").constData());
}

}  // namespace
