/* Command levels: a complete read-evaluate-display loop inside a computation that failed or was interrupted. */
#pragma once

#include "top/error_report.h"

namespace tolvek {

/* Reports f and runs the loop of a new level until &_p leaves it; everything that the report and the loop clear or
   change is then as it was, the unread rest of the interrupted line included. A tenth level is a panic stop. */
void open_level(const failure &f);
extern long levels_opened; /* since the start */

} // namespace tolvek
