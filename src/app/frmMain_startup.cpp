// The main window's load and its closing: the start-up and shutdown of the application.
#include <QApplication>
#include <QScreen>

#include "app/AppState.h"
#include "app/Forms.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "platform/Components.h"
#include "platform/clock/Clock.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "platform/mixer/Mixer.h"
#include "player/PlayerWindows.h"
#include "player/PlaylistView.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "shell/AssociateFileType.h"
#include "shell/TwipsPerPixel.h"
#include "shell/WindowHelpers.h"

namespace cantovel {

frmMain::frmMain() : Form(QStringLiteral("frmMain")) {}

frmMain::~frmMain() = default;

frmMain* frmMain::instance() {
    return Forms::find<frmMain>();
}

void frmMain::Form_Load(const QString& commandLine) {
    // 1. No caption, no frame: the skin draws everything.
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setWindowTitle(QString::fromLatin1(AppTitle));

    // 2.
    AppClosing = VFalse;

    // 3.
    OSInfo = std::make_unique<COSInfo>();
    CRCCheck = std::make_unique<CCRC32>();

    // 4. The first touch of frmTemp loads it.
    frmTemp& temp = Forms::touch<frmTemp>();
    temp.mnuExit->setText(QStringLiteral("E&xit\tAlt+F4"));

    // 5. The fixed face.
    setFixedSize(300, 175);

    // 6.
    LoadSkin(ReadAppSetting(QStringLiteral("SkinPath"), QString()));

    // 7.
    for (int i = 0; i < 18; ++i)
        imgTime[i].toolTip = i < 6    ? QStringLiteral("Track Time")
                             : i < 12 ? QStringLiteral("Track Length")
                             : i < 15 ? QStringLiteral("Cantovel Volume")
                                      : QStringLiteral("Master Volume");

    // 8. The saved position only when asked for.
    // A value past the range of a position is passed over, as the runtime's overflow error
    // skips the statement; so is a volume outside 0..255.
    if (Val(ReadAppSetting(QStringLiteral("Position"), QStringLiteral("0"))) == 1) {
        const double tpp = TwipsPerPixel(this);
        if (const auto top =
                CLng(Val(ReadAppSetting(QStringLiteral("Main Window Top"), QStringLiteral("450"))) /
                     tpp))
            move(x(), *top);
        if (const auto left = CLng(
                Val(ReadAppSetting(QStringLiteral("Main Window Left"), QStringLiteral("1380"))) /
                tpp))
            move(*left, y());
    }

    // 9. The player's volume from the settings, the master volume from the mixer.
    if (const auto volume =
            CByte(Val(ReadAppSetting(QStringLiteral("Volume"), QStringLiteral("100")))))
        PlayerVolume = *volume;
    MasterVolume = quint8(Mixer::get().GetMasterVolume());  // no mixer: -1, kept as 255
    SaveAppSetting(QStringLiteral("Master Volume"), QString::number(MasterVolume));
    PaintVolumes();

    // 10. The messages the window handles itself: moves and sizes (a docked playlist
    // follows), position changes (kept in the work area), caption clicks, menus, drops.
    Subclass1.setHWnd(this);
    for (quint32 msg : {Wm::MOVE, Wm::SIZE, Wm::WINDOWPOSCHANGING, Wm::NCRBUTTONDOWN,
                        Wm::NCRBUTTONUP, Wm::INITMENUPOPUP, Wm::DROPFILES})
        Subclass1.setMessages(msg, true);
    setAcceptDrops(true);

    // 11.
    show();
    Clock::get().doEvents();
    if (unloaded()) return;

    // 12. The playlist editor, if it was open at the last exit; its load shows it.
    if (CBool(ReadAppSetting(QStringLiteral("Playlist Visible"), QStringLiteral("False")))
            .value_or(false))
        touchWindow<PlaylistView>();

    // 13. frmTemp's load set MP's volume while PlayerVolume was still 0.
    if (temp.MP) temp.MP->setVolume(int(Int(PlayerVolume / 100.0 * 10000)) - 10000);
    Mixer::get().SetMasterVolume(MasterVolume);
    if (temp.MP) temp.MP->setBalance(0);

    // 14. The recently used media files on frmTemp's File menu.
    temp.MRU = Components::create<MruList>();

    // 15.
    if (Val(ReadAppSetting(QStringLiteral("Always Ontop"), QStringLiteral("0"))) == 1)
        FormOnTop(this, true);

    // 16. The playlist type at every start; the result does not matter.
    AssociateFileType(QStringLiteral("ply"), {}, {}, {}, {}, false,
                      QStringLiteral("Cantovel Playlist File"));

    // 17. One path, quotes allowed; nothing happens for an empty or missing one.
    QString path = commandLine.trimmed();
    if (path.startsWith(u'"')) path.remove(0, 1);
    if (path.endsWith(u'"')) path.chop(1);
    if (!path.isEmpty() && FileExists(path)) OpenCommandLine(path);

    // 18.
    StillLoading = false;
}

bool frmMain::queryUnload(UnloadMode) {
    SaveAppSetting(QStringLiteral("Playlist Visible"),
                   CStr(IsFormLoaded(QStringLiteral("frmPlaylist"))));
    // The position is saved whatever Position says.
    const double tpp = TwipsPerPixel(this);
    SaveAppSetting(QStringLiteral("Main Window Top"), QString::number(qRound(y() * tpp)));
    SaveAppSetting(QStringLiteral("Main Window Left"), QString::number(qRound(x() * tpp)));
    setAcceptDrops(false);
    return false;
}

bool frmMain::unloadEvent() {
    AppClosing = VTrue;
    // The window may live on until the waits on the stack return: nothing ticks meanwhile.
    for (Timer* timer : {&Timer1, &Timer2, &Timer3, &CDR_Timer, &tmrVolume})
        timer->setEnabled(false);
    UnloadOtherForms(this);
    // Not quit(): that asks every window to close first, and this one, still unloading,
    // would refuse and so keep the program running.
    QCoreApplication::exit(0);
    return false;
}

}  // namespace cantovel
