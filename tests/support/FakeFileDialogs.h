#pragma once
// Records every file dialog asked for and answers from a script.

#include <QList>
#include <QPointer>
#include <QWidget>
#include <deque>

#include "platform/dialogs/FileDialogs.h"

namespace cantovel::test {

struct DialogCall {
    enum Kind { Open, Save, Folder };
    Kind kind = Open;
    QPointer<QWidget> owner;
    FileDialogRequest request;  // open and save
    QString prompt;             // folder choice
    QString startFolder;        // folder choice
};

class FakeFileDialogs : public FileDialogs {
  public:
    FileDialogResult open(QWidget* owner, const FileDialogRequest& request) override;
    FileDialogResult save(QWidget* owner, const FileDialogRequest& request) override;
    QString browseForFolder(QWidget* owner, const QString& prompt,
                            const QString& startFolder) override;
    void setExtraPlaces(const QStringList& folders) override { extraPlaces = folders; }

    // The next dialog answers these files (a folder choice answers the first one).
    void scriptFiles(const QStringList& files, int filterIndex = 1);
    // The next dialog is cancelled.
    void scriptCancel();
    // Shorthand for a folder choice.
    void scriptFolder(const QString& folder) { scriptFiles({folder}); }
    // Runs while a dialog is "open".
    std::function<void(const DialogCall&)> onShow;

    // Unscripted dialogs are cancelled.
    QList<DialogCall> calls;
    QStringList extraPlaces;
    void reset();

  private:
    FileDialogResult next(const DialogCall& call);
    std::deque<FileDialogResult> answers_;
};

}  // namespace cantovel::test
