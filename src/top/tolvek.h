/* What every folder shares: the records of values, the ring in force, and the ways to fail. */
#pragma once

#include "top/errors.h"
#include "top/records.h"
#include "top/ring.h"
