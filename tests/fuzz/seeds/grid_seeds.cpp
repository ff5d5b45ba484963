// Grids in both text forms. The first byte is the target's choice of the form.
#include "features/TGrid.h"
#include "models/models.h"
#include "tests/fuzz/seeds/seeds.h"

Seeds gridSeeds() {
  Seeds seeds;
  const auto add = [&](const std::string& name, char form, const std::string& text) {
    Bytes bytes = {static_cast<std::uint8_t>(form)};
    bytes.insert(bytes.end(), text.begin(), text.end());
    seeds.push_back({name, bytes});
  };
  add("mean", 0, mean_grid_40_text);
  add("base", 0, base_grid_text);
  for (const char* const text : {"", "000", "0000", "0001", "00010000FFFF", "FFFF", "7FFF0000", "00028000800000010001",
                                 "0001zzzz-1-1", "000100g00h00"}) {
    add(std::string("hex_") + text, 0, text);
  }
  const char* const files[] = {"2\n1.5 2.5\n-3 4e3\nSize\n100 200\n",
                               "0\nsize 1 1",
                               "1000000",
                               "1000001",
                               "-5\n1 2\nSIZE\n3 4",
                               "3\n1 2 x 3 4",
                               "2 nan inf -inf 1e39 size",
                               "99999999999999999999 1 2",
                               "1 0x1p3 1e-50 Size 9999999999 -9",
                               "",
                               "x",
                               "1\n1 1\nSize"};
  for (std::size_t i = 0; i < std::size(files); ++i) add("file_" + std::to_string(i), 1, files[i]);
  return seeds;
}
