// The one value that the control software may set.

#include <cstdint>

#include <npxlate/npxlate.h>

std::uint16_t TX_ADJ_KEY_MAX = 0x0fff;
