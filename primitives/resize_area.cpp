// Area mean. Rows are reduced first, because a whole row can be added to a row of sums at memory speed, then
// the columns. A footprint that reaches beyond the source counts only its part inside; factors above 1 keep
// the same rule, with footprints that are smaller than a pixel.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "primitives/kernels.h"
#include "primitives/resize.h"

namespace {

// The same span in double precision, before the weights are rounded to what a pass needs.
struct Footprint {
  int first;
  int last;
  double firstPart;
  double lastPart;

  int full() const { return std::max(0, last - first - 1); }
  double length() const { return firstPart + full() + lastPart; }
};

Footprint footprintOf(int index, double factor, int side) {
  const double begin = std::min(index / factor, side - 1.0);
  const double end = std::clamp((index + 1) / factor, begin, static_cast<double>(side));
  Footprint print{};
  print.first = static_cast<int>(begin);
  print.last = std::max(print.first, static_cast<int>(std::ceil(end)) - 1);
  if (print.last == print.first) {
    print.firstPart = 1.0;
  } else {
    print.firstPart = print.first + 1 - begin;
    print.lastPart = end - print.last;
  }
  return print;
}

std::vector<Footprint> makeFootprints(int count, double factor, int side) {
  std::vector<Footprint> prints(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) prints[static_cast<std::size_t>(i)] = footprintOf(i, factor, side);
  return prints;
}

// `scale` multiplies the weights.
AreaSpan spanOf(const Footprint& print, double scale) {
  const double unit = scale / print.length();
  return {print.first,
          print.full(),
          print.last,
          static_cast<float>(print.firstPart * unit),
          static_cast<float>(unit),
          static_cast<float>(print.lastPart * unit)};
}

// Weights of one output over `taps` neighbouring pixels; they sum to exactly 2^kAreaWeightBits, which keeps
// flat images flat.
void makeNarrowWeights(const Footprint& print, int taps, std::int16_t* out) {
  const double unit = (1 << kAreaWeightBits) / print.length();
  std::int32_t weights[kAreaMaxTaps] = {};
  std::int32_t rest = 1 << kAreaWeightBits;
  for (int t = 0; t <= print.last - print.first; ++t) {
    const bool isLast = t > 0 && print.first + t == print.last;
    const double part = t == 0 ? print.firstPart : isLast ? print.lastPart : 1.0;
    weights[t] = static_cast<std::int32_t>(std::lrint(part * unit));
    rest -= weights[t];
  }
  *std::max_element(weights, weights + taps) += rest;
  for (int t = 0; t < taps; ++t) out[t] = static_cast<std::int16_t>(-weights[t]);
}

// The second pass: from a row of column means to a row of pixels, by whichever of the two kernels suits the
// length of the footprints.
class ColumnReducer {
 public:
  ColumnReducer(const std::vector<Footprint>& prints, int channels) : channel_(resampleChannelIndex(channels)) {
    int taps = 1;
    for (const Footprint& print : prints) taps = std::max(taps, print.last - print.first + 1);
    taps_ = taps <= 4 ? 4 : taps <= kAreaMaxTaps ? kAreaMaxTaps : 0;
    taps_ != 0 ? makeNarrow(prints) : makeWide(prints);
  }

  void run(const std::uint16_t* columns, Ipp8u* out, int pixels) const {
    const ResampleKernels& kernel = kernels().resample;
    if (taps_ != 0) {
      kernel.areaNarrow[channel_](columns, first_.data(), weights_.data(), taps_, out, pixels);
    } else {
      kernel.areaWide[channel_](columns, spans_.data(), out, pixels);
    }
  }

 private:
  void makeNarrow(const std::vector<Footprint>& prints) {
    weights_.resize(prints.size() * static_cast<std::size_t>(taps_));
    std::int16_t* weights = weights_.data();
    for (const Footprint& print : prints) {
      first_.push_back(print.first);
      makeNarrowWeights(print, taps_, weights);
      weights += taps_;
    }
  }

  void makeWide(const std::vector<Footprint>& prints) {
    for (const Footprint& print : prints) spans_.push_back(spanOf(print, 1.0 / kAreaFractionScale));
  }

  int channel_;
  int taps_;
  std::vector<std::int32_t> first_;
  std::vector<std::int16_t> weights_;
  std::vector<AreaSpan> spans_;
};

// The first pass: column means, in units of 1 / kAreaFractionScale, of the rows that a destination row covers.
class RowReducer {
 public:
  RowReducer(const ResizeJob<Ipp8u>& job, int samples)
      : job_(job),
        samples_(samples),
        sums_(static_cast<std::size_t>(samples)),
        // Room for the whole-vector reads of the second pass.
        columns_(static_cast<std::size_t>(samples + kAreaMaxTaps * job.channels + 16)) {}

  const std::uint16_t* run(const Footprint& print) {
    const AreaSpan span = spanOf(print, kAreaFractionScale);
    const float weights[3] = {span.firstWeight, span.full > 0 ? span.fullWeight : 0.0F, span.lastWeight};
    const Ipp8u* first = job_.srcRow(span.first);
    const Ipp8u* last = job_.srcRow(span.last);
    const ResampleKernels& kernel = kernels().resample;
    if (span.full <= 1) {
      const Ipp8u* middle = span.full == 1 ? job_.srcRow(span.first + 1) : first;
      kernel.areaMixRows(first, middle, last, weights, columns_.data(), samples_);
    } else if (span.full <= kAreaMaxSummedRows) {
      kernel.areaSumRows(job_.srcRow(span.first + 1), job_.srcStep, span.full, sums_.data(), samples_);
      kernel.areaMixSums(first, sums_.data(), last, weights, columns_.data(), samples_);
    } else {
      mixTall(span, weights);
    }
    return columns_.data();
  }

 private:
  // More rows than 16-bit sums can hold. Sums of up to 65,535 rows of bytes are exact in float.
  void mixTall(const AreaSpan& span, const float weights[3]) {
    std::vector<float> total(static_cast<std::size_t>(samples_));
    for (int done = 0; done < span.full; done += kAreaMaxSummedRows) {
      const int rows = std::min(kAreaMaxSummedRows, span.full - done);
      kernels().resample.areaSumRows(job_.srcRow(span.first + 1 + done), job_.srcStep, rows, sums_.data(), samples_);
      for (std::size_t k = 0; k < total.size(); ++k) total[k] += static_cast<float>(sums_[k]);
    }
    const Ipp8u* first = job_.srcRow(span.first);
    const Ipp8u* last = job_.srcRow(span.last);
    for (std::size_t k = 0; k < total.size(); ++k) {
      const float sum =
          static_cast<float>(first[k]) * weights[0] + total[k] * weights[1] + static_cast<float>(last[k]) * weights[2];
      columns_[k] = static_cast<std::uint16_t>(static_cast<int>(sum + 0.5F));
    }
  }

  const ResizeJob<Ipp8u>& job_;
  int samples_;
  std::vector<std::uint16_t> sums_;
  std::vector<std::uint16_t> columns_;
};

// Float images are few and small; sums in double keep flat ones flat to the last bit of a float.
void sumFloatRows(const ResizeJob<Ipp32f>& job, const Footprint& print, std::vector<double>& columns) {
  std::fill(columns.begin(), columns.end(), 0.0);
  for (int y = print.first; y <= print.last; ++y) {
    const double weight = y == print.first ? print.firstPart : y == print.last ? print.lastPart : 1.0;
    const Ipp32f* row = job.srcRow(y);
    for (std::size_t k = 0; k < columns.size(); ++k) columns[k] += weight * static_cast<double>(row[k]);
  }
}

void sumFloatColumns(const double* columns, const Footprint& print, double rowLength, int channels, Ipp32f* out) {
  for (int c = 0; c < channels; ++c) {
    double sum = 0.0;
    for (int x = print.first; x <= print.last; ++x) {
      const double weight = x == print.first ? print.firstPart : x == print.last ? print.lastPart : 1.0;
      sum += weight * columns[static_cast<std::ptrdiff_t>(x) * channels + c];
    }
    out[c] = static_cast<Ipp32f>(sum / (rowLength * print.length()));
  }
}

}  // namespace

void resizeArea(const ResizeJob<Ipp8u>& job) {
  const std::vector<Footprint> across = makeFootprints(job.dstSize.width, job.xFactor, job.srcSize.width);
  const std::vector<Footprint> down = makeFootprints(job.dstSize.height, job.yFactor, job.srcSize.height);
  const ColumnReducer reduceColumns(across, job.channels);
  RowReducer reduceRows(job, (across.back().last + 1) * job.channels);
  for (int y = 0; y < job.dstSize.height; ++y) {
    reduceColumns.run(reduceRows.run(down[static_cast<std::size_t>(y)]), job.dstRow(y), job.dstSize.width);
  }
}

void resizeArea(const ResizeJob<Ipp32f>& job) {
  const std::vector<Footprint> across = makeFootprints(job.dstSize.width, job.xFactor, job.srcSize.width);
  std::vector<double> columns(static_cast<std::size_t>(across.back().last + 1) *
                              static_cast<std::size_t>(job.channels));
  for (int y = 0; y < job.dstSize.height; ++y) {
    const Footprint down = footprintOf(y, job.yFactor, job.srcSize.height);
    sumFloatRows(job, down, columns);
    Ipp32f* out = job.dstRow(y);
    for (const Footprint& print : across) {
      sumFloatColumns(columns.data(), print, down.length(), job.channels, out);
      out += job.channels;
    }
  }
}
