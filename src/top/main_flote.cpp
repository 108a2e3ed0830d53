#include "top/loop.h"

int main(int argc, char **argv) { return tolvek::run_system(tolvek::home_ring::flote, argc, argv); }
