// The stream of the node networks, models/neuro_dat.bin.
#pragma once

#include <string>
#include <vector>

#include "training/features/node_network.h"

// One record a network; the words that the loader skips are 0. 507,072 bytes for forty networks.
std::vector<unsigned char> networksToStream(const std::vector<NodeNetwork>& networks);
// Through the library's own loader. Throws std::runtime_error unless there are forty networks.
std::vector<NodeNetwork> networksFromStream(const std::vector<unsigned char>& stream);

void writeBytes(const std::string& file, const void* data, std::size_t size);
