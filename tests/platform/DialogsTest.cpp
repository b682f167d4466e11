// The desktop's dialogs: file and folder choices through Qt's file dialog, and the WAV
// format choice, each answered as a user answers it once it is up.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include "platform/dialogs/QtFileDialogs.h"
#include "platform/wavechain/FormatDialog.h"
#include "platform/wavechain/QtFormatChooser.h"

using namespace cantovel;

namespace {

// Acts on the modal dialog of type D once it is up.
template <typename D>
void whenDialogShows(std::function<void(D*)> act) {
    QTimer::singleShot(0, [act] {
        auto* dialog = qobject_cast<D*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        act(dialog);
    });
}

}  // namespace

// Saving through this dialog, its default extension and chosen filter, is run by the
// playlist editor's tests.
TEST(FileDialogs, OpenTakesSeveralOrAFolderAndCancelGivesNothing) {
    // Classic filters become Qt's: a description with its own parentheses keeps them and ours
    // come last, one without a pattern is dropped, blanks around patterns go.
    EXPECT_EQ(qtNameFilters("Playlists (*.ply)|*.ply|Wave| *.wav ; |Orphan"),
              QStringList({"Playlists (*.ply) (*.ply)", "Wave (*.wav)"}));
    QTemporaryDir dir;
    for (const char* n : {"a.wav", "b.wav"}) {
        QFile f(QDir(dir.path()).filePath(n));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
    QtFileDialogs dialogs;
    dialogs.setExtraPlaces({dir.path()});
    FileDialogRequest request;
    request.initDir = dir.path();
    request.multiSelect = true;
    whenDialogShows<QFileDialog>([](QFileDialog* dialog) {
        dialog->selectFile("\"a.wav\" \"b.wav\"");
        QMetaObject::invokeMethod(dialog, "accept");
    });
    FileDialogResult r = dialogs.open(nullptr, request);
    ASSERT_FALSE(r.cancelled);
    EXPECT_EQ(r.files, QStringList({QDir(dir.path()).filePath("a.wav"),
                                    QDir(dir.path()).filePath("b.wav")}));

    QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
    r = dialogs.open(nullptr, request);
    EXPECT_TRUE(r.cancelled);
    EXPECT_TRUE(r.files.isEmpty());

    // A folder choice starts where asked; its cancel gives an empty text.
    QDir(dir.path()).mkdir("out");
    QString title, shownDir;
    whenDialogShows<QFileDialog>([&](QFileDialog* dialog) {
        title = dialog->windowTitle();
        shownDir = dialog->directory().absolutePath();
        dialog->selectFile(QDir(dir.path()).filePath("out"));
        QMetaObject::invokeMethod(dialog, "accept");
    });
    EXPECT_EQ(dialogs.browseForFolder(nullptr, "Select Folder for WAV Output:", dir.path()),
              QDir(dir.path()).filePath("out"));
    EXPECT_EQ(title, "Select Folder for WAV Output:");
    EXPECT_EQ(shownDir, QDir(dir.path()).absolutePath());

    QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
    EXPECT_EQ(dialogs.browseForFolder(nullptr, "Pick", dir.path()), QString());
}

TEST(WaveFormat, SettingsTextRoundTripsEveryOfferedFormatAndDescribesIt) {
    for (WaveFormat::Encoding e : WaveFormat::encodings())
        for (int rate : WaveFormat::standardRates())
            for (int channels : {1, 2}) {
                const WaveFormat f = WaveFormat(e, rate, channels);
                if (!f.isWritable()) continue;
                EXPECT_EQ(WaveFormat::fromSettingsText(f.toSettingsText()), f)
                    << f.toSettingsText().toStdString();
            }
    EXPECT_EQ(WaveFormat(WaveFormat::MuLaw, 8000, 1).toSettingsText(), "ulaw,8000,1");
    EXPECT_EQ(WaveFormat::fromSettingsText(" IMA-ADPCM, 11025 ,2"),
              WaveFormat(WaveFormat::ImaAdpcm, 11025, 2));
    for (const char* text :
         {"", "pcm16,44100", "mp3,44100,2", "pcm16,fast,2", "gsm610,8000,2", "pcm16,44100,2,1"})
        EXPECT_FALSE(WaveFormat::fromSettingsText(text).has_value()) << text;
    EXPECT_EQ(WaveFormat(WaveFormat::MuLaw, 8000, 1).description(),
              QString::fromUtf8("\u00b5-law, 8,000 Hz, Mono"));
    EXPECT_EQ(WaveFormat(WaveFormat::Pcm16, 44100, 2).description(),
              "PCM 16-bit, 44,100 Hz, Stereo");
    EXPECT_EQ(FormatDialog::attributesText(WaveFormat(WaveFormat::Pcm16, 44100, 2)),
              "44,100 Hz, Stereo, 173 KB/s");
}

TEST(QtFormatChooser, OffersEachEncodingOnlyWhatAWavCanHoldAndKeepsTheChoiceOnCancel) {
    QtFormatChooser chooser;
    whenDialogShows<FormatDialog>([](FormatDialog* dialog) {
        EXPECT_EQ(dialog->attributesBox()->count(), 14);  // seven rates, mono and stereo
        EXPECT_EQ(dialog->format(), WaveFormat(WaveFormat::Pcm16, 44100, 2));
        // GSM 6.10 is mono only; the stereo choice falls back to what it offers.
        QComboBox* encodings = dialog->encodingBox();
        encodings->setCurrentIndex(encodings->findData(int(WaveFormat::Gsm610)));
        EXPECT_EQ(dialog->attributesBox()->count(), 7);
        EXPECT_EQ(dialog->format().encoding, WaveFormat::Gsm610);
        EXPECT_EQ(dialog->format().channels, 1);
        EXPECT_TRUE(dialog->format().isWritable());
        // A rate and layout the next encoding has too stays chosen.
        ASSERT_TRUE(dialog->setFormat(WaveFormat(WaveFormat::Gsm610, 8000, 1)));
        encodings->setCurrentIndex(encodings->findData(int(WaveFormat::MuLaw)));
        EXPECT_EQ(dialog->format(), WaveFormat(WaveFormat::MuLaw, 8000, 1));
        EXPECT_FALSE(dialog->setFormat(WaveFormat(WaveFormat::Gsm610, 8000, 2)));
        dialog->setFormat(WaveFormat(WaveFormat::MuLaw, 8000, 1));
        dialog->buttons()->button(QDialogButtonBox::Ok)->click();
    });
    ASSERT_TRUE(chooser.ChooseFormat("Select...", WaveFormat(WaveFormat::Pcm16, 44100, 2)));
    EXPECT_EQ(chooser.Format(), WaveFormat(WaveFormat::MuLaw, 8000, 1));

    whenDialogShows<FormatDialog>([](FormatDialog* dialog) {
        EXPECT_EQ(dialog->format(), WaveFormat(WaveFormat::MuLaw, 8000, 1));
        dialog->setFormat(WaveFormat(WaveFormat::Pcm24, 48000, 2));
        dialog->buttons()->button(QDialogButtonBox::Cancel)->click();
    });
    EXPECT_FALSE(chooser.ChooseFormat("Select...", chooser.Format()));
    EXPECT_EQ(chooser.Format(), WaveFormat(WaveFormat::MuLaw, 8000, 1));
}
