#include "shell/COSInfo.h"

#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QScreen>
#include <QSysInfo>
#include <QTemporaryFile>
#include <QUuid>

#include "platform/Components.h"
#include "platform/registry/Registry.h"
#include "shell/MemberError.h"

namespace cantovel {

namespace {

QScreen* screenOrError() {
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        throw MemberError(MemberError::ObjectMissing,
                          QStringLiteral("Object variable or With block variable not set"));
    return screen;
}

[[noreturn]] void notSupported() {
    throw MemberError(MemberError::NotSupported,
                      QStringLiteral("Object doesn't support this property or method"));
}

// The user's entry of the password database.
const passwd* userEntry() {
    return getpwuid(geteuid());
}

const QString UserInfoKey = QStringLiteral("Software\\Microsoft\\MS Setup (ACME)\\User Info");

}  // namespace

QString COSInfo::TrimNulls(const char* buffer, size_t size) {
    size_t length = 0;
    while (length < size && buffer[length] != '\0') ++length;
    return QString::fromLocal8Bit(buffer, qsizetype(length));
}

// The settings store stands where the registry stood; with no store there is no value.
QString COSInfo::RegistryGetKeyValue(const QString& key, const QString& name) {
    QString value;
    MemberError::guard("RegistryGetKeyValue", [&] {
        if (!Components::hasService<Registry>()) return;
        const auto stored = Registry::get().queryValue(RegRoot::CurrentUser, key, name);
        if (!stored) return;
        if (stored->type == REG_DWORD && stored->data.size() >= 4) {
            quint32 n = 0;
            for (int i = 3; i >= 0; --i) n = (n << 8) | quint8(stored->data.at(i));
            value = QString::number(n);
        } else {
            const int nul = stored->data.indexOf('\0');
            value = QString::fromUtf8(nul >= 0 ? stored->data.left(nul) : stored->data);
        }
    });
    return value;
}

// The bell is always there for a program to ring; whether the desktop sounds it is the
// desktop's own setting, which has no common place to be read or written.
bool COSInfo::Beep() {
    return true;
}

void COSInfo::setBeep(bool) {
    MemberError::guard("Beep", [] { notSupported(); });
}

// The host name (gethostname).
QString COSInfo::ComputerName() {
    QString name;
    MemberError::guard("ComputerName", [&] {
        char buffer[256] = {};
        if (gethostname(buffer, sizeof buffer) != 0)
            throw MemberError(MemberError::AutomationError,
                              QString::fromLocal8Bit(strerror(errno)));
        name = TrimNulls(buffer, sizeof buffer);
    });
    return name;
}

// The static host name is systemd's hostnamed's to change, which asks the system's policy;
// a refusal comes back as the member's error.
void COSInfo::setComputerName(const QString& name) {
    MemberError::guard("ComputerName", [&] {
        QDBusConnection bus = QDBusConnection::systemBus();
        if (!bus.isConnected())
            throw MemberError(MemberError::PermissionDenied,
                              QStringLiteral("Permission denied: no system bus to reach the host "
                                             "name service"));
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.hostname1"),
            QStringLiteral("/org/freedesktop/hostname1"),
            QStringLiteral("org.freedesktop.hostname1"), QStringLiteral("SetStaticHostname"));
        call << name << false;
        const QDBusMessage reply = bus.call(call);
        if (reply.type() == QDBusMessage::ErrorMessage)
            throw MemberError(MemberError::PermissionDenied,
                              QStringLiteral("Permission denied: ") + reply.errorMessage());
    });
}

// Linux keeps no hardware profiles; the nearest is the machine's product name from the
// firmware tables (DMI), empty where the firmware gives none.
QString COSInfo::CurrentHardwareProfile() {
    QString profile;
    MemberError::guard("CurrentHardwareProfile", [&] {
        QFile product(QStringLiteral("/sys/class/dmi/id/product_name"));
        if (product.open(QIODevice::ReadOnly))
            profile = QString::fromUtf8(product.readAll()).trimmed();
    });
    return profile;
}

// Setup's user information, where the settings store holds it; Linux asks no company.
QString COSInfo::DefaultCompanyName() {
    return MemberError::answer<QString>("DefaultCompanyName", [] {
        return RegistryGetKeyValue(UserInfoKey, QStringLiteral("DefCompany"));
    });
}

// Setup's user information, where the settings store holds it; else the user's full name
// from the password database (the first field of its comment).
QString COSInfo::DefaultUserName() {
    QString name;
    MemberError::guard("DefaultUserName", [&] {
        name = RegistryGetKeyValue(UserInfoKey, QStringLiteral("DefName"));
        if (!name.isEmpty()) return;
        if (const passwd* user = userEntry(); user && user->pw_gecos)
            name = QString::fromLocal8Bit(user->pw_gecos).section(QLatin1Char(','), 0, 0).trimmed();
    });
    return name;
}

// The primary screen's colour depth as a number of colours; a 32-bit depth carries 24 bits
// of colour and 8 of transparency.
qint64 COSInfo::DisplayColors() {
    qint64 colors = 0;
    MemberError::guard("DisplayColors", [&] {
        const int depth = std::min(screenOrError()->depth(), 24);
        colors = depth > 0 ? (qint64(1) << depth) : 0;
    });
    return colors;
}

// A new random identifier (QUuid), upper-case hexadecimal in braces.
QString COSInfo::GUID() {
    return MemberError::answer<QString>(
        "GUID", [] { return QUuid::createUuid().toString(QUuid::WithBraces).toUpper(); });
}

// The user's locale: language and, where it names one, the country.
QString COSInfo::Language() {
    QString text;
    MemberError::guard("Language", [&] {
        const QLocale locale = QLocale::system();
        text = QLocale::languageToString(locale.language());
        if (locale.territory() != QLocale::AnyTerritory)
            text += QStringLiteral(" (") + QLocale::territoryToString(locale.territory()) +
                    QLatin1Char(')');
    });
    return text;
}

// Large fonts: the primary screen's logical resolution above the usual 96 dots an inch.
bool COSInfo::LargeFonts() {
    return MemberError::answer<bool>("LargeFonts",
                                     [] { return screenOrError()->logicalDotsPerInchY() > 96; });
}

// The kernel's build text (uname version).
QString COSInfo::OSAdditional() {
    QString text;
    MemberError::guard("OSAdditional", [&] {
        utsname u{};
        if (uname(&u) == 0) text = TrimNulls(u.version, sizeof u.version);
    });
    return text;
}

QList<int> COSInfo::kernelRelease() {
    utsname u{};
    QList<int> numbers;
    if (uname(&u) != 0) return numbers;
    // "6.1.0-18-amd64": the leading dotted numbers.
    const QString release = TrimNulls(u.release, sizeof u.release);
    for (const QString& part : release.section(QLatin1Char('-'), 0, 0).split(QLatin1Char('.'))) {
        bool ok = false;
        const int n = part.toInt(&ok);
        if (!ok) break;
        numbers << n;
    }
    return numbers;
}

// The kernel release's patch number (uname release).
qint32 COSInfo::OSBuild() {
    return MemberError::answer<qint32>("OSBuild", [] { return kernelRelease().value(2); });
}

// The kernel release's major number (uname release).
qint32 COSInfo::OSMajorVersion() {
    return MemberError::answer<qint32>("OSMajorVersion", [] { return kernelRelease().value(0); });
}

// The kernel release's minor number (uname release).
qint32 COSInfo::OSMinorVersion() {
    return MemberError::answer<qint32>("OSMinorVersion", [] { return kernelRelease().value(1); });
}

// Whether the session has a screen saver: the freedesktop screen saver service on the
// session bus. Switching it on or off is the desktop's setting, out of a program's reach.
bool COSInfo::ScreenSaverActive() {
    bool active = false;
    MemberError::guard("ScreenSaverActive", [&] {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (bus.isConnected() && bus.interface())
            active =
                bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.ScreenSaver"));
    });
    return active;
}

void COSInfo::setScreenSaverActive(bool) {
    MemberError::guard("ScreenSaverActive", [] { notSupported(); });
}

// No desktop-neutral place keeps the idle time before the screen saver: 0, none known.
qint32 COSInfo::ScreenSaverTimeout() {
    return 0;
}

void COSInfo::setScreenSaverTimeout(qint32) {
    MemberError::guard("ScreenSaverTimeout", [] { notSupported(); });
}

// The folder of the system's shared libraries (where Qt itself is installed).
QString COSInfo::SystemDirectory() {
    return MemberError::answer<QString>(
        "SystemDirectory", [] { return QLibraryInfo::path(QLibraryInfo::LibrariesPath); });
}

// A new empty file with a unique name in the temporary folder, left for the caller.
QString COSInfo::TempFile() {
    QString name;
    MemberError::guard("TempFile", [&] {
        QTemporaryFile file(QDir(QDir::tempPath()).filePath(QStringLiteral("cvl~XXXXXX.tmp")));
        file.setAutoRemove(false);
        if (!file.open())
            throw MemberError(MemberError::FileAccess, QStringLiteral("Path/File access error"));
        name = file.fileName();
    });
    return name;
}

// The temporary folder ($TMPDIR, else /tmp), with its trailing separator.
QString COSInfo::TempPath() {
    QString path;
    MemberError::guard("TempPath", [&] {
        path = QDir::tempPath();
        if (!path.endsWith(QLatin1Char('/'))) path += QLatin1Char('/');
    });
    return path;
}

// The login name of the user the program runs as (password database, else $USER).
QString COSInfo::UserName() {
    QString name;
    MemberError::guard("UserName", [&] {
        if (const passwd* user = userEntry(); user && user->pw_name)
            name = QString::fromLocal8Bit(user->pw_name);
        else
            name = qEnvironmentVariable("USER");
    });
    return name;
}

// The prefix the operating system's programs and libraries are installed under.
QString COSInfo::WindowsDirectory() {
    return MemberError::answer<QString>(
        "WindowsDirectory", [] { return QLibraryInfo::path(QLibraryInfo::PrefixPath); });
}

// The distribution's own name for itself (os-release, through QSysInfo).
QString COSInfo::WindowsType() {
    return MemberError::answer<QString>("WindowsType",
                                        [] { return QSysInfo::prettyProductName(); });
}

// The primary screen's area left free by panels and docks; right and bottom lie just
// outside it, as a rectangle's edges do.
void COSInfo::GetWorkArea(qint16& left, qint16& top, qint16& right, qint16& bottom) {
    MemberError::guard("GetWorkArea", [&] {
        const QRect area = screenOrError()->availableGeometry();
        left = qint16(area.left());
        top = qint16(area.top());
        right = qint16(area.left() + area.width());
        bottom = qint16(area.top() + area.height());
    });
}

}  // namespace cantovel
