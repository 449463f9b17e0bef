// The parts of the page, from the files of these names.
#pragma once

#include <string_view>

namespace atlas {

extern const std::string_view page_html;  // with {css}, {records}, {js} and {data} where these belong
extern const std::string_view page_css;
extern const std::string_view page_records;
extern const std::string_view page_js;

}  // namespace atlas
