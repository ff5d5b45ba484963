// Things that happen to a file while it is being read, as other programs and broken devices make them happen.
//
// The program defines fopen and fread itself, in front of the C library's, so that they are met wherever the library,
// libjpeg and libpng call them.
#pragma once

#include <cstdio>
#include <functional>

// Runs before the n-th fopen or fread from now on, counted from 1.
void BeforeOpen(int n, std::function<void()> event);
void BeforeRead(int n, std::function<void(std::FILE*)> event);
// Ends both; the number of reads meanwhile.
int StopEvents();

// An event: from here on every read of the file fails, as that of a broken disk does.
void BreakReads(std::FILE* file);
