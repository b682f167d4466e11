// What the program settles with the desktop as it starts: the window system it asks for
// and the icon its windows show.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QTemporaryDir>

#include "shell/DesktopResources.h"
#include "shell/frmAssociate.h"
#include "support/AppTest.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// The platform variable as a start would find it, with DISPLAY and the Wayland socket.
QByteArray chosenWith(const char* platform, const char* display, const char* wayland) {
    ScopedEnv env;
    for (auto [name, value] :
         {std::pair{"QT_QPA_PLATFORM", platform}, std::pair{"DISPLAY", display},
          std::pair{"WAYLAND_DISPLAY", wayland}}) {
        env.set(name, QByteArray());
        if (value)
            qputenv(name, value);
        else
            qunsetenv(name);
    }
    const bool chosen = PreferX11Platform();
    const QByteArray seen = qgetenv("QT_QPA_PLATFORM");
    ForgetPlatformChoice(chosen);
    // Programs started later see the user's own setting again.
    EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), QByteArray(platform ? platform : ""));
    return seen;
}

QRgb centre(const QIcon& icon) {
    const QImage img = icon.pixmap(32, 32).toImage();
    return img.pixel(img.width() / 2, img.height() / 2);
}

}  // namespace

TEST(DesktopStart, AWaylandSessionWithXWaylandRunsOnX11UnlessTheUserChose) {
    EXPECT_EQ(chosenWith(nullptr, ":0", "wayland-0"), "xcb");
    EXPECT_EQ(chosenWith("", ":0", "wayland-0"), "xcb");
    // The user's choice stands, and so does Wayland where no X server is reachable.
    EXPECT_EQ(chosenWith("wayland", ":0", "wayland-0"), "wayland");
    EXPECT_EQ(chosenWith(nullptr, nullptr, "wayland-0"), "");
}

class ApplicationIconTest : public AppTest {
  protected:
    void TearDown() override {
        QIcon::setThemeSearchPaths(savedPaths_);
        QIcon::setThemeName(savedTheme_);
        QApplication::setWindowIcon(QIcon());
        AppTest::TearDown();
    }
    QStringList savedPaths_ = QIcon::themeSearchPaths();
    QString savedTheme_ = QIcon::themeName();
};

TEST_F(ApplicationIconTest, EveryWindowShowsTheProgramsIconTheInstalledOneFirst) {
    // No theme has the program's icon: the built-in one.
    QIcon::setThemeSearchPaths({tempDir() + "/none"});
    SetApplicationIcon();
    auto* window = new frmAssociate();
    EXPECT_EQ(centre(window->windowIcon()), centre(CantovelIcon()));
    window->deleteLater();

    // Installed in the icon theme: that one, as the desktop's menus show it.
    const QString icons = tempDir() + "/icons";
    QDir().mkpath(icons + "/hicolor/32x32/apps");
    QFile index(icons + "/hicolor/index.theme");
    ASSERT_TRUE(index.open(QIODevice::WriteOnly));
    index.write(
        "[Icon Theme]\nName=Hicolor\nDirectories=32x32/apps\n\n"
        "[32x32/apps]\nSize=32\nType=Fixed\n");
    index.close();
    QImage red(32, 32, QImage::Format_ARGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(icons + "/hicolor/32x32/apps/cantovel.png"));
    QIcon::setThemeSearchPaths({icons});
    QIcon::setThemeName("hicolor");
    SetApplicationIcon();
    auto* second = new frmAssociate();
    EXPECT_EQ(centre(second->windowIcon()), qRgb(255, 0, 0));
    second->deleteLater();
}
