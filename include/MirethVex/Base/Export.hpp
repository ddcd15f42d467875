// Marks what a shared build of the library shows to its host; everything else is hidden.
#pragma once

#if defined(__GNUC__)
#define MIRETH_EXPORT __attribute__((visibility("default")))
#else
#define MIRETH_EXPORT
#endif
