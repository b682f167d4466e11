#include "cd/frmCDDBMain.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <limits>

#include "app/Runtime.h"
#include "cd/CdBase_Code.h"
#include "cd/TrafficLog.h"
#include "cd/frmCDDBSites.h"
#include "platform/clock/Clock.h"
#include "platform/msgbox/MsgBox.h"
#include "player/HelpFile.h"

namespace cantovel {

const QString frmCDDBMain::ContactEmail = QStringLiteral("cantovel@brightfen.com");

std::function<QString(const QString&, const QString&, const QString&)> frmCDDBMain::InputBox =
    [](const QString& prompt, const QString& title, const QString& value) {
        return QInputDialog::getText(nullptr, title, prompt, QLineEdit::Normal, value);
    };

frmCDDBMain::frmCDDBMain() : Form(QStringLiteral("frmCDDBMain")) {
    setWindowTitle(QStringLiteral("Cantovel - CDDB Access Player"));
    auto* layout = new QVBoxLayout(this);
    menuBar = new QMenuBar(this);
    layout->setMenuBar(menuBar);

    mnuCddb = menuBar->addMenu(QStringLiteral("&CDDB"));
    mnuAccessCddb = mnuCddb->addAction(QStringLiteral("Access Database"));
    mnuQueryString = mnuCddb->addAction(QStringLiteral("Retrieve Query String"));
    SettingsMenu = mnuCddb->addMenu(QStringLiteral("&Settings"));
    mnuSites = SettingsMenu->addAction(QStringLiteral("Retrieve CDDB &Servers"));
    mnumotd = SettingsMenu->addAction(QStringLiteral("Retrieve &Modification Information"));
    LogInfoMenu = mnuCddb->addMenu(QStringLiteral("Server &Log"));
    mnuLog = LogInfoMenu->addAction(QStringLiteral("Log &Communications"));
    mnuLog->setCheckable(true);
    mnuLog->setChecked(true);
    mnuClearLog = LogInfoMenu->addAction(QStringLiteral("C&lear Log"));
    IDInfoMenu = mnuCddb->addMenu(QStringLiteral("&ID Information"));
    mnudiscId = IDInfoMenu->addAction(QStringLiteral("Calculate Disc &ID"));
    mnuMSidCalc = IDInfoMenu->addAction(QStringLiteral("Calculate &Microsoft ID"));
    mnuCddb->addSeparator();
    mnuExit = mnuCddb->addAction(QStringLiteral("E&xit"));

    mnuCd = menuBar->addMenu(QStringLiteral("C&D Controls"));
    mnuPlay = mnuCd->addAction(QStringLiteral("&Play"));
    mnuNext = mnuCd->addAction(QStringLiteral("&Next"));
    mnuPrev = mnuCd->addAction(QStringLiteral("Pre&v"));
    mnuPause = mnuCd->addAction(QStringLiteral("Pa&use"));
    mnuStop = mnuCd->addAction(QStringLiteral("&Stop"));
    mnuEject = mnuCd->addAction(QStringLiteral("&Eject"));
    mnuCd->addSeparator();
    mnuOpen = mnuCd->addAction(QStringLiteral("&Open Device"));
    mnuClose = mnuCd->addAction(QStringLiteral("&Close CD"));
    mnuOpen->setCheckable(true);
    mnuClose->setCheckable(true);
    mnuCd->addSeparator();
    mnuGetCurrentTrack = mnuCd->addAction(QStringLiteral("&Retrieve Current Track"));
    mnuSetCurrentTrack = mnuCd->addAction(QStringLiteral("&Set Current Track"));
    mnuPlayTrack = mnuCd->addAction(QStringLiteral("Play Current &Track"));

    lblSongList = new QLabel(QStringLiteral("Song List"), this);
    layout->addWidget(lblSongList);
    lvwSongList = new QTreeWidget(this);
    lvwSongList->setRootIsDecorated(false);
    lvwSongList->setHeaderLabels(
        {QStringLiteral("Seq"), QStringLiteral("Length"), QStringLiteral("Extended Data")});
    lvwSongList->setContextMenuPolicy(Qt::CustomContextMenu);
    layout->addWidget(lvwSongList, 2);

    auto* grid = new QGridLayout;
    txtTitle = addBox(grid, 0, 0, QStringLiteral("Title"));
    txtCategory = addBox(grid, 0, 2, QStringLiteral("Category"));
    txtArtist = addBox(grid, 1, 0, QStringLiteral("Artist"));
    txtCdTitle = addBox(grid, 1, 2, QStringLiteral("CD Title"));
    txtExtd = addBox(grid, 2, 0, QStringLiteral("Extended Data"));
    txtRevision = addBox(grid, 2, 2, QStringLiteral("Data Revision"));
    txtPlayOrder = addBox(grid, 3, 0, QStringLiteral("Play Order"));
    txtCategory->setReadOnly(true);
    layout->addLayout(grid);

    layout->addWidget(new QLabel(QStringLiteral("Server Communcation Log"), this));
    Text2 = new TrafficLog(this);
    layout->addWidget(Text2, 1);
    resize(640, 560);

    // Each two-way box writes its property on every change.
    connect(txtTitle, &QLineEdit::textChanged, this,
            [this](const QString& t) { CdBase1.Title = t; });
    connect(txtArtist, &QLineEdit::textChanged, this,
            [this](const QString& t) { CdBase1.Artist = t; });
    connect(txtCdTitle, &QLineEdit::textChanged, this,
            [this](const QString& t) { CdBase1.CdTitle = t; });
    connect(txtExtd, &QLineEdit::textChanged, this,
            [this](const QString& t) { CdBase1.ExtData = t; });
    connect(txtPlayOrder, &QLineEdit::textChanged, this,
            [this](const QString& t) { CdBase1.PlayOrder = t; });
    connect(txtRevision, &QLineEdit::textChanged, this, [this](const QString& t) {
        const double v = Val(t);
        if (FitsInt16(v)) CdBase1.DataRev = qint16(CInt(v));
    });

    connect(mnuAccessCddb, &QAction::triggered, this, [this] { mnuAccessCddb_Click(); });
    connect(mnuQueryString, &QAction::triggered, this, [this] { mnuQueryString_Click(); });
    connect(mnuSites, &QAction::triggered, this, [this] { mnuSites_Click(); });
    connect(mnumotd, &QAction::triggered, this, [this] { mnumotd_Click(); });
    connect(mnuClearLog, &QAction::triggered, this, [this] { mnuClearLog_Click(); });
    connect(mnudiscId, &QAction::triggered, this, [this] { mnudiscId_Click(); });
    connect(mnuMSidCalc, &QAction::triggered, this, [this] { mnuMSidCalc_Click(); });
    connect(mnuExit, &QAction::triggered, this, [this] { unload(); });
    const std::pair<QAction*, const char*> words[] = {{mnuPlay, "Play"}, {mnuNext, "Next"},
                                                      {mnuPrev, "Prev"}, {mnuPause, "Pause"},
                                                      {mnuStop, "Stop"}, {mnuEject, "Eject"}};
    for (const auto& [action, word] : words)
        connect(action, &QAction::triggered, this,
                [this, w = QString::fromLatin1(word)] { CdBase1.setCommand(w); });
    connect(mnuOpen, &QAction::triggered, this, [this] { mnuOpen_Click(); });
    connect(mnuClose, &QAction::triggered, this, [this] { mnuClose_Click(); });
    connect(mnuGetCurrentTrack, &QAction::triggered, this, [this] { mnuGetCurrentTrack_Click(); });
    connect(mnuSetCurrentTrack, &QAction::triggered, this, [this] { mnuSetCurrentTrack_Click(); });
    connect(mnuPlayTrack, &QAction::triggered, this, [this] { mnuPlayTrack_Click(); });
    connect(lvwSongList, &QTreeWidget::itemDoubleClicked, this, [this] { lvwSongList_DblClick(); });
    connect(lvwSongList, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { mnuCd->popup(lvwSongList->viewport()->mapToGlobal(at)); });
    connect(&CdBase1, &CdBase::DataSent, this,
            [this](const QString& text, int) { CdBase1_DataSent(text); });
    connect(&Timer1, &Timer::timeout, this, [this] { Timer1_Timer(); });

    Form_Load();
}

frmCDDBMain::~frmCDDBMain() = default;

QLineEdit* frmCDDBMain::addBox(QGridLayout* grid, int row, int column, const QString& label) {
    auto* box = new QLineEdit(this);
    auto* caption = new QLabel(label, this);
    caption->setBuddy(box);
    grid->addWidget(caption, row, column);
    grid->addWidget(box, row, column + 1);
    return box;
}

void frmCDDBMain::Form_Load() {
    CdBase1.setEmail(ContactEmail);
    CdBase1.setHostName(CdBase1.GetMyHostName());
    CdBase1.setConnectTimeout(30000);
    CdBase1.setCommand(QStringLiteral("Open"));
    mnuOpen->setChecked(true);
    mnuClose->setChecked(false);
    Timer1.setEnabled(true);
}

bool frmCDDBMain::unloadEvent() {
    Timer1.setEnabled(false);
    CdBase1.setCommand(QStringLiteral("Stop"));
    CdBase1.setCommand(QStringLiteral("Close"));
    return false;
}

void frmCDDBMain::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        unload();
        return;
    }
    if (event->key() == Qt::Key_F1) {
        ShowHelpTopic(QStringLiteral("CDDB Access CD Player"));
        return;
    }
    Form::keyPressEvent(event);
}

void frmCDDBMain::Timer1_Timer() {
    setWindowTitle(QStringLiteral("CDDB Access Player: ") + CdBase1.Position(4));
}

void frmCDDBMain::RefreshDisplay() {
    lvwSongList->clear();
    for (int i = 1; i <= CdBase1.Tracks; ++i) {
        const QString name = CdBase1.SongName(i);
        const qint32 length = CdBase1.SongLength(i, false);
        new QTreeWidgetItem(lvwSongList,
                            {name.isEmpty() ? QStringLiteral("Track: ") + QString::number(i) : name,
                             QStringLiteral("%1 min %2 sec").arg(length / 60).arg(length % 60),
                             CdBase1.GetExtTrackData(i)});
    }
    txtRevision->setText(QString::number(CdBase1.DataRev));
    txtTitle->setText(CdBase1.Title);
    txtArtist->setText(CdBase1.Artist);
    txtCdTitle->setText(CdBase1.CdTitle);
    txtCategory->setText(CdBase1.Category);
    txtExtd->setText(CdBase1.ExtData);
    txtPlayOrder->setText(CdBase1.PlayOrder);
}

void frmCDDBMain::mnuAccessCddb_Click() {
    QPointer<frmCDDBMain> self(this);
    CdBase1.GetCddb();
    if (self) RefreshDisplay();
}

void frmCDDBMain::mnuQueryString_Click() {
    QPointer<frmCDDBMain> self(this);
    QString query = CdBase1.GetQueryString();
    MsgBoxShow(QStringLiteral("Below is the query string for the current CD\r\n\r\n") + query +
               QStringLiteral("\r\n\r\nHit OK to access database with this string"));
    if (!self) return;
    CdBase1.GetCddbUseQueryString(query);
    if (self) RefreshDisplay();
}

void frmCDDBMain::showModal(Form* window) {
    QPointer<Form> shown(window);
    window->setWindowModality(Qt::ApplicationModal);
    window->show();
    const auto closed = [&shown] { return !shown || shown->isUnloading() || shown->isHidden(); };
    while (!closed()) Clock::get().wait(std::numeric_limits<int>::max(), closed);
}

void frmCDDBMain::mnuSites_Click() {
    auto* sites = new frmCDDBSites(CdBase1);
    showModal(sites);
}

void frmCDDBMain::mnumotd_Click() {
    QPointer<frmCDDBMain> self(this);
    const QString motd = CdBase1.GetMotd();
    if (self) MsgBoxShow(motd);
}

void frmCDDBMain::mnuClearLog_Click() {
    Text2->clear();
}

void frmCDDBMain::mnudiscId_Click() {
    MsgBoxShow(QStringLiteral("Disc ID:  ") + CdBase1.Cdid(), Mb::Information,
               QStringLiteral("Cantovel - CDDB Disc Information:"));
}

void frmCDDBMain::mnuMSidCalc_Click() {
    QStringList letters;
    const int count = CdBase1.GetCdDriveLetters(letters);
    for (int i = 1; i <= count; ++i) {
        const QString letter = letters.value(i);
        MsgBoxShow(QStringLiteral("Drive ") + letter + QStringLiteral(":/\r\nMS id is: ") +
                       CdBase1.GetMSid(letter),
                   Mb::OKOnly, QStringLiteral("Microsoft ID"));
    }
}

void frmCDDBMain::mnuOpen_Click() {
    CdBase1.setCommand(QStringLiteral("Open"));
    mnuOpen->setChecked(true);
    mnuClose->setChecked(false);
}

void frmCDDBMain::mnuClose_Click() {
    CdBase1.setCommand(QStringLiteral("Close"));
    mnuOpen->setChecked(false);
    mnuClose->setChecked(true);
}

void frmCDDBMain::mnuGetCurrentTrack_Click() {
    MsgBoxShow(QString::number(CdBase1.CurrentTrack()));
}

void frmCDDBMain::mnuSetCurrentTrack_Click() {
    const double v =
        Val(InputBox(QStringLiteral("Enter Track Number"),
                     QStringLiteral("Cantovel CDDB Access Player"), QStringLiteral("1")));
    if (FitsInt16(v)) CdBase1.setCurrentTrack(qint16(CInt(v)));
}

void frmCDDBMain::mnuPlayTrack_Click() {
    const double v =
        Val(InputBox(QStringLiteral("Enter Song Number"), QStringLiteral("Play Track"), {}));
    if (FitsInt16(v)) CdBase1.PlayTrack(qint16(CInt(v)));
}

void frmCDDBMain::lvwSongList_DblClick() {
    if (lvwSongList->topLevelItemCount() == 0) return;
    QTreeWidgetItem* item = lvwSongList->currentItem();
    if (!item) return;
    CdBase1.PlayTrack(qint16(lvwSongList->indexOfTopLevelItem(item) + 1));
}

void frmCDDBMain::CdBase1_DataSent(const QString& text) {
    if (!mnuLog->isChecked()) return;
    Text2->append(text);
}

}  // namespace cantovel
