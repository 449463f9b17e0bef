// The traced build of the translators, by name.
#pragma once

#include <string_view>

namespace traced {

// The traced function of that name; null if there is none. It has the type of the library's function of that name.
using Function = void (*)();
Function find(std::string_view name);

}  // namespace traced
