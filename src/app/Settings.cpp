#include "app/Settings.h"

#include "app/FileNames.h"
#include "app/Runtime.h"
#include "platform/msgbox/MsgBox.h"

namespace cantovel {

namespace {

// Values are read into a buffer of this many characters, terminating NUL included; a
// longer value does not fit and the read fails.
constexpr qsizetype ReadBufferSize = 512;

constexpr int ReadMessageStyle = Mb::Exclamation | Mb::SetForeground;
constexpr int ChangeMessageStyle = Mb::Exclamation | Mb::SetForeground | Mb::SystemModal;

void complain(bool silent, const QString& text, int style) {
    if (!silent) MsgBoxShow(text, style);
}

QString settingKey(bool useSettingsKey) {
    return useSettingsKey ? SettingsKey() : AppKey();
}

}  // namespace

QString AppKey() {
    return QStringLiteral("Software\\Brightfen\\Cantovel");
}

QString SettingsKey() {
    return AppKey() + QStringLiteral("\\Settings");
}

QString ReadAppSetting(const QString& name, const QString& defaultValue, bool useSettingsKey,
                       bool silent) {
    return ReadRegValue(RegRoot::CurrentUser, settingKey(useSettingsKey), name, defaultValue,
                        silent);
}

bool SaveAppSetting(const QString& name, const QString& value, bool useSettingsKey, bool silent) {
    return WriteRegValue(RegRoot::CurrentUser, settingKey(useSettingsKey), name, value, silent);
}

QString ReadRegValue(RegRoot root, const QString& keyPath, const QString& name,
                     const QString& defaultValue, bool silent) {
    const std::optional<RegValue> value = Registry::get().queryValue(root, keyPath, name);
    if (value && value->type == REG_DWORD && value->data.size() <= ReadBufferSize) {
        if (value->data.size() <= 1) return QString();
        // The first four bytes of the buffer, least significant first; a shorter value
        // leaves the buffer's blanks in the rest.
        const QByteArray b = value->data.left(4).leftJustified(4, ' ');
        const double n = quint8(b[3]) * 16777216.0 + quint8(b[2]) * 65536.0 + quint8(b[1]) * 256.0 +
                         quint8(b[0]);
        return Format(n, QStringLiteral("000"));
    }
    if (value && value->type != REG_DWORD) {
        // The returned length counts the terminating NUL, so the text is one shorter.
        const QString text = NameFromBytes(value->data);
        const qsizetype length = text.size();
        if (length <= ReadBufferSize) return length <= 1 ? QString() : text.left(length - 1);
    }
    complain(silent,
             QStringLiteral(
                 "An error occurred attempting to read \r\na setting from the Windows Registry."),
             ReadMessageStyle);
    return defaultValue;
}

bool WriteRegValue(RegRoot root, const QString& keyPath, const QString& name, const QString& value,
                   bool silent) {
    Registry& reg = Registry::get();
    if (reg.createKey(root, keyPath) && reg.setValue(root, keyPath, name, RegValue::text(value)))
        return true;
    complain(
        silent,
        QStringLiteral("An error occurred attempting to save a setting to the Windows Registry."),
        ChangeMessageStyle);
    return false;
}

bool DeleteRegValue(RegRoot root, const QString& keyPath, const QString& name, bool silent) {
    if (Registry::get().deleteValue(root, keyPath, name)) return true;
    complain(silent,
             QStringLiteral(
                 "An error occurred attempting to delete a setting from the Windows Registry."),
             ChangeMessageStyle);
    return false;
}

bool DeleteRegKey(RegRoot root, const QString& keyPath, bool silent) {
    Registry& reg = Registry::get();
    // Subkeys first, deepest first: a key with subkeys cannot be deleted.
    for (const QString& sub : reg.subKeys(root, keyPath))
        DeleteRegKey(root, keyPath + u'\\' + sub, silent);
    if (reg.deleteKey(root, keyPath)) return true;
    complain(
        silent,
        QStringLiteral("An error occurred attempting to delete a key from the Windows Registry."),
        ChangeMessageStyle);
    return false;
}

}  // namespace cantovel
