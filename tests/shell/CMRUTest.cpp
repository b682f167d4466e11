// The recently used lists: their values in the store and the menu rows that mirror them.
#include <gtest/gtest.h>

#include <QMenu>

#include "app/Settings.h"
#include "shell/CMRU.h"
#include "support/AppTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class CMRUTest : public AppTest {};

TEST_F(CMRUTest, NewestFirstAndTheOldestFallsOutOfAFullList) {
    QMenu menu;
    CMRU mru;
    mru.RegistryPath = QStringLiteral("SOFTWARE\\Test");
    mru.SubKey = QStringLiteral("MRU Entries");
    for (int i = 0; i < 5; ++i) mru.setMenuItem(i, menu.addAction(QString()));
    const auto value = [](const char* name) {
        return ReadRegValue(RegRoot::LocalMachine, "SOFTWARE\\Test\\MRU Entries", name, "<none>");
    };
    const auto shown = [&] {
        QStringList out;
        for (int i = 1; i <= 4; ++i)
            if (mru.MenuItem(i)->isVisible()) out << mru.MenuItem(i)->text();
        return out;
    };
    for (const char* p : {"/a.mp3", "/b.mp3", "/c.mp3", "/d.mp3", "/e.mp3"})
        mru.SetMRUList(QLatin1String(p), QStringLiteral("File length: 1"));
    EXPECT_EQ(shown(), (QStringList{"&1. /e.mp3", "&2. /d.mp3", "&3. /c.mp3", "&4. /b.mp3"}));
    EXPECT_TRUE(mru.MenuItem(0)->isVisible());
    EXPECT_TRUE(mru.MenuItem(0)->isSeparator());
    EXPECT_EQ(value("MRU4"), QStringLiteral("/b.mp3"));
    EXPECT_EQ(CMRU::TagOf(mru.MenuItem(1)), QStringLiteral("File length: 1"));
    // A path differing only in case moves up with its new tag.
    mru.SetMRUList("/C.MP3", "File length: 30");
    EXPECT_EQ(shown(), (QStringList{"&1. /C.MP3", "&2. /e.mp3", "&3. /d.mp3", "&4. /b.mp3"}));
    EXPECT_EQ(value("MRUTAG1"), QStringLiteral("File length: 30"));
    EXPECT_EQ(CMRU::PathOfCaption(mru.MenuItem(1)->text()), QStringLiteral("/C.MP3"));

    // An empty entry hides everything and empties the values without deleting them.
    mru.SetMRUList(QString(), QString());
    for (int i = 0; i <= 4; ++i) EXPECT_FALSE(mru.MenuItem(i)->isVisible()) << i;
    EXPECT_EQ(value("MRU1"), QString()) << "emptied, not deleted";
    EXPECT_EQ(value("MRUTAG4"), QString());
}

}  // namespace
