// Binding the media file types: the keys one call writes, what the window binds and puts
// back in its two variants, and what the desktop is told.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QMimeDatabase>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>

#include "app/Forms.h"
#include "app/Settings.h"
#include "platform/Components.h"
#include "shell/AssociateFileType.h"
#include "shell/DesktopAssociations.h"
#include "shell/frmAssociate.h"
#include "support/AppTest.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

constexpr RegRoot HKCR = RegRoot::ClassesRoot;
const QString kApp = QStringLiteral("/opt/Cantovel/cantovel");
const QString kSuccess = QStringLiteral("Multimedia files successfully associated with Cantovel!");

QString cr(const QString& key, const QString& name = {}) {
    return ReadRegValue(HKCR, key, name, QStringLiteral("<none>"));
}

// A store whose writes fail below one key.
class FailingStore : public RegistryStore {
  public:
    explicit FailingStore(QString prefix) : prefix_(std::move(prefix)) {}
    bool setValue(RegRoot root, const QString& key, const QString& name,
                  const RegValue& value) override {
        if (root == HKCR && key.startsWith(prefix_, Qt::CaseInsensitive)) return false;
        return RegistryStore::setValue(root, key, name, value);
    }

  private:
    QString prefix_;
};

class AssociateTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        // The generic desktop: xdg-mime reads the user's mimeapps.list.
        desktop_.set("XDG_CURRENT_DESKTOP", QByteArray());
    }
    void TearDown() override {
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        AppTest::TearDown();
    }
    frmAssociate& window() { return Forms::touch<frmAssociate>(); }
    // Ticks only the given boxes and processes in a variant.
    void process(std::initializer_list<QCheckBox*> ticked, bool sameInstance) {
        frmAssociate& w = window();
        w.Command2->click();
        for (QCheckBox* b : ticked) b->setChecked(true);
        w.Check24->setChecked(sameInstance);
        w.Command3->click();
    }
    void backup(const QString& ext, const QString& former) {
        WriteRegValue(RegRoot::CurrentUser, frmAssociate::BackupsKey(), ext, former);
    }
    // Closes the window and opens it again.
    frmAssociate& reopen() {
        window().unload();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return window();
    }
    // The program's own desktop entry.
    QString entry() {
        QFile f(DesktopAssociations::applicationsFolder() + "/cantovel.desktop");
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
    ScopedEnv desktop_;
};

}  // namespace

TEST_F(AssociateTest, OneCallWritesTheTypeKeyItsCommandAndTheExtensionOrKeepsTheType) {
    ASSERT_TRUE(AssociateFileType("wav", {}, kApp, {}, {}, false, "Cantovel", {},
                                  "Open with Cantovel", {}, "\"%1\""));
    EXPECT_EQ(cr(".wav"), "Cantovel");
    EXPECT_EQ(cr("Cantovel\\DefaultIcon"), "/opt/cantovel/cantovel,0");
    EXPECT_EQ(cr("Cantovel\\Shell\\Open\\Command"), "\"/opt/Cantovel/cantovel\" \"%1\"");
    EXPECT_EQ(cr("Cantovel\\Shell\\Open"), "Open with Cantovel");
    EXPECT_EQ(cr("Cantovel\\Shell\\Open\\ddeexec"), "\"%1\"");
    EXPECT_EQ(cr(".wav", "Content Type"), "<none>");

    // "wav" and ".wav" are one extension: the second call changes the same key, and no key
    // without the dot appears.
    ASSERT_TRUE(AssociateFileType(".wav", "Other", kApp, "-q", "1", false, "Other Type", "Play", {},
                                  "audio/x-wav"));
    EXPECT_EQ(cr(".wav"), "Other");
    EXPECT_EQ(cr(".wav", "Content Type"), "audio/x-wav");
    EXPECT_EQ(cr("Other\\DefaultIcon"), "\"%1\"");
    EXPECT_EQ(cr("Other\\Shell\\Play\\Command"), "\"/opt/Cantovel/cantovel\" -q \"%1\"");
    EXPECT_FALSE(registry().keyExists(HKCR, "wav"));

    EXPECT_FALSE(AssociateFileType("  "));

    // Keeping the existing type works on its key and leaves the extension.
    WriteRegValue(HKCR, ".mid", {}, "midfile");
    WriteRegValue(HKCR, "midfile", {}, "MIDI Sequence");
    ASSERT_TRUE(AssociateFileType(".mid", {}, kApp, {}, {}, true, "ignored"));
    EXPECT_EQ(cr(".mid"), "midfile");
    EXPECT_EQ(cr("midfile"), "MIDI Sequence");
    EXPECT_EQ(cr("midfile\\Shell\\Open\\Command"), "\"/opt/Cantovel/cantovel\" \"%1\"");
    EXPECT_FALSE(registry().keyExists(HKCR, "midfile\\DefaultIcon"));

    // No existing type: the call goes on as if it were not asked to keep one.
    ASSERT_TRUE(AssociateFileType(".rmi", {}, kApp, {}, {}, true, "Cantovel"));
    EXPECT_EQ(cr(".rmi"), "Cantovel");
    EXPECT_EQ(DesktopAssociations::quoteExecArgument("/opt/My Apps/cantovel"),
              "\"/opt/My Apps/cantovel\"");
    EXPECT_EQ(DesktopAssociations::quoteExecArgument("100%"), "100%%");
    EXPECT_EQ(DesktopAssociations::quoteExecArgument("a\"b$"), "\"a\\\\\"b\\\\$\"");
}

TEST_F(AssociateTest, EveryBoundExtensionOpensInTheProgramByTheDesktopsOwnTools) {
    const QString xdgMime = QStandardPaths::findExecutable("xdg-mime");
    const QString update = QStandardPaths::findExecutable("update-mime-database");
    if (xdgMime.isEmpty() || update.isEmpty() || !QFile::exists("/usr/share/mime/globs2")) {
        GTEST_SKIP() << "xdg-mime (xdg-utils) or the shared MIME database (shared-mime-info) "
                        "is missing: the desktop's own answer was not asked";
    }
    frmAssociate& w = window();
    w.Command1->click();
    for (const auto& t : w.typeBoxes()) EXPECT_TRUE(t.box->isChecked());
    w.Check24->setChecked(true);
    w.Command3->click();
    // The program has its package compiled in the background; the test waits for its own run.
    ASSERT_EQ(QProcess::execute(update, {qEnvironmentVariable("XDG_DATA_HOME") + "/mime"}), 0);

    QStringList extensions;
    for (const auto& t : w.typeBoxes()) extensions += t.sameInstance;
    extensions.removeDuplicates();
    // Names too common to claim for one kind of file; the desktop types them by content.
    for (const char* e : {".dat", ".enc", ".rmi"}) extensions.removeAll(e);
    // A fresh look at the shared MIME database, now holding the program's own package.
    const QMimeDatabase types;
    for (const QString& ext : extensions) {
        const QList<QMimeType> typed = types.mimeTypesForFileName("a" + ext);
        ASSERT_FALSE(typed.isEmpty()) << ext.toStdString() << " has no type on the desktop";
        QStringList handlers;
        for (const QMimeType& type : typed) {
            QProcess query;
            query.start(xdgMime, {"query", "default", type.name()});
            ASSERT_TRUE(query.waitForFinished(10000));
            handlers << QString::fromUtf8(query.readAllStandardOutput()).trimmed();
        }
        EXPECT_TRUE(handlers.contains(ext == ".cda" ? "cantovel-cd-audio-file.desktop"
                                                    : "cantovel.desktop"))
            << ext.toStdString() << " -> " << typed.first().name().toStdString() << " -> "
            << handlers.join(' ').toStdString();
    }
}

TEST_F(AssociateTest, ProcessingBindsTheTickedTypesAndReopeningShowsThemTicked) {
    // Nothing ticked: nothing is called, and the window says so.
    process({}, true);
    EXPECT_FALSE(window().LastResult.has_value());
    EXPECT_TRUE(registry().subKeys(HKCR, {}).isEmpty());
    EXPECT_EQ(msgBox().texts(),
              QStringList{"No file types were selected, so no media files were associated "
                          "with Cantovel."});
    msgBox().reset();
    process({window().Check8, window().Check11, window().Check1}, true);
    EXPECT_EQ(msgBox().texts(), QStringList{kSuccess});
    EXPECT_EQ(cr(".mp3"), "Cantovel");
    EXPECT_EQ(cr(".wav"), "<none>");
    EXPECT_EQ(DesktopAssociations::defaultFor("audio/mpeg"), "cantovel.desktop");
    EXPECT_TRUE(entry().contains(" --hand-off %f")) << entry().toStdString();
    EXPECT_TRUE(entry().contains("audio/mpeg;"));
    // CD audio keeps its own type while the others share the program's key.
    EXPECT_EQ(cr(".cda"), "CD Audio File");
    EXPECT_EQ(cr("CD Audio File\\Shell\\Open"), "Open with  Cantovel");
    EXPECT_EQ(cr(".dat"), "Cantovel");
    EXPECT_EQ(cr("Cantovel\\Shell\\Open"), "Open with Cantovel");
    EXPECT_EQ(DesktopAssociations::defaultFor("application/x-cda"),
              "cantovel-cd-audio-file.desktop");
    EXPECT_EQ(DesktopAssociations::defaultFor("video/x-msvideo"), "cantovel.desktop");

    // The plain variant takes the hand-off away and binds ".snf", not ".snd", so the sound
    // formats show unticked.
    process({window().Check5, window().Check11, window().Check10}, false);
    EXPECT_FALSE(registry().keyExists(HKCR, "Cantovel\\Shell\\Open\\ddeexec"));
    EXPECT_EQ(cr("Cantovel\\Shell\\Open"), "<none>");
    EXPECT_FALSE(entry().contains("--hand-off"));
    EXPECT_TRUE(entry().contains("Exec=" + QCoreApplication::applicationFilePath() + " %f"));
    EXPECT_EQ(cr(".snf"), "Cantovel");
    EXPECT_EQ(cr(".snd"), "<none>");
    frmAssociate& w = reopen();
    EXPECT_TRUE(w.Check5->isChecked());
    EXPECT_TRUE(w.Check11->isChecked());
    EXPECT_FALSE(w.Check10->isChecked());
    // The variant box kept its setting through the unload.
    EXPECT_FALSE(w.Check24->isChecked());
    EXPECT_EQ(ReadAppSetting("Same Instance Load", "x"), "0");
}

TEST_F(AssociateTest, UntickedBoxesPutBackOnlyWhatTheBackupsHoldAndTypesOthersStillBindStay) {
    process({window().Check5, window().Check13}, false);
    msgBox().reset();
    // The former desktop handler of WAV files is an entry the desktop knows.
    QFile other(DesktopAssociations::applicationsFolder() + "/soundrec.desktop");
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.write("[Desktop Entry]\nType=Application\nName=Rec\nExec=rec %f\n");
    other.close();
    backup(".wav", "  soundrec ");

    process({}, false);
    EXPECT_EQ(cr(".wav"), "soundrec");
    EXPECT_EQ(DesktopAssociations::defaultFor("audio/x-wav"), "soundrec.desktop");
    // No backup: the binding stays, and the box shows ticked again.
    EXPECT_EQ(cr(".wma"), "Cantovel");
    EXPECT_EQ(DesktopAssociations::defaultFor("audio/x-ms-wma"), "cantovel.desktop");
    EXPECT_TRUE(reopen().Check13->isChecked());
    EXPECT_FALSE(window().Check5->isChecked());

    // A backup naming no desktop entry lets the type go.
    process({window().Check8}, false);
    backup(".mp3", "mp3file");
    process({}, false);
    EXPECT_EQ(cr(".mp3"), "mp3file");
    EXPECT_EQ(DesktopAssociations::defaultFor("audio/mpeg"), "");
    // ".dat" and the DirectShow names share the MPEG type with ".mpg" and ".mpeg".
    msgBox().reset();
    process({window().Check2, window().Check4}, true);
    backup(".dat", "datfile");
    backup(".m1v", "m1vfile");
    backup(".enc", "encfile");
    process({window().Check2}, true);
    EXPECT_EQ(cr(".dat"), "datfile");
    EXPECT_EQ(cr(".mpg"), "Cantovel");
    EXPECT_EQ(DesktopAssociations::defaultFor("video/mpeg"), "cantovel.desktop");
    // Once no extension of the type is left, the type goes.
    backup(".mpg", "mpgfile");
    backup(".mpeg", "mpgfile");
    backup(".mpv", "mpgfile");
    process({}, true);
    EXPECT_EQ(DesktopAssociations::defaultFor("video/mpeg"), "");
}

TEST_F(AssociateTest, OnlyTheLastCallDecidesTheMessage) {
    Components::provideService<Registry>(std::make_shared<FailingStore>("CD Audio File"));
    // ".cda" fails, ".dat" after it goes through.
    process({window().Check11}, false);
    EXPECT_EQ(cr(".dat"), "Cantovel");
    EXPECT_EQ(cr(".cda"), "<none>");
    EXPECT_EQ(msgBox().texts(), QStringList{kSuccess});
    EXPECT_EQ(window().LastResult, std::optional<bool>(true));

    msgBox().reset();
    Components::provideService<Registry>(std::make_shared<FailingStore>("Cantovel"));
    process({window().Check11, window().Check1}, false);
    // The CD type still went through; the failures did not stop the run.
    EXPECT_NE(cr("CD Audio File\\Shell\\Open\\Command"), "<none>");
    EXPECT_EQ(msgBox().texts(),
              QStringList{"An error occurred while attempting to associate media files with "
                          "Cantovel."});
    EXPECT_EQ(msgBox().shown[0].style, Mb::Information | Mb::SetForeground);
}
