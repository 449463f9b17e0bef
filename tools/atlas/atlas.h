// The atlas: every record of the catalogue on one page of HTML, which needs nothing but itself.
#pragma once

#include <string>

#include "names/names.h"

namespace atlas {

// With names, these stand beside the logical positions.
std::string page(const names::Names* names = nullptr);

}  // namespace atlas
