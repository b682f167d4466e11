#pragma once
// A window of the program. Each form registers itself in the collection of open forms
// while it lives, and closes through the classic two steps: QueryUnload (which may
// cancel) and Unload.

#include <QString>
#include <QWidget>

class QAction;
class QMenu;

namespace cantovel {

class Form : public QWidget {
    Q_OBJECT
  public:
    // `name` is the form's name ("frmMain"), which the collection of open forms compares.
    explicit Form(const QString& name, QWidget* parent = nullptr, Qt::WindowFlags flags = {});
    ~Form() override;

    QString formName() const { return name_; }

    // Unloads the form from code: QueryUnload, Unload, then the form is gone (out of the
    // collection at once, destroyed once no wait is left on the stack). Returns false when
    // a handler cancelled.
    bool unload();
    bool isUnloading() const { return unloading_; }
    // The form has unloaded but may not be destroyed yet: a procedure whose wait returns
    // to a form in this state returns without doing more.
    bool unloaded() const { return gone_; }

    // Why a form is closing, as QueryUnload is told.
    enum UnloadMode { FromControlMenu = 0, FromCode = 1, FromAppWindows = 2, FromTaskManager = 3 };

  protected:
    // A menu and an entry named as the form's menus are, so that code and tests find them
    // by name.
    QMenu* namedMenu(const char* name, const QString& caption);
    static QAction* namedItem(QMenu* menu, const char* name, const QString& caption,
                              bool checkable = false);

    // Return true to cancel.
    virtual bool queryUnload(UnloadMode) { return false; }
    // Return true to cancel.
    virtual bool unloadEvent() { return false; }

    void closeEvent(QCloseEvent* event) override;

  private:
    bool runUnload(UnloadMode mode);

    QString name_;
    bool unloading_ = false;
    bool gone_ = false;
};

}  // namespace cantovel
