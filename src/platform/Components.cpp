#include "platform/Components.h"

namespace cantovel {

std::unordered_map<std::type_index, std::shared_ptr<void>>& Components::services() {
    static std::unordered_map<std::type_index, std::shared_ptr<void>> map;
    return map;
}

std::unordered_map<std::type_index, std::function<void*()>>& Components::factories() {
    static std::unordered_map<std::type_index, std::function<void*()>> map;
    return map;
}

}  // namespace cantovel
