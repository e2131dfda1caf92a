// SPDX-License-Identifier: MIT
#include <mezalith/projection/great_circle.hpp>

#include <cstdio>

int main() { std::printf("%.0f m\n", mezalith::MzEarthDistance(10.75, 59.91, 2.35, 48.86)); }
