/* The report of settings, &g. */
#pragma once

namespace tolvek {

/* Writes one line for each setting that is always told, and one for each other that is not as usual. */
void global_dump();

} // namespace tolvek
