#pragma once
// The one place windows get their closed components and system services from.
// Production code registers the real backends at start-up; tests register fakes.
//
//  - A service is one shared object (message boxes, the clock, the registry, ...).
//  - A component is made afresh for each control that uses it (one media player per
//    window, one encoder per conversion window, ...), through a factory.

#include <functional>
#include <memory>
#include <stdexcept>
#include <typeindex>
#include <unordered_map>

namespace cantovel {

class Components {
public:
    template <class T>
    static void provideService(std::shared_ptr<T> service) {
        services()[std::type_index(typeid(T))] = std::move(service);
    }

    template <class T>
    static T& service() {
        auto it = services().find(std::type_index(typeid(T)));
        if (it == services().end() || !it->second)
            throw std::logic_error(std::string("no service registered: ") + typeid(T).name());
        return *static_cast<T*>(it->second.get());
    }

    template <class T>
    static bool hasService() {
        auto it = services().find(std::type_index(typeid(T)));
        return it != services().end() && it->second;
    }

    template <class T>
    static void provideFactory(std::function<std::unique_ptr<T>()> factory) {
        factories()[std::type_index(typeid(T))] = [f = std::move(factory)]() -> void* {
            return f().release();
        };
    }

    // A new component, or null when no factory is registered for T.
    template <class T>
    static std::unique_ptr<T> create() {
        auto it = factories().find(std::type_index(typeid(T)));
        if (it == factories().end()) return nullptr;
        return std::unique_ptr<T>(static_cast<T*>(it->second()));
    }

    static void clear() {
        services().clear();
        factories().clear();
    }

private:
    static std::unordered_map<std::type_index, std::shared_ptr<void>>& services();
    static std::unordered_map<std::type_index, std::function<void*()>>& factories();
};

}  // namespace cantovel
