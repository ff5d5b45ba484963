// golden PICTURE.png          prints what the library works out from the picture
// golden PICTURE.png FILE     compares it with the lines of a file; ends with 1 and the differences if it isn't the
// same
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "record.h"

namespace {

std::vector<std::string> linesOf(const char* fileName) {
  std::ifstream file(fileName);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with("#")) lines.push_back(line);
  }
  return lines;
}

int compare(const std::vector<std::string>& expected, const std::vector<std::string>& found) {
  constexpr int kShown = 10;
  const std::string nothing = "nothing";
  int differences = 0;
  for (std::size_t i = 0; i < expected.size() || i < found.size(); ++i) {
    const std::string& wanted = i < expected.size() ? expected[i] : nothing;
    const std::string& given = i < found.size() ? found[i] : nothing;
    if (wanted == given || ++differences > kShown) continue;
    std::printf("expected  %s\nfound     %s\n\n", wanted.c_str(), given.c_str());
  }
  std::printf("%zu lines, %d differ\n", found.size(), differences);
  return differences == 0 && !found.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2 && count != 3) {
    std::fprintf(stderr, "usage: golden PICTURE.png [EXPECTED]\n");
    return EXIT_FAILURE;
  }
  require(VIZL_Initialize(nullptr), "VIZL_Initialize");
  const TRecord record = recordOf(arguments[1]);
  require(VIZL_Finalize(), "VIZL_Finalize");
  if (count == 3) return compare(linesOf(arguments[2]), record.All());
  for (const std::string& line : record.All()) std::printf("%s\n", line.c_str());
  return EXIT_SUCCESS;
}
