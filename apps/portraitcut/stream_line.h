// Pictures in lines of JSON: {"id": any value, "image_base64": "..."}.
#ifndef APPS_PORTRAITCUT_STREAM_LINE_H
#define APPS_PORTRAITCUT_STREAM_LINE_H

#include <string>
#include <vector>

// The id as JSON text, "null" if the line has none or is no JSON object.
std::string streamedId(const std::string& line);

// The bytes of the picture file. Throws Failure.
std::vector<unsigned char> streamedPicture(const std::string& line);

#endif
