#include "convert/FileListForm.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QProgressBar>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>

#include "app/FileNames.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "platform/dialogs/FileDialogs.h"
#include "platform/msgbox/MsgBox.h"
#include "player/HelpFile.h"
#include "shell/Subclass.h"

namespace cantovel {

namespace {

constexpr int kInfo = Mb::Information | Mb::SetForeground;

QString withSlash(const QString& folder) {
    return folder.endsWith(u'/') ? folder : folder + u'/';
}

}  // namespace

FileListForm::FileListForm(const QString& name, const ListTexts& texts)
    : Form(name), texts_(texts) {
    setWindowTitle(texts.caption);
    auto* layout = new QVBoxLayout(this);

    menuBar = new QMenuBar(this);
    layout->setMenuBar(menuBar);
    FileMenu = menuBar->addMenu(QStringLiteral("&File"));
    RunMenu = FileMenu->addAction(texts.runCaption);
    connect(RunMenu, &QAction::triggered, this, [this] { RunMenu_Click(); });
    ExitMenu = FileMenu->addAction(QStringLiteral("E&xit"));
    connect(ExitMenu, &QAction::triggered, this, [this] { ExitMenu_Click(); });
    EditMenu = menuBar->addMenu(QStringLiteral("&Edit"));
    AddMenu = EditMenu->addAction(QStringLiteral("&Add"));
    AddMenu->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_A));
    RemoveMenu = EditMenu->addAction(QStringLiteral("&Remove"));
    MoveUpMenu = EditMenu->addAction(QStringLiteral("Move &Up"));
    MoveDownMenu = EditMenu->addAction(QStringLiteral("Move &Down"));
    // The shortcut works with the menu closed, as an accelerator does.
    addAction(AddMenu);
    connect(AddMenu, &QAction::triggered, this, [this] { AddMenu_Click(); });
    connect(RemoveMenu, &QAction::triggered, this, [this] { RemoveMenu_Click(); });
    connect(MoveUpMenu, &QAction::triggered, this, [this] { MoveUpMenu_Click(); });
    connect(MoveDownMenu, &QAction::triggered, this, [this] { MoveDownMenu_Click(); });
    connect(EditMenu, &QMenu::aboutToShow, this, [this] { EditMenu_Opening(); });

    Toolbar1 = new QToolBar(this);
    layout->addWidget(Toolbar1);
    const struct {
        const char* key;
        QString tip;
        QStyle::StandardPixmap icon;
    } buttons[] = {
        {"Add", QStringLiteral("Add Files to List"), QStyle::SP_FileDialogNewFolder},
        {"Remove", QStringLiteral("Remove File(s) from List"), QStyle::SP_TrashIcon},
        {"Convert", texts.convertTip, QStyle::SP_MediaPlay},
        {"Exit", QStringLiteral("Exit"), QStyle::SP_DialogCloseButton},
    };
    for (const auto& b : buttons) {
        QAction* a = Toolbar1->addAction(style()->standardIcon(b.icon), b.tip);
        a->setObjectName(QLatin1String(b.key));
        a->setToolTip(b.tip);
        const QString key = QLatin1String(b.key);
        connect(a, &QAction::triggered, this, [this, key] { Toolbar1_ButtonClick(key); });
    }

    // The list sits in a frame of its own size that takes the drops: a run disables the
    // list, and Qt hands a disabled widget no drops, but the frame stays enabled and the
    // files dropped on the list during a run are still added.
    auto* listFrame = new QWidget(this);
    auto* frameLayout = new QVBoxLayout(listFrame);
    frameLayout->setContentsMargins(0, 0, 0, 0);
    List1 = new QListWidget(listFrame);
    frameLayout->addWidget(List1);
    List1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    List1->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    List1->setMinimumSize(460, 200);
    List1->viewport()->setMouseTracking(true);
    List1->viewport()->installEventFilter(this);
    layout->addWidget(listFrame, 1);

    Label1 = new QLabel(texts.label, this);
    Label1->setWordWrap(true);
    Label1->setMinimumHeight(48);
    layout->addWidget(Label1);
    Gauge = new QProgressBar(this);
    Gauge->setRange(0, 100);
    Gauge->setValue(0);
    layout->addWidget(Gauge);

    Subclass1 = new Subclass(this);
    Subclass1->setHWnd(listFrame);
    Subclass1->setMessages(Wm::DROPFILES, true);
    connect(Subclass1, &Subclass::WndProc, this, [this](quint32 msg, qintptr, qintptr, long*) {
        if (msg != Wm::DROPFILES) return;
        // A large folder takes a moment to list.
        QApplication::setOverrideCursor(Qt::WaitCursor);
        Process_DROPFILES(Subclass1->droppedFiles());
        QApplication::restoreOverrideCursor();
    });
}

FileListForm::~FileListForm() = default;

bool FileListForm::FileExists(const QString& name) {
    return cantovel::FileExists(name);
}

bool FileListForm::PathExists(const QString& name) {
    return cantovel::PathExists(name);
}

QStringList FileListForm::entries() const {
    QStringList all;
    for (int i = 0; i < List1->count(); ++i) all << List1->item(i)->text();
    return all;
}

void FileListForm::addEntry(const QString& path) {
    List1->addItem(path);
}

bool FileListForm::listLocked() {
    if (List1->isEnabled()) return false;
    MsgBoxShow(QStringLiteral("If you wish to adjust the list, you must stop the currently "
                              "running process beforehand."),
               kInfo, {}, this);
    return true;
}

void FileListForm::AddMenu_Click() {
    if (listLocked()) return;
    FileDialogRequest request;
    request.title = texts_.addTitle;
    request.filter = texts_.addFilter;
    request.filterIndex = 1;
    request.initDir = ReadAppSetting(texts_.addPathSetting, QDir::currentPath());
    request.multiSelect = true;
    const FileDialogResult chosen = FileDialogs::get().open(this, request);
    if (chosen.cancelled || chosen.files.isEmpty() || chosen.file().isEmpty()) return;
    for (const QString& name : chosen.files) {
        addEntry(name);
        SaveAppSetting(texts_.addPathSetting, QFileInfo(name).absolutePath());
    }
    measureEntries();
}

void FileListForm::measureEntries() {
    const QFontMetrics metrics(List1->font());
    MaxEntryWidth = 0;
    for (const QString& entry : entries())
        MaxEntryWidth = std::max(MaxEntryWidth, metrics.horizontalAdvance(entry));
}

void FileListForm::Process_DROPFILES(const QStringList& names) {
    for (const QString& name : names) {
        if (FileExists(name)) {
            const QString tail = name.right(4).toLower();
            if (texts_.extensions.contains(tail)) addEntry(name);
        } else if (PathExists(name)) {
            // Only the folder's own files: sub-folders aren't entered.
            QStringList files;
            for (const QString& file : FilesInFolder(name))
                if (QDir::match(texts_.patterns, file)) files << file;
            files.sort(Qt::CaseInsensitive);
            for (const QString& file : files) addEntry(withSlash(name) + file);
        }
    }
    measureEntries();
}

void FileListForm::RemoveMenu_Click() {
    if (listLocked()) return;
    if (List1->count() == 0) {
        MsgBoxShow(QStringLiteral("No files are currently in your list to remove."), kInfo, {},
                   this);
        return;
    }
    for (int i = List1->count() - 1; i >= 0; --i)
        if (List1->item(i)->isSelected()) delete List1->takeItem(i);
    measureEntries();
}

void FileListForm::selectOnly(int row) {
    List1->clearSelection();
    List1->setCurrentRow(row);
    if (QListWidgetItem* item = List1->item(row)) item->setSelected(true);
}

void FileListForm::MoveUpMenu_Click() {
    if (listLocked()) return;
    const int row = List1->currentRow();
    if (row < 0 || row >= List1->count()) return;
    QListWidgetItem* item = List1->takeItem(row);
    const int to = std::max(0, row - 1);
    List1->insertItem(to, item);
    selectOnly(to);
}

void FileListForm::MoveDownMenu_Click() {
    if (listLocked()) return;
    const int row = List1->currentRow();
    if (row < 0 || row >= List1->count()) return;
    QListWidgetItem* item = List1->takeItem(row);
    const int to = std::min(List1->count(), row + 1);
    List1->insertItem(to, item);
    selectOnly(to);
}

void FileListForm::EditMenu_Opening() {
    if (!List1->isEnabled()) {
        for (QAction* a : {AddMenu, RemoveMenu, MoveUpMenu, MoveDownMenu}) a->setEnabled(false);
        return;
    }
    AddMenu->setEnabled(true);
    const auto selected = List1->selectedItems().size();
    MoveUpMenu->setEnabled(selected == 1);
    MoveDownMenu->setEnabled(selected == 1);
    RemoveMenu->setEnabled(selected >= 1);
}

void FileListForm::ExitMenu_Click() {
    close();
}

void FileListForm::Toolbar1_ButtonClick(const QString& key) {
    if (key == QLatin1String("Add")) {
        AddMenu_Click();
    } else if (key == QLatin1String("Remove")) {
        if (!RemoveMenu->isEnabled()) {
            MsgBoxShow(texts_.removeNoneText +
                           QStringLiteral("\r\nIf you wish to remove files from the list, select "
                                          "the files to remove before proceeding."),
                       kInfo, {}, this);
            return;
        }
        RemoveMenu_Click();
    } else if (key == QLatin1String("Convert")) {
        RunMenu_Click();
    } else if (key == QLatin1String("Exit")) {
        ExitMenu_Click();
    }
}

void FileListForm::Process_SYSCOMMAND(int choice) {
    if (choice == 1) {
        MsgBoxShow(QStringLiteral("Choice 1 selected."), kInfo, {}, this);
    } else if (choice == 2) {
        systemChoiceChecked_ = !systemChoiceChecked_;
        MsgBoxShow(QStringLiteral("Gee, choice 2 selected! ") +
                       (systemChoiceChecked_ ? QStringLiteral("Now checked.")
                                             : QStringLiteral("Now unchecked.")),
                   kInfo, {}, this);
    }
}

void FileListForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F1) {
        ShowHelpTopic(texts_.helpTopic);
        return;
    }
    Form::keyPressEvent(event);
}

// The entry under the pointer becomes the list's tool tip, so long paths can be read.
bool FileListForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched == List1->viewport() && event->type() == QEvent::MouseMove) {
        const auto* move = static_cast<QMouseEvent*>(event);
        const QListWidgetItem* item = List1->itemAt(move->position().toPoint());
        List1->setToolTip(item ? item->text() : QString());
    }
    return Form::eventFilter(watched, event);
}

bool FileListForm::unloadEvent() {
    Subclass1->setMessages(Wm::DROPFILES, false);
    return false;
}

}  // namespace cantovel
