// libjpeg's header, which lacks the includes that it needs.
#pragma once

// clang-format off
#include <cstdio>

#include <jpeglib.h>
// clang-format on
