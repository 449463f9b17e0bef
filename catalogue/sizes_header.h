// The text of include/npxlate/sizes.h, made of the catalogue.
#pragma once

#include <string>

namespace catalogue {

std::string sizes_header();

}  // namespace catalogue
