// Records as hex text.
#pragma once

#include "io/hex.h"

namespace tool {

using io::append_hex;
using io::Bytes;
using io::parse_hex;
using io::to_hex;

}  // namespace tool
