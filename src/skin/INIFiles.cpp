#include "skin/INIFiles.h"

#include <QFile>
#include <QSaveFile>
#include <QStringList>

namespace cantovel {

namespace {

QString text(const QVariant& v) {
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    return v.toString();
}

QStringList readLines(const QString& path, bool* exists) {
    QFile f(path);
    *exists = f.open(QIODevice::ReadOnly);
    if (!*exists) return {};
    QString all = QString::fromUtf8(f.readAll());
    all.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QStringList lines = all.split(u'\n');
    if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
    return lines;
}

// The name of a "[Section]" line, or null for any other line.
QString sectionOf(const QString& line) {
    const QString t = line.trimmed();
    if (!t.startsWith(u'[')) return {};
    const int end = t.indexOf(u']');
    return (end < 0 ? t.mid(1) : t.mid(1, end - 1)).trimmed();
}

// Splits "key = value"; false for a line without "=".
bool keyValue(const QString& line, QString* key, QString* value) {
    const int eq = line.indexOf(u'=');
    if (eq < 0) return false;
    *key = line.left(eq).trimmed();
    *value = line.mid(eq + 1).trimmed();
    return true;
}

// The buffer the value is copied into holds BufferSize characters with the final NUL.
QString fitBuffer(QString s) {
    const int nul = int(s.indexOf(QChar(0)));
    if (nul >= 0) s.truncate(nul);
    s.truncate(INIFiles::BufferSize - 1);
    return s;
}

}  // namespace

QString INIFiles::ReadINI(const QVariant& Section, const QVariant& Key, const QVariant& Default) {
    const QString section = text(Section), key = text(Key);
    QString fallback = text(Default);
    // A default's trailing blanks are dropped, as the profile function does.
    while (fallback.endsWith(u' ')) fallback.chop(1);

    bool exists = false;
    const QStringList lines = readLines(FileName, &exists);
    QString found = fallback;
    bool inSection = false;
    for (const QString& line : lines) {
        const QString name = sectionOf(line);
        if (!name.isNull()) {
            inSection = name.compare(section, Qt::CaseInsensitive) == 0;
            continue;
        }
        QString k, v;
        if (inSection && keyValue(line, &k, &v) && k.compare(key, Qt::CaseInsensitive) == 0) {
            // One pair of enclosing quotes is taken off.
            if (v.size() >= 2 && (v.front() == u'"' || v.front() == u'\'') && v.back() == v.front())
                v = v.mid(1, v.size() - 2);
            found = v;
            break;
        }
    }
    const QString value = fitBuffer(found);
    result_ = value.size();
    return value;
}

void INIFiles::WriteINI(const QVariant& Section, const QVariant& Key, const QVariant& Value) {
    const QString section = text(Section), key = text(Key), value = text(Value);
    bool exists = false;
    QStringList lines = readLines(FileName, &exists);

    int sectionLine = -1, keyLine = -1, lastInSection = -1;
    for (int i = 0; i < lines.size(); ++i) {
        const QString name = sectionOf(lines[i]);
        if (!name.isNull()) {
            if (sectionLine >= 0) break;
            if (name.compare(section, Qt::CaseInsensitive) == 0) sectionLine = lastInSection = i;
            continue;
        }
        if (sectionLine < 0) continue;
        if (!lines[i].trimmed().isEmpty()) lastInSection = i;
        QString k, v;
        if (keyValue(lines[i], &k, &v) && k.compare(key, Qt::CaseInsensitive) == 0) {
            keyLine = i;
            break;
        }
    }
    if (keyLine >= 0) {
        // The key keeps its own spelling.
        QString k, v;
        keyValue(lines[keyLine], &k, &v);
        lines[keyLine] = k + u'=' + value;
    } else if (sectionLine >= 0) {
        lines.insert(lastInSection + 1, key + u'=' + value);
    } else {
        lines << u'[' + section + u']' << key + u'=' + value;
    }

    QSaveFile out(FileName);
    result_ = 0;
    if (!out.open(QIODevice::WriteOnly)) return;
    out.write((lines.join(QLatin1String("\r\n")) + QLatin1String("\r\n")).toUtf8());
    result_ = out.commit() ? 1 : 0;
}

}  // namespace cantovel
