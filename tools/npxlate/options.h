// Options that several commands have.
#pragma once

#include <string>
#include <vector>

#include "npxlate/command_line.h"
#include "npxlate/translation.h"

namespace tool {

// --type and the logical key, the fourth arguments of the reverse translators of tables 52 and 92.
class ArgumentOptions {
public:
    void add_to(Command command);
    // Throws WrongInput for a type that is no number and for bad hex.
    FourthArgument read() const;

private:
    std::string type_;
    std::string key_;
    Option type_option_;
    Option key_option_;
};

// --tx-adj-key-max, the one setting of the library.
class TxAdjKeyMaxOption {
public:
    void add_to(Command command);
    // Sets TX_ADJ_KEY_MAX if it was given. Throws WrongInput for a value that it cannot have, and if of these
    // translators none depends on it; with none, it is not known yet which there will be.
    void apply(const std::vector<const catalogue::Translator*>& translators = {}) const;

private:
    std::string value_;
    Option option_;
};

// --threads, of the commands that go through many entries.
class ThreadsOption {
public:
    void add_to(Command command);
    // As many as there are processors if it was not given. Throws WrongInput for what is no number above 0.
    unsigned read() const;

private:
    std::string value_;
};

}  // namespace tool
