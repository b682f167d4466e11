#pragma once
// The collection of open forms, in the order they were loaded, and the forms that come
// into being the first time code touches them.

#include <QList>
#include <QPointer>
#include <QString>

namespace cantovel {

class Form;

class Forms {
public:
    static QList<Form*> all();
    static int count();
    static Form* byName(const QString& name);  // names compare in upper case

    // The loaded form of class T, or null.
    template <class T>
    static T* find() {
        for (Form* f : all())
            if (auto* t = qobject_cast<T*>(f)) return t;
        return nullptr;
    }
    // The form of class T, loaded on first touch.
    template <class T>
    static T& touch() {
        if (T* t = find<T>()) return *t;
        return *new T();
    }

    static void add(Form* form);
    static void remove(Form* form);
};

// Whether a form of that name is open (names compare in upper case).
bool IsFormLoaded(const QString& name);
// Unloads every open form but `except`, the last loaded first.
void UnloadOtherForms(Form* except);
// Sets AppClosing, unloads every open form but `except` (last loaded first), then
// `except` itself.
void UnloadAllForms(Form* except = nullptr);

}  // namespace cantovel
