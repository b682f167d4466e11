#pragma once
// What the file conversion windows share: a list of source files edited by hand, by the
// add dialog and by dropping files or folders on it, a toolbar, the File and Edit menus,
// a gauge and a status text. Each window says which files it takes and adds its run.

#include <QStringList>

#include "app/Form.h"

class QAction;
class QListWidget;
class QLabel;
class QMenu;
class QMenuBar;
class QProgressBar;
class QToolBar;

namespace cantovel {

class Subclass;

class FileListForm : public Form {
    Q_OBJECT
  public:
    // The few ways the windows' lists differ.
    struct ListTexts {
        QString caption;
        QString label;           // Label1 at first
        QString addTitle;        // the add dialog's title
        QString addFilter;       // and its filter
        QString addPathSetting;  // the setting that keeps the add dialog's folder
        QStringList extensions;  // a dropped file is kept if it ends in one (lower case)
        QStringList patterns;    // the files of a dropped folder
        QString removeNoneText;  // the toolbar's Remove with RemoveMenu disabled
        QString convertTip;      // the toolbar's Convert tool tip
        QString runCaption;      // the File menu's run command
        QString helpTopic;       // F1
    };

    FileListForm(const QString& name, const ListTexts& texts);
    ~FileListForm() override;

    QMenuBar* menuBar;
    QMenu* FileMenu;
    QAction* RunMenu;  // the window's "&Encode", "&Decode" or "&Start Conversion"
    QAction* ExitMenu;
    QMenu* EditMenu;
    QAction* AddMenu;
    QAction* RemoveMenu;
    QAction* MoveUpMenu;
    QAction* MoveDownMenu;
    QToolBar* Toolbar1;  // Add, Remove, Convert, Exit
    QListWidget* List1;
    QLabel* Label1;
    QProgressBar* Gauge;  // 0 to 100
    Subclass* Subclass1;  // watches drops on the list
    // The widest entry, in pixels; the list scrolls sideways as far as it.
    int MaxEntryWidth = 0;

    void AddMenu_Click();
    void RemoveMenu_Click();
    void MoveUpMenu_Click();
    void MoveDownMenu_Click();
    void EditMenu_Opening();
    void ExitMenu_Click();
    // Toolbar keys: "Add", "Remove", "Convert", "Exit".
    void Toolbar1_ButtonClick(const QString& key);
    virtual void RunMenu_Click() = 0;

    // Adds the dropped files of the window's kind, and those of dropped folders.
    void Process_DROPFILES(const QStringList& names);
    // A system menu choice; not reached from any menu.
    void Process_SYSCOMMAND(int choice);
    // The entries, in order.
    QStringList entries() const;
    void addEntry(const QString& path);

    static bool FileExists(const QString& name);
    static bool PathExists(const QString& name);

  protected:
    // True, after telling the user, while a run keeps the list from changing.
    bool listLocked();
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool unloadEvent() override;

    const ListTexts texts_;

  private:
    void measureEntries();
    void selectOnly(int row);
    bool systemChoiceChecked_ = false;
};

}  // namespace cantovel
