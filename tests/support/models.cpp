#include "support/models.h"

#include <stdexcept>

namespace support {
namespace {

// Filled while the programs' files are initialised, in whatever order.
std::map<std::string, ModelOf>& all() {
    static std::map<std::string, ModelOf> instance;
    return instance;
}

void add(const std::string& name, const ModelOf& model_of) {
    if (!all().emplace(name, model_of).second) {
        throw std::logic_error{name + " has two models"};
    }
}

}  // namespace

const std::map<std::string, ModelOf>& models() { return all(); }

Models::Models(std::initializer_list<Modelled> list) {
    for (const Modelled& modelled : list) {
        add(modelled.translator.name, [modelled](std::size_t, std::uint32_t) { return modelled; });
    }
}

Models::Models(const std::string& name, const ModelOf& model_of) { add(name, model_of); }

}  // namespace support
