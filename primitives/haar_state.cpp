#include "primitives/haar_state.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>

#include "primitives/ippi.h"

namespace {

bool validRect(const IppiRect& rect) {
  constexpr int kMax = std::numeric_limits<int>::max();
  return rect.x >= 0 && rect.y >= 0 && rect.width >= 1 && rect.height >= 1 && rect.x <= kMax - rect.width &&
         rect.y <= kMax - rect.height;
}

IppStatus checkStage(const IppiRect* feature, const int* num, int length) {
  if (length < 0 || std::any_of(num, num + length, [](int n) { return n < 1; })) return ippStsSizeErr;
  for (int c = 0; c < length; c++) {
    if (!std::all_of(feature, feature + num[c], validRect)) return ippStsBadArgErr;
    feature += num[c];
  }
  return ippStsNoErr;
}

struct StageSource {
  const IppiRect* feature;
  const Ipp32f* weight;
  const Ipp32f* threshold;
  const Ipp32f* val1;
  const Ipp32f* val2;
  const int* num;
  int length;
};

void appendFeatures(const StageSource& source, std::ptrdiff_t first, int count, IppiHaarClassifier_32f& state) {
  for (std::ptrdiff_t f = first; f < first + count; f++) {
    const IppiRect& r = source.feature[f];
    state.features.push_back({r.x, r.y, r.x + r.width, r.y + r.height, source.weight[f]});
    state.size.width = std::max(state.size.width, r.x + r.width);
    state.size.height = std::max(state.size.height, r.y + r.height);
  }
}

// Appends the classifiers that `wanted` picks by their number of features; answers how many.
template <typename Wanted>
int appendClassifiers(const StageSource& source, Wanted wanted, IppiHaarClassifier_32f& state) {
  int appended = 0;
  std::ptrdiff_t first = 0;
  for (int c = 0; c < source.length; first += source.num[c], c++) {
    const int num = source.num[c];
    if (!wanted(num)) continue;
    state.classifiers.push_back({num, source.threshold[c], source.val1[c], source.val2[c]});
    appendFeatures(source, first, num, state);
    appended++;
  }
  return appended;
}

std::unique_ptr<IppiHaarClassifier_32f> buildStage(const StageSource& source) {
  auto state = std::make_unique<IppiHaarClassifier_32f>();
  state->twos = appendClassifiers(
      source, [](int n) { return n == 2; }, *state);
  state->threes = appendClassifiers(
      source, [](int n) { return n == 3; }, *state);
  appendClassifiers(
      source, [](int n) { return n != 2 && n != 3; }, *state);
  return state;
}

}  // namespace

bool placeHaarFeatures(const IppiHaarClassifier_32f& state, int pitch, HaarFeature* placed) {
  const long long farthest = static_cast<long long>(state.size.height) * pitch + state.size.width;
  if (farthest > std::numeric_limits<std::int32_t>::max()) return false;
  for (const auto& f : state.features) {
    *placed++ = {
        {f.bottom * pitch + f.right, f.bottom * pitch + f.left, f.top * pitch + f.right, f.top * pitch + f.left},
        f.weight};
  }
  return true;
}

HaarStage makeHaarStage(const IppiHaarClassifier_32f& state, const HaarFeature* placed, float threshold) {
  const int others = static_cast<int>(state.classifiers.size()) - state.twos - state.threes;
  return {state.classifiers.data(), placed, state.twos, state.threes, others, threshold};
}

IppStatus ippiHaarClassifierInitAlloc_32f(IppiHaarClassifier_32f** state, const IppiRect* feature, const Ipp32f* weight,
                                          const Ipp32f* threshold, const Ipp32f* val1, const Ipp32f* val2,
                                          const int* num, int length) {
  if (state == nullptr || feature == nullptr || weight == nullptr || threshold == nullptr || val1 == nullptr ||
      val2 == nullptr || num == nullptr) {
    return ippStsNullPtrErr;
  }
  const IppStatus status = checkStage(feature, num, length);
  if (status != ippStsNoErr) return status;
  try {
    *state = buildStage({feature, weight, threshold, val1, val2, num, length}).release();
  } catch (const std::bad_alloc&) {
    return ippStsMemAllocErr;
  }
  return ippStsNoErr;
}

IppStatus ippiHaarClassifierFree_32f(IppiHaarClassifier_32f* state) {
  if (state == nullptr) return ippStsNullPtrErr;
  delete state;
  return ippStsNoErr;
}

IppStatus ippiGetHaarClassifierSize_32f(IppiHaarClassifier_32f* state, IppiSize* size) {
  if (state == nullptr || size == nullptr) return ippStsNullPtrErr;
  *size = state->size;
  return ippStsNoErr;
}
