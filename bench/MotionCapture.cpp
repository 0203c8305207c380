#include "MotionCapture.h"

#include <fstream>
#include <sstream>

namespace {

std::string ContentOf(std::string const& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

}  // namespace

std::string MotionCapture(std::size_t size) {
  std::string const recording = ContentOf(SENMARK_TEST_DATA "/dab_30hz.bvh");
  std::size_t const count = recording.find("Frames:") + 7;
  std::size_t const frameTime = recording.find('\n', count);
  std::size_t const motion = recording.find('\n', frameTime + 1) + 1;
  std::string const lines = recording.substr(motion);
  std::size_t const rounds = size / lines.size() + 1;
  std::size_t const frames = std::stoul(recording.substr(count)) * rounds;
  std::string text =
      recording.substr(0, count) + ' ' + std::to_string(frames) + recording.substr(frameTime, motion - frameTime);
  text.reserve(text.size() + rounds * lines.size());
  for (std::size_t round = 0; round != rounds; ++round) {
    text += lines;
  }
  return text;
}
