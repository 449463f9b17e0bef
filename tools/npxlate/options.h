// Options that several commands have.
#pragma once

#include <string>

#include <CLI/App.hpp>

#include "npxlate/translation.h"

namespace tool {

// --type and the logical key, the fourth arguments of the reverse translators of tables 52 and 92.
class ArgumentOptions {
public:
    void add_to(CLI::App& command, const std::string& key_option);
    // Throws WrongInput for a type that is no number and for bad hex.
    FourthArgument read() const;

private:
    std::string type_;
    std::string key_;
    CLI::Option* type_option_ = nullptr;
    CLI::Option* key_option_ = nullptr;
};

// --tx-adj-key-max, the one setting of the library.
class TxAdjKeyMaxOption {
public:
    void add_to(CLI::App& command);
    bool given() const { return option_ != nullptr && option_->count() > 0; }
    // Sets TX_ADJ_KEY_MAX if it was given. Throws WrongInput for a value that it cannot have.
    void apply() const;

private:
    std::string value_;
    CLI::Option* option_ = nullptr;
};

}  // namespace tool
