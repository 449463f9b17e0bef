// What ends a command early.
#pragma once

#include "io/error.h"

namespace tool {

using io::Failure;
using io::NotDone;
using io::WrongInput;

}  // namespace tool
