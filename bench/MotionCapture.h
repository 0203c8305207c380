/// The motion capture file that benchmarks convert.
#pragma once

#include <cstddef>
#include <string>

/// The text of a real recording whose motion is repeated up to a size in bytes, with the count of frames that it then
/// has.
std::string MotionCapture(std::size_t size);
