// Where a node's network is to answer what.
#pragma once

#include <array>
#include <string>
#include <vector>

// A depth at the node's place that fades with the distance; pixels of the frame.
struct TargetBell {
  double amplitude;
  double deviation;
};
using TargetBells = std::vector<TargetBell>;

// "1:2.8,0.2:10" is two bells. Throws std::runtime_error.
TargetBells parseBells(const std::string& text);

struct NodeTargets {
  TargetBells inner = {{1, 2.8}};
  TargetBells outline = {{1, 4.5}};
  TargetBells forehead = {{0.2, 10}};  // there is little to see

  const TargetBells& of(std::size_t node) const;
};

// 0.5 far from the node, less the bells at a squared distance.
float targetAt(const TargetBells& bells, double squaredDistance);

// What is added to the labels of each node, pixels, x and y in turn: the search ends a little beside the places where
// the networks answer best, and whole pixels are reported.
using LabelShifts = std::array<double, 80>;

// Moves the shifts against the measured mean error of found points, `share` of the way. `wanted` is the mean error at
// which truncated results come out right.
void correctShifts(LabelShifts& shifts, const std::array<double, 80>& meanErrors, double share, double wanted);

void writeShifts(const std::string& file, const LabelShifts& shifts);
LabelShifts readShifts(const std::string& file);
