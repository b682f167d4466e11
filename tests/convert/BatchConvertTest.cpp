// The WAV batch converter on a scripted chain: the run over the list, the format dialog,
// the stop, the full disk and the caption left behind.
#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QToolBar>

#include "app/Settings.h"
#include "convert/FileConversionFixture.h"
#include "convert/frmBatchConvert.h"
#include "platform/clock/Timer.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const QString kDone = QStringLiteral("Batch WAV conversion process has successfully completed.");
const QString kStopped = QStringLiteral("WAV batch conversion process has been stopped.");
const QString kEmpty = QStringLiteral(
    "No files are currently listed in your conversion list.  Please add the file(s) you wish "
    "to convert before proceeding.");
const WaveFormat kMuLaw{WaveFormat::MuLaw, 8000, 1};

class BatchConvertTest : public FileConversionFixture {
  protected:
    frmBatchConvert& open() {
        frmBatchConvert& w = Forms::touch<frmBatchConvert>();
        for (const char* name : {"a.wav", "b.wav", "c.wav"})
            w.addEntry(file(QStringLiteral("in/") + QLatin1String(name)));
        return w;
    }
    FakeWaveChain& chain() { return *FakeWaveChain::latest(); }
    FakeFormatChooser& acm() { return *FakeFormatChooser::latest(); }
    void start(frmBatchConvert& w, std::optional<WaveFormat> format = kMuLaw) {
        dialogs->scriptFolder(out());
        acm().script({format});
        w.ConvertMenu->trigger();
        settle();
    }
};

TEST_F(BatchConvertTest, ConvertsEveryFileIntoTheFolderAndAFileAddedDuringTheRunJoinsIt) {
    frmBatchConvert& w = open();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("WAV Batch Converter"));
    start(w);
    EXPECT_EQ(dialogs->calls.last().prompt, QStringLiteral("Select Folder for WAV Output:"));
    ASSERT_EQ(acm().showings.size(), 1);
    EXPECT_EQ(acm().showings[0].title, QStringLiteral("Select..."));
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Stop Conversion"));
    // The gauge follows the source while the timer runs.
    chain().length = 400;
    chain().position = 100;
    clock().advance(100);
    EXPECT_EQ(w.Gauge->value(), 25);
    // The window stays open while a file converts, and the list isn't locked.
    EXPECT_FALSE(w.unload());
    EXPECT_TRUE(msgBox().shown.isEmpty());
    dialogs->scriptFiles({file(QStringLiteral("late.wav"))});
    w.AddMenu->trigger();
    for (int i = 0; i < 4; ++i) {
        chain().dataEnd();
        settle();
    }
    ASSERT_EQ(chain().conversions.size(), 4);
    for (const auto& c : chain().conversions) {
        EXPECT_EQ(c.format, kMuLaw);
        EXPECT_EQ(c.destination, out() + u'/' + QFileInfo(c.source).fileName());
    }
    EXPECT_EQ(w.Label1->text(), kDone);
    EXPECT_EQ(msgBox().texts(), QStringList{kDone});
    EXPECT_EQ(w.List1->count(), 0);
    EXPECT_EQ(w.Gauge->value(), 0);
    // The caption stays: an empty list answers first, then a new list's first click stops.
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Stop Conversion"));
    w.ConvertMenu->trigger();
    EXPECT_EQ(msgBox().texts().last(), kEmpty);
    w.addEntry(file(QStringLiteral("d.wav")));
    w.ConvertMenu->trigger();
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Start Conversion"));
    EXPECT_EQ(w.Label1->text(), kStopped);
    EXPECT_EQ(chain().conversions.size(), 4);
    EXPECT_TRUE(w.unload());
}

TEST_F(BatchConvertTest, DecliningTheFormatOrStoppingKeepsTheList) {
    frmBatchConvert& w = open();
    start(w, std::nullopt);
    EXPECT_EQ(ReadAppSetting(QStringLiteral("WAV Convert Output Path"), {}), out());
    EXPECT_EQ(chain().starts, 0);
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Start Conversion"));
    dialogs->scriptCancel();
    w.ConvertMenu->trigger();
    EXPECT_EQ(acm().showings.size(), 1);

    // A stop during the last file.
    start(w);
    chain().dataEnd();
    settle();
    chain().dataEnd();
    settle();
    w.Toolbar1->findChild<QAction*>(QStringLiteral("Convert"))->trigger();
    settle();
    EXPECT_EQ(w.Label1->text(), kStopped);
    EXPECT_EQ(w.List1->count(), 3);
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Start Conversion"));
}

}  // namespace
