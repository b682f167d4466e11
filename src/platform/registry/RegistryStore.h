#pragma once
// The registry kept as one text file per root, in the registry's own export syntax
// (REGEDIT4), under "cantovel" in the user's configuration folder.
//
// Nothing is cached: every read opens and parses the file afresh, so a value written by
// another process is seen at once. Every write takes an exclusive lock, reads the file
// again, changes it and replaces it whole (temporary file, fsync, rename), so neither a
// crash nor a second writer can leave a torn file or lose a value; a symbolic link stays
// and its target is replaced. Lines that cannot be read are passed over and written back
// as they stood; only a file with nothing readable in it is renamed aside and read as empty.

#include <QString>

#include "platform/registry/Registry.h"

namespace cantovel {

class RegistryStore : public Registry {
  public:
    // `folder` holds the files; empty means "cantovel" under $XDG_CONFIG_HOME.
    explicit RegistryStore(QString folder = {});

    bool keyExists(RegRoot root, const QString& key) override;
    bool createKey(RegRoot root, const QString& key) override;
    std::optional<RegValue> queryValue(RegRoot root, const QString& key,
                                       const QString& name) override;
    bool setValue(RegRoot root, const QString& key, const QString& name,
                  const RegValue& value) override;
    bool deleteValue(RegRoot root, const QString& key, const QString& name) override;
    bool deleteKey(RegRoot root, const QString& key) override;
    QStringList subKeys(RegRoot root, const QString& key) override;
    QStringList valueNames(RegRoot root, const QString& key) override;

    QString folder() const { return folder_; }
    // The file that holds a root ("<folder>/HKEY_CURRENT_USER.reg"); empty for an unknown root.
    QString fileFor(RegRoot root) const;

  private:
    QString folder_;
};

}  // namespace cantovel
