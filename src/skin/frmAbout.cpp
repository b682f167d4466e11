#include "skin/frmAbout.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "skin/ResPicture.h"

namespace cantovel {

frmAbout::frmAbout() : Form(QStringLiteral("frmAbout"), nullptr, Qt::Dialog) {
    setWindowTitle(QStringLiteral("About Cantovel"));
    auto* layout = new QVBoxLayout(this);

    // The top of the built-in face, as a banner.
    auto* banner = new QLabel(this);
    banner->setPixmap(LoadResPicture(108));
    banner->setAlignment(Qt::AlignCenter);
    layout->addWidget(banner);

    lblTitle = new QLabel(QStringLiteral("<b>Brightfen Cantovel</b>"), this);
    lblTitle->setAlignment(Qt::AlignCenter);
    QFont f = lblTitle->font();
    f.setPointSizeF(f.pointSizeF() * 1.4);
    lblTitle->setFont(f);
    layout->addWidget(lblTitle);

    lblVersion = new QLabel(QStringLiteral("Version " CANTOVEL_VERSION), this);
    lblVersion->setAlignment(Qt::AlignCenter);
    layout->addWidget(lblVersion);

    lblText = new QLabel(
        QStringLiteral(
            "A media player and audio conversion workbench.<br><br>"
            "Plays audio and video files, audio CDs and playlists; turns CD audio into WAV "
            "or MP3, WAV into MP3 and back, and WAV files into other formats.<br><br>"
            "Built on Qt, with mpv for playing, LAME for MP3 encoding, mpg123 for decoding, "
            "libcdio and cdparanoia for CDs, libsndfile and soxr for WAV files.<br><br>"
            "Copyright &copy; Brightfen."),
        this);
    lblText->setWordWrap(true);
    lblText->setAlignment(Qt::AlignCenter);
    layout->addWidget(lblText);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    layout->addWidget(cmdOK, 0, Qt::AlignCenter);
    connect(cmdOK, &QPushButton::clicked, this, [this] { unload(); });

    setFixedWidth(340);
}

}  // namespace cantovel
