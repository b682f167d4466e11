#pragma once
// A file list run as a queue through one conversion component: the list is copied when
// the run starts and the copy is worked through one file after the other, each file's
// end starting the next. The encode and decode windows are this with their component.

#include <QStringList>
#include <functional>

#include "convert/FileListForm.h"

namespace cantovel {

class FileQueueForm : public FileListForm {
    Q_OBJECT
  public:
    struct QueueTexts {
        QString idleCaption;           // "&Encode"
        QString runningCaption;        // "&Stop Encoding"
        QString runningLabel;          // "Currently Encoding File:  "
        QString folderPrompt;          // "Select Folder for MP3 Output:"
        QString outputSetting;         // "Encode Output Path"
        QStringList sourceExtensions;  // ".wav"
        QString outputExtension;       // ".mp3"
        QString successText;
        QString stopText;
        QString errorText;  // "An error occurred while attempting to encode file: "
    };

    FileQueueForm(const QString& name, const ListTexts& listTexts, const QueueTexts& texts);

    QString CurrentFile;
    bool Finished = false;
    bool Running = false;
    QStringList FileQueue;
    int QueueIndex = 0;
    QString OutputFolder;

    void RunMenu_Click() override;

  protected:
    // Makes `component` the one the queue runs through: its SetFiles, its start and stop
    // calls, its progress and end events.
    template <class C>
    void attach(C* component, void (C::*start)(), void (C::*stop)(), void (C::*progress)(qint32),
                void (C::*done)()) {
        if (!component) return;
        component_ = component;
        setFiles_ = [component](const QString& in, const QString& out) {
            return component->SetFiles(in, out);
        };
        start_ = [component, start] { (component->*start)(); };
        stop_ = [component, stop] { (component->*stop)(); };
        error_ = [component] { return component->lastError(); };
        writeFailure_ = [component] {
            return component->WriteFailed() ? component->WriteErrorDescription() : QString();
        };
        frameTotal_ = [component] { return component->FrameTotal(); };
        connect(component, progress, this, [this](qint32 value) { componentProgress(value); });
        connect(component, done, this, [this] { componentDone(); });
    }
    // Settings given to the component before each file.
    virtual void prepareComponent() {}

  private:
    void componentProgress(qint32 value);
    // The stop path; a run ended by a failed write never shows the success text.
    void stopRun(bool writeFailed = false);
    void startFile();
    void nextFile();
    void componentDone();
    void showRunningLabel();

    const QueueTexts queue_;
    QObject* component_ = nullptr;
    std::function<qint16(const QString&, const QString&)> setFiles_;
    std::function<void()> start_, stop_;
    std::function<qint32()> error_, frameTotal_;
    // Why the component's last run could not write its output; empty when it could.
    std::function<QString()> writeFailure_;
    QString output_;
};

}  // namespace cantovel
