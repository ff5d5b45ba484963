#include "deliver.h"

#include <unistd.h>

#include "density.h"
#include "encode.h"
#include "file_bytes.h"
#include "output_file.h"

Format formatFor(const OutputOptions& options, const std::string& path) {
  const Format named = options.format == Format::kAuto ? formatOfName(path) : options.format;
  return named == Format::kAuto ? Format::kJpeg : named;
}

void deliver(const Options& options, const std::string& path, const Picture& picture) {
  const Format format = formatFor(options.output, path);
  if (path == "-") {
    writeDescriptor(STDOUT_FILENO, "standard output", withDensity(encode(picture, format), options.cut.dotsPerInch));
  } else {
    publishPicture(path, format, picture, options.cut.dotsPerInch, options.output.force);
  }
}
