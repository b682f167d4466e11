#pragma once
// The file conversion windows on scripted components: encoder, decoder, wave chain and
// format dialog are fakes, the file and folder dialogs answer from a script, time is
// virtual.

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QListWidget>
#include <QMimeData>
#include <QUrl>
#include <memory>

#include "app/AppState.h"
#include "app/Forms.h"
#include "convert/FileListForm.h"
#include "platform/Components.h"
#include "support/AppTest.h"
#include "support/FakeFileDialogs.h"
#include "support/FakeFormatChooser.h"
#include "support/FakeMp3Decoder.h"
#include "support/FakeMp3Encoder.h"
#include "support/FakeWaveChain.h"

namespace cantovel::test {

class FileConversionFixture : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        // An earlier test's closing of every window leaves the flag set.
        AppClosing = VFalse;
        dialogs = std::make_shared<FakeFileDialogs>();
        Components::provideService<FileDialogs>(dialogs);
        FakeMp3Encoder::install();
        FakeMp3Decoder::install();
        FakeWaveChain::install();
        FakeFormatChooser::install();
        QDir().mkpath(out());
    }
    void TearDown() override {
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        AppTest::TearDown();
    }

    // A file of the test's own folder (made, with some bytes, when `make`).
    QString file(const QString& name, bool make = true) {
        const QString path = tempDir() + u'/' + name;
        QDir().mkpath(QFileInfo(path).absolutePath());
        if (make) {
            QFile f(path);
            f.open(QIODevice::WriteOnly);
            f.write("RIFF");
        }
        return path;
    }
    // The output folder the folder dialogs answer.
    QString out() const { return tempDir() + QStringLiteral("/out"); }
    static QString contents(const QString& path) {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
    static QStringList rows(const QListWidget* list) {
        QStringList all;
        for (int i = 0; i < list->count(); ++i) all << list->item(i)->text();
        return all;
    }
    // Drops `paths` on the window's list the way the window system hands them over: enter,
    // then drop, on the list's viewport.
    static void drop(FileListForm& w, const QStringList& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& p : paths) urls << QUrl::fromLocalFile(p);
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(w.List1->viewport(), &enter);
        if (!enter.isAccepted()) return;
        QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(w.List1->viewport(), &dropped);
    }
    // Lets queued events arrive.
    static void settle() {
        for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    }

    std::shared_ptr<FakeFileDialogs> dialogs;
};

}  // namespace cantovel::test
