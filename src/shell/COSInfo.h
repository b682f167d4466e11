#pragma once
// Answers about the machine and the session, each from the nearest source this system
// has (see the comment on each member). Writes the system cannot honour answer through
// the member's error box.

#include <QString>
#include <QVariant>

namespace cantovel {

class COSInfo {
  public:
    bool Beep();
    void setBeep(bool on);
    QString ComputerName();
    void setComputerName(const QString& name);
    QString CurrentHardwareProfile();
    QString DefaultCompanyName();
    QString DefaultUserName();
    qint64 DisplayColors();
    QString GUID();
    QString Language();
    bool LargeFonts();
    QString OSAdditional();
    qint32 OSBuild();
    qint32 OSMajorVersion();
    qint32 OSMinorVersion();
    bool ScreenSaverActive();
    void setScreenSaverActive(bool on);
    qint32 ScreenSaverTimeout();
    void setScreenSaverTimeout(qint32 seconds);
    QString SystemDirectory();
    QString TempFile();
    QString TempPath();
    QString UserName();
    QString WindowsDirectory();
    QString WindowsType();
    void GetWorkArea(qint16& left, qint16& top, qint16& right, qint16& bottom);

  private:
    // A text that arrives in a fixed buffer, cut at its first NUL; a buffer without one is
    // taken whole.
    static QString TrimNulls(const char* buffer, size_t size);
    // A value of the settings store as text (a number as its digits); empty when missing.
    static QString RegistryGetKeyValue(const QString& key, const QString& name);
    // The kernel's release numbers: major, minor and patch.
    static QList<int> kernelRelease();
};

}  // namespace cantovel
