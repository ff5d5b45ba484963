#include "codecs/jpeg_source.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

constexpr std::int32_t kFillBytes = 4096;

struct MemorySource {
  jpeg_source_mgr base;
  std::int32_t remaining;     // bytes of the caller's buffer not yet handed over, never negative
  const unsigned char* data;  // the next of them
  std::int32_t startOfFile;   // set until the first bytes are delivered
  unsigned char chunk[4100];  // the window that the decoder sees
};

MemorySource* sourceOf(j_decompress_ptr cinfo) { return reinterpret_cast<MemorySource*>(cinfo->src); }

void initSource(j_decompress_ptr cinfo) { sourceOf(cinfo)->startOfFile = 1; }

boolean deliver(MemorySource* source, std::int32_t count) {
  source->base.next_input_byte = source->chunk;
  source->base.bytes_in_buffer = static_cast<std::size_t>(count);
  source->startOfFile = 0;
  return TRUE;
}

boolean fillInputBuffer(j_decompress_ptr cinfo) {
  MemorySource* const source = sourceOf(cinfo);
  const std::int32_t count = std::min(source->remaining, kFillBytes);
  if (count == 0) {
    if (source->startOfFile != 0) return FALSE;
    source->chunk[0] = 0xFF;
    source->chunk[1] = JPEG_EOI;
    return deliver(source, 2);
  }
  std::memcpy(source->chunk, source->data, static_cast<std::size_t>(count));
  source->data += count;
  source->remaining -= count;
  return deliver(source, count);
}

// A damaged file may ask to skip past the end of the buffer: what is left is all that can be skipped.
void skipInputData(j_decompress_ptr cinfo, long num) {
  if (num <= 0) return;
  MemorySource* const source = sourceOf(cinfo);
  const auto wanted = static_cast<std::size_t>(num);
  if (wanted <= source->base.bytes_in_buffer) {
    source->base.next_input_byte += wanted;
    source->base.bytes_in_buffer -= wanted;
    return;
  }
  const std::size_t surplus = wanted - source->base.bytes_in_buffer;
  const auto skipped = static_cast<std::int32_t>(std::min(surplus, static_cast<std::size_t>(source->remaining)));
  source->data += skipped;
  source->remaining -= skipped;
  source->base.bytes_in_buffer = 0;
}

void termSource(j_decompress_ptr) {}

}  // namespace

void jpeg_myreader_src(jpeg_decompress_struct* cinfo, const unsigned char* data, int size) {
  if (cinfo->src == nullptr) {
    cinfo->src = static_cast<jpeg_source_mgr*>(
        cinfo->mem->alloc_small(reinterpret_cast<j_common_ptr>(cinfo), JPOOL_PERMANENT, sizeof(MemorySource)));
  }
  MemorySource* const source = sourceOf(cinfo);
  source->remaining = std::max(size, 0);
  source->data = data;
  source->startOfFile = 1;
  source->base.bytes_in_buffer = 0;
  source->base.next_input_byte = nullptr;
  source->base.init_source = initSource;
  source->base.fill_input_buffer = fillInputBuffer;
  source->base.skip_input_data = skipInputData;
  source->base.resync_to_restart = jpeg_resync_to_restart;
  source->base.term_source = termSource;
}
