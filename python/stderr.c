/* The standard error stream under a name inside the library, for code that was not compiled to reach out of it. */
#include <stdio.h>

__attribute__((visibility("hidden"))) FILE* portraitcut_stderr;

__attribute__((constructor)) static void takeStream(void) { portraitcut_stderr = stderr; }
