#include "convert/FileQueueForm.h"

#include <QAction>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>

#include "app/Settings.h"
#include "app/WriteFailure.h"
#include "platform/msgbox/MsgBox.h"
#include "shell/BrowseForFolder.h"
#include "shell/DesktopResources.h"

namespace cantovel {

FileQueueForm::FileQueueForm(const QString& name, const ListTexts& listTexts,
                             const QueueTexts& texts)
    : FileListForm(name, listTexts), queue_(texts) {}

void FileQueueForm::RunMenu_Click() {
    OutputFolder.clear();
    if (RunMenu->text() != queue_.idleCaption) {
        stopRun();
        return;
    }
    if (List1->count() == 0) {
        MsgBoxShow(QStringLiteral("Your list is currently empty. \r\n\r\nSelect the files you "
                                  "wish to be included in your list first in order to "
                                  "proceed.\r\n\r\n(To accomplish this, select \"Add\"  from "
                                  "the toolbar or Edit menu, or simply press Ctrl + A)."),
                   Mb::Information | Mb::SetForeground, {}, this);
        return;
    }
    const QString folder = BrowseForFolder(
        this, queue_.folderPrompt, ReadAppSetting(queue_.outputSetting, DefaultOutputFolder()));
    if (folder.isEmpty()) return;
    SaveAppSetting(queue_.outputSetting, folder);
    OutputFolder = folder.endsWith(u'/') ? folder : folder + u'/';

    List1->setEnabled(false);
    Running = true;
    QueueIndex = 0;
    FileQueue = entries();
    // The texts of the run come first, so a file that ends the run at once leaves the
    // stopped ones.
    showRunningLabel();
    RunMenu->setText(queue_.runningCaption);
    startFile();
}

void FileQueueForm::showRunningLabel() {
    Label1->setText(queue_.runningLabel + FileQueue.value(QueueIndex) + QStringLiteral(" (") +
                    QString::number(QueueIndex + 1) + QStringLiteral(" of ") +
                    QString::number(FileQueue.size()) + u')');
}

void FileQueueForm::stopRun(bool writeFailed) {
    Running = false;
    Label1->setText(Finished && !writeFailed ? queue_.successText : queue_.stopText);
    if (component_) stop_();
    List1->setEnabled(true);
    Gauge->setValue(0);
    RunMenu->setText(queue_.idleCaption);
}

void FileQueueForm::startFile() {
    CurrentFile = FileQueue.value(QueueIndex);
    const QFileInfo source(CurrentFile);
    const QString extension = u'.' + source.suffix().toLower();
    if (source.suffix().isEmpty() || !queue_.sourceExtensions.contains(extension)) {
        stopRun();
        return;
    }
    // An old output is overwritten without a question: the component puts the new one in
    // its place once complete, so a failed write leaves it as it was.
    output_ = OutputFolder + source.completeBaseName() + queue_.outputExtension;
    bool failed = !component_;
    if (component_) {
        prepareComponent();
        const qint16 result = setFiles_(CurrentFile, output_);
        failed = error_() != 0;
        if (!failed) {
            if (result != 0) stopRun();
            start_();
            failed = error_() != 0;
        }
    }
    if (failed) {
        MsgBoxShow(queue_.errorText +
                       QStringLiteral("Invalid, missing, or inappropriate source audio file."),
                   Mb::Exclamation | Mb::SetForeground, {}, this);
        nextFile();
    }
}

void FileQueueForm::nextFile() {
    if (!Running) return;
    ++QueueIndex;
    if (QueueIndex >= FileQueue.size()) {
        // Never cleared again: a later stopped run reports success too.
        Finished = true;
        List1->setEnabled(true);
        // The run's own files leave the list; files dropped on it during the run (added
        // after them) stay for the next run instead of vanishing unconverted.
        for (qsizetype i = 0; i < FileQueue.size() && List1->count() > 0; ++i)
            delete List1->takeItem(0);
        if (Running) stopRun();
        return;
    }
    showRunningLabel();
    startFile();
}

void FileQueueForm::componentDone() {
    const QString failure = writeFailure_();
    if (failure.isEmpty() || !Running) {
        nextFile();
        return;
    }
    // The same folder takes the next files: the run ends here, the list kept.
    stopRun(true);
    MsgBoxShow(writeFailureText(output_, failure), Mb::Exclamation | Mb::SetForeground, {}, this);
}

void FileQueueForm::componentProgress(qint32 value) {
    const qint32 total = component_ ? frameTotal_() : 0;
    if (total > 0) Gauge->setValue(int(qint64(value) * 100 / total));
}

}  // namespace cantovel
