#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTimer>

#include "platform/wavechain/FormatDialog.h"
#include "platform/wavechain/QtFormatChooser.h"

using namespace cantovel;

namespace {

// Acts on the modal dialog once it is up.
void whenDialogShows(std::function<void(FormatDialog*)> act) {
    QTimer::singleShot(0, [act] {
        auto* dialog = qobject_cast<FormatDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        act(dialog);
    });
}

}  // namespace

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
    for (const char* text : {"", "pcm16", "pcm16,44100", "mp3,44100,2", "pcm16,fast,2",
                             "pcm16,44100,0", "gsm610,8000,2", "pcm16,44100,2,1"})
        EXPECT_FALSE(WaveFormat::fromSettingsText(text).has_value()) << text;
    EXPECT_EQ(WaveFormat(WaveFormat::MuLaw, 8000, 1).description(),
              QString::fromUtf8("\u00b5-law, 8,000 Hz, Mono"));
    EXPECT_EQ(WaveFormat(WaveFormat::Pcm16, 44100, 2).description(),
              "PCM 16-bit, 44,100 Hz, Stereo");
    EXPECT_EQ(FormatDialog::attributesText(WaveFormat(WaveFormat::Pcm16, 44100, 2)),
              "44,100 Hz, Stereo, 173 KB/s");
}

TEST(FormatDialog, OffersEachEncodingOnlyWhatAWavCanHold) {
    FormatDialog dialog("Select...", WaveFormat(WaveFormat::Pcm16, 44100, 2));
    EXPECT_EQ(dialog.windowTitle(), "Select...");
    EXPECT_EQ(dialog.encodingBox()->count(), WaveFormat::encodings().size());
    EXPECT_EQ(dialog.attributesBox()->count(), 14);  // seven rates, mono and stereo
    EXPECT_EQ(dialog.format(), WaveFormat(WaveFormat::Pcm16, 44100, 2));

    // GSM 6.10 is mono only; the stereo choice falls back to what it offers.
    dialog.encodingBox()->setCurrentIndex(dialog.encodingBox()->findData(int(WaveFormat::Gsm610)));
    EXPECT_EQ(dialog.attributesBox()->count(), 7);
    EXPECT_EQ(dialog.format().encoding, WaveFormat::Gsm610);
    EXPECT_EQ(dialog.format().channels, 1);
    EXPECT_TRUE(dialog.format().isWritable());

    // A rate and layout the next encoding has too stays chosen.
    ASSERT_TRUE(dialog.setFormat(WaveFormat(WaveFormat::Gsm610, 8000, 1)));
    dialog.encodingBox()->setCurrentIndex(dialog.encodingBox()->findData(int(WaveFormat::MuLaw)));
    EXPECT_EQ(dialog.format(), WaveFormat(WaveFormat::MuLaw, 8000, 1));
    EXPECT_FALSE(dialog.setFormat(WaveFormat(WaveFormat::Gsm610, 8000, 2)));
}

TEST(QtFormatChooser, ReturnsTheChosenFormatAndKeepsItOnCancel) {
    QtFormatChooser chooser;
    whenDialogShows([](FormatDialog* dialog) {
        dialog->setFormat(WaveFormat(WaveFormat::MuLaw, 8000, 1));
        dialog->buttons()->button(QDialogButtonBox::Ok)->click();
    });
    ASSERT_TRUE(chooser.ChooseFormat("Select...", WaveFormat(WaveFormat::Pcm16, 44100, 2)));
    EXPECT_EQ(chooser.Format(), WaveFormat(WaveFormat::MuLaw, 8000, 1));

    whenDialogShows([](FormatDialog* dialog) {
        EXPECT_EQ(dialog->format(), WaveFormat(WaveFormat::MuLaw, 8000, 1));
        dialog->setFormat(WaveFormat(WaveFormat::Pcm24, 48000, 2));
        dialog->buttons()->button(QDialogButtonBox::Cancel)->click();
    });
    EXPECT_FALSE(chooser.ChooseFormat("Select...", chooser.Format()));
    EXPECT_EQ(chooser.Format(), WaveFormat(WaveFormat::MuLaw, 8000, 1));
}
