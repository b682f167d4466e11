#include "shell/CMRU.h"

#include "app/AppState.h"
#include "app/FileNames.h"

namespace cantovel {

CMRU::CMRU() : RegistryPath(QStringLiteral("SOFTWARE\\") + QString::fromLatin1(AppTitle)) {
    rows_.resize(maxItems_ + 1);
}

void CMRU::setMaxMRUItems(qint16 n) {
    maxItems_ = n < 0 ? 0 : n;
    rows_.resize(maxItems_ + 1);
}

QAction* CMRU::MenuItem(int index) const {
    if (index < 0 || index > maxItems_) return nullptr;
    return rows_[index];
}

void CMRU::setMenuItem(int index, QAction* item) {
    if (index < 0 || index > maxItems_) return;
    if (index == 0 && item) item->setSeparator(true);
    rows_[index] = item;
}

QString CMRU::key() const {
    return SubKey.isEmpty() ? RegistryPath : RegistryPath + u'\\' + SubKey;
}

QString CMRU::readValue(const QString& name) const {
    const std::optional<RegValue> v = Registry::get().queryValue(RootKey, key(), name);
    if (!v || v->type != REG_SZ) return {};
    QByteArray data = v->data;
    const qsizetype nul = data.indexOf('\0');
    if (nul >= 0) data.truncate(nul);
    return NameFromBytes(data);
}

bool CMRU::writeValue(const QString& name, const QString& value) const {
    Registry& reg = Registry::get();
    return reg.createKey(RootKey, key()) &&
           reg.setValue(RootKey, key(), name, RegValue::text(value));
}

void CMRU::GetMRUList() {
    QStringList captions, tags;
    int shown = 0;
    for (int n = 1; n <= maxItems_; ++n) {
        const QString path = readValue(Prefix + QString::number(n));
        if (path.isEmpty()) continue;
        ++shown;
        captions << QStringLiteral("&") + QString::number(shown) + QStringLiteral(". ") + path;
        tags << readValue(TagPrefix + QString::number(n));
    }
    for (QAction* row : std::as_const(rows_))
        if (row) row->setVisible(false);
    if (captions.isEmpty()) return;
    if (rows_[0]) rows_[0]->setVisible(true);
    for (int i = 1; i <= captions.size() && i <= maxItems_; ++i) {
        QAction* row = rows_[i];
        if (!row) continue;
        row->setText(captions[i - 1]);
        row->setVisible(true);
        row->setData(tags[i - 1]);
    }
}

void CMRU::SetMRUList(const QString& Item, const QString& Tag) {
    if (Item.isEmpty()) {
        for (int n = 1; n <= maxItems_; ++n) {
            writeValue(Prefix + QString::number(n), QString());
            writeValue(TagPrefix + QString::number(n), QString());
        }
        GetMRUList();
        return;
    }
    QStringList items{Item}, tags{Tag};
    const QString upper = Item.toUpper();
    for (int n = 1; n <= maxItems_; ++n) {
        const QString entry = readValue(Prefix + QString::number(n));
        if (entry.isEmpty() || entry.toUpper() == upper) continue;
        items << entry;
        tags << readValue(TagPrefix + QString::number(n));
    }
    for (int i = 1; i <= std::min<qsizetype>(items.size(), maxItems_); ++i) {
        writeValue(Prefix + QString::number(i), items[i - 1]);
        writeValue(TagPrefix + QString::number(i), tags[i - 1]);
    }
    GetMRUList();
}

QString CMRU::PathOfCaption(const QString& caption) {
    const qsizetype dot = caption.indexOf(QLatin1String(". "));
    return dot >= 0 ? caption.mid(dot + 2) : caption;
}

QString CMRU::TagOf(const QAction* row) {
    return row ? row->data().toString() : QString();
}

}  // namespace cantovel
