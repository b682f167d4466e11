#pragma once
// The settings store, keeping the registry's model: roots, keys with subkeys, typed
// values and a default value per key. Key and value names match without regard to case,
// and keep the case they were written with.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

namespace cantovel {

enum class RegRoot : quint32 {
    ClassesRoot = 0x80000000u,
    CurrentUser = 0x80000001u,
    LocalMachine = 0x80000002u,
    Users = 0x80000003u,
};

enum RegType : quint32 { REG_NONE = 0, REG_SZ = 1, REG_EXPAND_SZ = 2, REG_BINARY = 3, REG_DWORD = 4 };

// A value as it is stored: its type and raw bytes. A REG_SZ holds its text and a
// terminating NUL; a REG_DWORD four bytes, least significant first.
struct RegValue {
    quint32 type = REG_SZ;
    QByteArray data;

    static RegValue text(const QString& s);
    static RegValue dword(quint32 v);
};

class Registry {
public:
    virtual ~Registry() = default;

    virtual bool keyExists(RegRoot root, const QString& key) = 0;
    // Creates the key and any missing parents; true when it exists afterwards.
    virtual bool createKey(RegRoot root, const QString& key) = 0;
    // The value `name` of `key` (the empty name is the key's default value); nothing when
    // the key or the value is missing.
    virtual std::optional<RegValue> queryValue(RegRoot root, const QString& key,
                                               const QString& name) = 0;
    // Writes a value into an existing key; false when the key is missing or the write fails.
    virtual bool setValue(RegRoot root, const QString& key, const QString& name,
                          const RegValue& value) = 0;
    virtual bool deleteValue(RegRoot root, const QString& key, const QString& name) = 0;
    // Deletes a key that has no subkeys; false when it is missing or still has subkeys.
    virtual bool deleteKey(RegRoot root, const QString& key) = 0;
    // The direct subkeys' names, in the order they were made.
    virtual QStringList subKeys(RegRoot root, const QString& key) = 0;
    virtual QStringList valueNames(RegRoot root, const QString& key) = 0;

    static Registry& get();
};

QString rootName(RegRoot root);

}  // namespace cantovel
