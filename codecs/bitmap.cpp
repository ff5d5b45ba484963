// The exchange of images with the column-wise table of a bitmap. It goes by stripes of picture rows: one
// transpose turns a stripe of all columns into rows (or back) while it is in the cache.
#include <algorithm>
#include <exception>
#include <vector>

#include "codecs/BMP.h"
#include "codecs/row_convert.h"
#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

constexpr int kStripeRows = 16;
constexpr int kBlueFirst[4] = {2, 1, 0, 3};

// Rows of blue, green, red and alpha, top row first.
struct Stripe {
  explicit Stripe(int width) : pixels(static_cast<std::size_t>(width) * kStripeRows * 4), step(width * 4) {}

  std::vector<unsigned char> pixels;
  int step;
};

unsigned char* columnsAt(const BMP& bmp, int y) { return &bmp.Pixels[0][y].Blue; }

// Gray keeps the order of the file: its red weight falls on blue.
void takeStripe(Stripe& stripe, int count, TIppiImage& image, int y) {
  if (image.Mode != imGray8)
    ippiSwapChannels_8u_C4IR(stripe.pixels.data(), stripe.step, {image.Width, count}, kBlueFirst);
  convertRows({stripe.pixels.data(), stripe.step, 4, count}, image, y, false);
}

// The fourth bytes of the stripe stay.
void fillStripe(const TIppiImage& image, int y, int count, Stripe& stripe) {
  const IppiSize roi = {image.Width, count};
  const Ipp8u* const from = pictureRow(image, y);
  Ipp8u* const to = stripe.pixels.data();
  const Ipp8u* const planes[4] = {from, from, from, from};
  if (image.Mode == imGray8) ippiCopy_8u_P4C4R(planes, -image.Step, to, stripe.step, roi);
  if (image.Mode == imRGB24) ippiCopy_8u_C3AC4R(from, -image.Step, to, stripe.step, roi);
  if (image.Mode == imRGBA32) ippiCopy_8u_AC4R(from, -image.Step, to, stripe.step, roi);
  if (image.Mode == imGray8) ippiSet_8u_C4CR(0, to + 3, stripe.step, roi);
  ippiSwapChannels_8u_C4IR(to, stripe.step, roi, kBlueFirst);
}

}  // namespace

void TIppiImage::LoadFromBitmap(BMP& bmp) {
  if (Mode > imRGBA32) return;
  AllocNew(bmp.TellWidth(), bmp.TellHeight());
  Stripe stripe(Width);
  for (int y = 0; y < Height; y += kStripeRows) {
    const int count = std::min(kStripeRows, Height - y);
    ippiTranspose_8u_C4R(columnsAt(bmp, y), Height * 4, stripe.pixels.data(), stripe.step, {count, Width});
    takeStripe(stripe, count, *this, y);
  }
}

void TIppiImage::SaveToBitmap(BMP& bmp) {
  if (Width == 0 && Height == 0) return;
  if (!bmp.SetSize(Width, Height)) return;
  bmp.SetBitDepth(24);
  // Images without 8-bit pixels are written black.
  Stripe stripe(Width);
  for (int y = 0; y < Height; y += kStripeRows) {
    const int count = std::min(kStripeRows, Height - y);
    if (Pixels != nullptr && Mode <= imRGBA32) fillStripe(*this, y, count, stripe);
    ippiTranspose_8u_C4R(stripe.pixels.data(), stripe.step, columnsAt(bmp, y), Height * 4, {Width, count});
  }
}

int TIppiImage::LoadFromFile(const char* name) {
  try {
    BMP bmp;
    if (!bmp.ReadFromFile(name)) return -1;
    LoadFromBitmap(bmp);
    return 0;
  } catch (const std::exception&) {
    return -1;
  }
}

int TIppiImage::SaveToFile(const char* name) {
  try {
    BMP bmp;
    SaveToBitmap(bmp);
    return bmp.WriteToFile(name) ? 0 : -1;
  } catch (const std::exception&) {
    return -1;
  }
}
