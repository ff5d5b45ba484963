#include "training/features/network_file.h"

#include <gtest/gtest.h>

#include "features/TNeuralNetwork.h"
#include "training/features/node_trainer.h"

namespace {

TEST(NetworkStream, HasTheSizeThatTheLibraryHolds) { EXPECT_EQ(networksToStream(randomNetworks(1)).size(), 507072u); }

// The library must read each weight as what training meant by it.
TEST(NetworkStream, GivesTheLibraryTheSameValues) {
  const auto networks = randomNetworks(3);
  const auto stream = networksToStream(networks);
  const unsigned char* next = stream.data();
  std::mt19937 random(4);
  std::uniform_real_distribution<float> uniform(-0.5f, 0.5f);
  for (const NodeNetwork& network : networks) {
    TNeuralNetwork library;
    ASSERT_EQ(library.LoadFromStream(&next, stream.data() + stream.size()), 0);
    alignas(64) float inputs[kPatchPixels], hidden[kHiddenNeurons];
    for (float& input : inputs) input = uniform(random);
    EXPECT_NEAR(evaluateNetwork(network, inputs, hidden), library.FastPropagate_I(inputs), 2e-6);
  }
  EXPECT_EQ(next, stream.data() + stream.size());
}

}  // namespace
