#pragma once
// Sets environment variables for the life of a test and puts the old values back.

#include <QByteArray>
#include <QList>
#include <utility>

namespace cantovel::test {

class ScopedEnv {
  public:
    ScopedEnv() = default;
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;
    ~ScopedEnv() {
        for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
            if (it->second.isNull())
                qunsetenv(it->first.constData());
            else
                qputenv(it->first.constData(), it->second);
        }
    }
    void set(const char* name, const QByteArray& value) {
        saved_.append({name, qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray()});
        qputenv(name, value);
    }
    void set(const char* name, const QString& value) { set(name, value.toLocal8Bit()); }

  private:
    QList<std::pair<QByteArray, QByteArray>> saved_;
};

}  // namespace cantovel::test
