// The atlas: every record of the catalogue on one page of HTML, which needs nothing but itself.
#pragma once

#include <string>

namespace atlas {

std::string page();

}  // namespace atlas
