#pragma once
#include <QList>
#include <QUrl>
#include <functional>

#include "platform/dialogs/FileDialogs.h"

class QFileDialog;

namespace cantovel {

// The file dialogs of the running program, on QFileDialog. The desktop's own dialog is used
// unless extra side-bar places are asked for, which only Qt's own dialog can show.
class QtFileDialogs : public FileDialogs {
  public:
    FileDialogResult open(QWidget* owner, const FileDialogRequest& request) override;
    FileDialogResult save(QWidget* owner, const FileDialogRequest& request) override;
    QString browseForFolder(QWidget* owner, const QString& prompt,
                            const QString& startFolder) override;
    void setExtraPlaces(const QStringList& folders) override;
    // Folders asked for each time a dialog opens, beside the fixed extra places: places that
    // come and go, such as the track folders of the discs in the drives.
    void setPlacesSource(std::function<QStringList()> source) { placesSource_ = std::move(source); }

  private:
    void prepare(QFileDialog& dialog, const FileDialogRequest& request) const;
    void addPlaces(QFileDialog& dialog) const;
    static FileDialogResult run(QFileDialog& dialog);

    QList<QUrl> places_;
    std::function<QStringList()> placesSource_;
};

}  // namespace cantovel
