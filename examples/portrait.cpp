// Cuts a portrait out of a picture file, in C++:
//
//   portrait INPUT OUTPUT WIDTH HEIGHT
//
// and prints the faces of the picture with their eyes. The portrait is framed by the eyes of the largest face.
#include <cstdlib>
#include <iostream>
#include <portraitcut.hpp>

namespace {

void printFaces(const portraitcut::Image& image) {
  for (const portraitcut::Face& face : image.faces()) {
    const auto [first, second] = image.eyes(face);
    std::cout << "face at " << face.xc << ", " << face.yc << ", " << face.w << " pixels wide, eyes at " << first.x
              << ", " << first.y << " and " << second.x << ", " << second.y << '\n';
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::cerr << "usage: portrait INPUT OUTPUT WIDTH HEIGHT\n";
    return 2;
  }
  try {
    const portraitcut::Library library;
    const auto image = portraitcut::Image::load(argv[1]);
    printFaces(image);
    image.portrait({std::atoi(argv[3]), std::atoi(argv[4])}, {.scale = 0.8, .byEyes = true}).save(argv[2]);
  } catch (const portraitcut::Error& error) {
    std::cerr << "portrait: " << error.what() << " (code " << error.code() << ")\n";
    return 1;
  }
}
