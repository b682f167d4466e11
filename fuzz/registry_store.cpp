// The settings store's file: any bytes read as a store, and a write into whatever was read
// must read back.
#include <QDir>
#include <QFile>

#include "FuzzInput.h"
#include "platform/registry/RegistryStore.h"

using namespace cantovel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString folder = fuzz::scratchFolder() + QStringLiteral("/store");
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    RegistryStore store(folder);
    QFile file(store.fileFor(RegRoot::CurrentUser));
    fuzz::require(file.open(QIODevice::WriteOnly));
    file.write(reinterpret_cast<const char*>(data), qint64(size));
    file.close();

    const QString key = QStringLiteral("Software\\Brightfen\\Cantovel\\Settings");
    store.queryValue(RegRoot::CurrentUser, key, QStringLiteral("Skin"));
    store.subKeys(RegRoot::CurrentUser, QStringLiteral("Software"));
    for (const QString& name : store.valueNames(RegRoot::CurrentUser, key))
        store.queryValue(RegRoot::CurrentUser, key, name);

    const RegValue value = RegValue::text(QStringLiteral("C:\\x \"quoted\" \u00e9"));
    fuzz::require(store.createKey(RegRoot::CurrentUser, key));
    fuzz::require(store.setValue(RegRoot::CurrentUser, key, QStringLiteral("Fuzz"), value));
    const auto back = store.queryValue(RegRoot::CurrentUser, key, QStringLiteral("fuzz"));
    fuzz::require(back && back->type == value.type && back->data == value.data);
    return 0;
}
