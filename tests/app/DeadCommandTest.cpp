// No command is dead: every menu item and toolbar action of every window runs something
// when it is chosen, but for the few that are meant to do nothing.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMap>
#include <QMenu>
#include <QMenuBar>
#include <QSet>

#include "app/Forms.h"
#include "cd/frmCDDBMain.h"
#include "cd/frmCDPlayer.h"
#include "convert/frmBatchConvert.h"
#include "convert/frmCDtoMP3.h"
#include "convert/frmCDtoWAV.h"
#include "convert/frmDecode.h"
#include "convert/frmEncode.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "playlist/frmPlaylist.h"
#include "playlist/frmTemp2.h"
#include "shell/frmAssociate.h"
#include "shell/frmTrayIcon.h"
#include "skin/frmAbout.h"
#include "skin/frmDisclaimer.h"
#include "skin/frmSettings.h"
#include "support/AppTest.h"
#include "video/frmVideoCDPlayer.h"
#include "video/frmVideoPlayer.h"
#include "video/frmVideoPlaylistView.h"
#include "video/frmVivoPlayer.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// Items that are meant to run nothing when chosen, each with its reason.
QMap<QString, const char*> meantToDoNothing() {
    QMap<QString, const char*> items;
    for (const char* zoom :
         {"ActualSize", "FullNormal", "FullStretch", "HalfScreen", "QuarterScreen", "DoubleSize"})
        items.insert(QStringLiteral("frmTemp.popZoom/popZoom") + QLatin1String(zoom),
                     "the zoom entries only stand in the menu");
    items.insert("frmCDDBMain.Server &Log/Log &Communications",
                 "a check mark only, which the log reads as traffic passes");
    items.insert("frmCDtoMP3.&Settings/DownMix",
                 "a check mark only, read when a conversion starts");
    items.insert("frmEncode.&Settings/DownMix", "a check mark only, read when encoding starts");
    return items;
}

template <typename... Windows>
void touchAll() {
    (Forms::touch<Windows>(), ...);
}

// Reads who listens to a signal, which QObject keeps to itself.
struct Listeners : QObject {
    using QObject::receivers;
};

int listeners(const QObject* o, const char* signal) {
    return (o->*(&Listeners::receivers))(signal);
}

// Something runs when the action is chosen: it only opens a submenu, or its signals have a
// listener beyond the one every menu (and menu bar) it stands in keeps for itself.
bool handled(const QAction* a) {
    if (a->isSeparator() || a->menu()) return true;
    int own = 0;
    for (const QObject* o : a->associatedObjects())
        own += qobject_cast<const QMenu*>(o) || qobject_cast<const QMenuBar*>(o);
    return listeners(a, SIGNAL(triggered(bool))) > own || listeners(a, SIGNAL(toggled(bool))) > 0;
}

// "frmTemp.mnuFile/&Open..." for a named action, else its caption under its menu.
QString nameOf(const Form* form, const QAction* a) {
    QString where;
    for (const QObject* o : a->associatedObjects())
        if (const auto* m = qobject_cast<const QMenu*>(o)) {
            where = m->objectName().isEmpty() ? m->title() : m->objectName();
            break;
        }
    const QString name = a->objectName().isEmpty() ? a->text() : a->objectName();
    return form->objectName() + u'.' + (where.isEmpty() ? QString() : where + u'/') + name;
}

class DeadCommandTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        useProgramComponents();
    }
};

TEST_F(DeadCommandTest, EveryMenuItemOfEveryWindowRunsSomething) {
    auto* main = new frmMain();
    main->Form_Load(QString());
    touchAll<frmTemp, frmTemp2, frmPlaylist, frmTrayIcon, frmCDDBMain, frmCDPlayer, frmCDtoWAV,
             frmCDtoMP3, frmEncode, frmDecode, frmBatchConvert, frmVideoPlayer, frmVivoPlayer,
             frmVideoCDPlayer, frmVideoPlaylistView, frmAssociate, frmSettings, frmAbout,
             frmDisclaimer>();
    QApplication::processEvents();

    const QMap<QString, const char*> MeantToDoNothing = meantToDoNothing();
    QStringList dead;
    QSet<QString> seen;
    int walked = 0;
    for (const Form* form : Forms::all())
        for (const QAction* a : form->findChildren<QAction*>()) {
            ++walked;
            const QString name = nameOf(form, a);
            seen << name;
            if (!handled(a) && !MeantToDoNothing.contains(name)) dead << name;
        }
    EXPECT_GT(walked, 150);
    EXPECT_EQ(dead, QStringList{});
    // The list of exceptions names nothing that is gone.
    for (const QString& name : MeantToDoNothing.keys())
        EXPECT_TRUE(seen.contains(name)) << name.toStdString();
}

}  // namespace
