// Calling the translators of any library with this interface: the one that the program is linked with, or another.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "catalogue/call.h"
#include "vectors/vectors.h"

namespace vectors {

struct LoadError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What a call did.
struct Done {
    Outcome outcome{};           // the output as the whole buffer, whatever the status
    bool wrote_outside = false;  // of the buffers
};

class Library {
public:
    // The program's own.
    Library();
    // The one at that path, apart from the program's own, of which it must not use a thing. Throws LoadError.
    explicit Library(const std::string& path);
    ~Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    bool has(const Translator& translator) const { return function(translator) != nullptr; }
    // The translator must be there.
    Done run(const Translator& translator, const Call& call) const;

private:
    catalogue::Function function(const Translator& translator) const;

    void* handle_ = nullptr;
    std::uint16_t* tx_adj_key_max_;
};

}  // namespace vectors
