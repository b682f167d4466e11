#pragma once
// The program's settings, read from the store at every use and never cached. Values live
// under "Software\Brightfen\Cantovel\Settings" of the current user's root.

#include <QString>

#include "platform/registry/Registry.h"

namespace cantovel {

// "Software\Brightfen\Cantovel" and its "\Settings" key.
QString AppKey();
QString SettingsKey();

// Reads `name` in the settings key (or the application key); `defaultValue` when it is
// missing or unreadable, with a message unless `silent`.
QString ReadAppSetting(const QString& name, const QString& defaultValue,
                       bool useSettingsKey = true, bool silent = true);
// Writes `name` as text; true on success, else false with a message unless `silent`.
bool SaveAppSetting(const QString& name, const QString& value, bool useSettingsKey = true,
                    bool silent = true);

QString ReadRegValue(RegRoot root, const QString& keyPath, const QString& name,
                     const QString& defaultValue, bool silent = true);
bool WriteRegValue(RegRoot root, const QString& keyPath, const QString& name,
                   const QString& value, bool silent = true);
bool DeleteRegValue(RegRoot root, const QString& keyPath, const QString& name,
                    bool silent = true);
// Deletes a key with all its subkeys, depth first.
bool DeleteRegKey(RegRoot root, const QString& keyPath, bool silent = true);

}  // namespace cantovel
