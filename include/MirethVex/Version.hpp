// Which version of the library these headers belong to. While the first number is 0, versions with another
// second number are not compatible, neither in source nor as a shared object.
#pragma once

#define MIRETHVEX_VERSION_MAJOR 0
#define MIRETHVEX_VERSION_MINOR 1
#define MIRETHVEX_VERSION_PATCH 0
