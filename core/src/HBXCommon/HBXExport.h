#pragma once

/// Marks what a library of this project shows to its users; everything else stays hidden inside the library.
#define HBX_EXPORT __attribute__((visibility("default")))
