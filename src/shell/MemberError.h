#pragma once
// The run-time errors of the shell classes. Every member of CShellExecute and COSInfo
// catches its own: the box titled with the member's name says "Error: <number>. <text>",
// and the member returns what it holds so far. No error leaves these classes.

#include <QString>
#include <exception>

namespace cantovel {

class MemberError : public std::exception {
  public:
    MemberError(int number, const QString& description)
        : number_(number), description_(description) {}
    int number() const { return number_; }
    QString description() const { return description_; }
    const char* what() const noexcept override { return "member error"; }

    // Classic numbers for the errors these classes raise.
    static constexpr int NotSupported = 438;  // a write the system does not offer
    static constexpr int PermissionDenied = 70;
    static constexpr int FileAccess = 75;
    static constexpr int ObjectMissing = 91;
    static constexpr int AutomationError = 440;  // a component failed

    // Shows the member's error box.
    static void show(const QString& member, int number, const QString& description);

    // Runs `body`; a run-time error in it shows the box titled `member`.
    template <class Body>
    static void guard(const char* member, Body&& body) noexcept {
        try {
            body();
        } catch (const MemberError& e) {
            show(QString::fromLatin1(member), e.number(), e.description());
        } catch (const std::exception& e) {
            show(QString::fromLatin1(member), AutomationError, QString::fromLocal8Bit(e.what()));
        } catch (...) {
            show(QString::fromLatin1(member), AutomationError, QStringLiteral("Automation error"));
        }
    }

    // The answer of `body`, or the type's empty value when a run-time error stopped it.
    template <class T, class Body>
    static T answer(const char* member, Body&& body) noexcept {
        T value{};
        guard(member, [&] { value = body(); });
        return value;
    }

  private:
    int number_;
    QString description_;
};

}  // namespace cantovel
