#include "training/cascade_stream.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

template <typename T>
void put(std::vector<unsigned char>& out, T value) {
  static_assert(sizeof(T) == 4);
  unsigned char bytes[4];
  std::memcpy(bytes, &value, 4);
  out.insert(out.end(), bytes, bytes + 4);
}

class Reader {
 public:
  explicit Reader(const std::vector<unsigned char>& bytes) : bytes_(bytes) {}
  template <typename T>
  T get() {
    if (bytes_.size() - position_ < 4) throw std::runtime_error("cascade stream is cut short");
    T value;
    std::memcpy(&value, bytes_.data() + position_, 4);
    position_ += 4;
    return value;
  }

 private:
  const std::vector<unsigned char>& bytes_;
  std::size_t position_ = 0;
};

WeakClassifier readClassifier(Reader& in) {
  WeakClassifier weak;
  const int rects = in.get<std::int32_t>();
  for (int k = 0; k < rects; ++k) {
    HaarRect r{};
    r.x = in.get<std::int32_t>();
    r.y = in.get<std::int32_t>();
    r.width = in.get<std::int32_t>();
    r.height = in.get<std::int32_t>();
    r.weight = in.get<float>();
    weak.rects.push_back(r);
  }
  weak.threshold = in.get<float>();
  weak.left = in.get<float>();
  weak.right = in.get<float>();
  return weak;
}

}  // namespace

std::vector<unsigned char> cascadeToStream(const Cascade& cascade) {
  std::int32_t classifiers = 0;
  std::int32_t features = 0;
  for (const Stage& stage : cascade) {
    classifiers += static_cast<std::int32_t>(stage.classifiers.size());
    for (const WeakClassifier& weak : stage.classifiers) features += static_cast<std::int32_t>(weak.rects.size());
  }
  std::vector<unsigned char> out;
  for (std::int32_t value :
       {kWindowSide, kWindowSide, static_cast<std::int32_t>(cascade.size()), classifiers, features}) {
    put(out, value);
  }
  for (const Stage& stage : cascade) {
    put(out, static_cast<std::int32_t>(stage.classifiers.size()));
    put(out, stage.threshold);
    for (const WeakClassifier& weak : stage.classifiers) {
      put(out, static_cast<std::int32_t>(weak.rects.size()));
      for (const HaarRect& r : weak.rects) {
        for (std::int32_t value : {r.x, r.y, r.width, r.height}) put(out, value);
        put(out, r.weight);
      }
      for (float value : {weak.threshold, weak.left, weak.right}) put(out, value);
    }
  }
  return out;
}

Cascade cascadeFromStream(const std::vector<unsigned char>& stream) {
  Reader in(stream);
  in.get<std::int32_t>();
  in.get<std::int32_t>();
  Cascade cascade(static_cast<std::size_t>(in.get<std::int32_t>()));
  in.get<std::int32_t>();
  in.get<std::int32_t>();
  for (Stage& stage : cascade) {
    const int count = in.get<std::int32_t>();
    stage.threshold = in.get<float>();
    for (int k = 0; k < count; ++k) stage.classifiers.push_back(readClassifier(in));
  }
  return cascade;
}

std::vector<unsigned char> readFile(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  if (!file) throw std::runtime_error("cannot open " + name);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void writeFile(const std::string& name, const std::vector<unsigned char>& bytes) {
  const std::string temporary = name + ".new";
  std::ofstream file(temporary, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error("cannot write " + temporary);
  std::filesystem::rename(temporary, name);
}
