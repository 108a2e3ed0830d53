/* The assignment &(x = y): sets a switch without asking, so that it can stand in a file or a function. */
#pragma once

#include "top/switches.h"

namespace tolvek {

/* Entered with "(" as the token; leaves ")" as the token. The result stays empty but for the letters whose value the user
   goes on with (_d and _r). Errors 1, 4, 33, 62, 73, 84, 133, 135, 136, 137, 141, 143, 146, 147,
   209, and those of the switches. */
void set_switch(switch_call &call);

} // namespace tolvek
