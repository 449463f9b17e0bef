// The parts of the page, from the files of these names.
#pragma once

#include <string_view>

namespace audit {

extern const std::string_view page_html;  // with {css}, {js} and {data} where these belong
extern const std::string_view page_css;   // behind that of the atlas
extern const std::string_view page_js;

}  // namespace audit
