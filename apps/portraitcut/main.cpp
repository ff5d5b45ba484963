// portraitcut: finds faces in pictures and cuts portraits out, one file or many.
#include <cstdio>
#include <exception>

#include "batch.h"
#include "command_line.h"

int main(int argc, char** argv) {
  try {
    const auto parsed = parseCommandLine(argc, argv);
    if (const int* code = std::get_if<int>(&parsed)) return *code;
    return runBatch(std::get<Options>(parsed));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "portraitcut: %s\n", error.what());
    return kSomeFailed;
  }
}
