#include "npxlate/terminal.h"

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace tool {

bool is_terminal(int descriptor) { return ::isatty(descriptor) == 1; }

bool moves_and_colours(int descriptor) {
    const char* const kind = std::getenv("TERM");
    return is_terminal(descriptor) && kind != nullptr && *kind != '\0' && std::string_view{kind} != "dumb";
}

bool draws_boxes(int descriptor) {
    return moves_and_colours(descriptor) && std::string_view{::nl_langinfo(CODESET)} == "UTF-8";
}

std::size_t line_width(int descriptor) {
    constexpr std::size_t page = 80;
    constexpr std::size_t least = 20;  // for anything to be readable
    winsize size{};
    if (!is_terminal(descriptor) || ::ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return page;
    }
    return std::clamp(std::size_t{size.ws_col}, least, page);
}

}  // namespace tool
