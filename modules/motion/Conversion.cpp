#include "Conversion.h"

#include <algorithm>
#include <optional>

#include "FrameReader.h"
#include "HierarchyReader.h"
#include "MotionHeader.h"
#include "MotionTree.h"
#include "Words.h"
#include "WorldPositions.h"

namespace senmark_motion {
namespace {

std::string OptionsPath(kit::Input const& input) {
  return input.path() + ".senmark.json";
}

bool BeginsLikeMotion(kit::Input const& input) {
  constexpr std::size_t kEnough = 4096;
  Source source(input, kEnough);
  std::string_view word;
  return Words(source).next(word) && IsSameWord(word, "hierarchy");
}

/// The number of the last frame, as far as what the file states fits in its bytes.
std::uint64_t LastFrame(kit::Input const& input, MotionHeader const& header, std::size_t channels) {
  std::uint64_t const bytesOfFrame = 2 * std::max<std::uint64_t>(channels, 1);
  std::uint64_t const frames = std::min<std::uint64_t>(header.frameCount, input.size() / bytesOfFrame + 1);
  return frames == 0 ? 0 : frames - 1;
}

kit::Failure NoFrameTime(Source const& source, MotionHeader const& header) {
  return source.failure("the frame time is not above 0", header.frameTimeOffset);
}

kit::TimeBase TimeBaseOf(kit::Input const& input, Source const& source, MotionHeader const& header,
                         std::size_t channels) {
  std::optional<kit::TimeBase> const base = ChooseTimeBase(header.frameTime, LastFrame(input, header, channels));
  if (!base) {
    throw NoFrameTime(source, header);
  }
  return *base;
}

std::string RateText(kit::TimeBase const& base) {
  if (base.isGmt()) {
    return "moments in GMT from 1970 on, with " + std::to_string(base.digits()) + " digits of a second";
  }
  std::string const scale = base.scale() == 1 ? std::string() : '/' + std::to_string(base.scale());
  return "time codes at " + std::to_string(base.value()) + scale + " frames per second";
}

/// The times of frames, in the arguments of the kit; none for a frame that the time base has no time for.
struct FrameTimes {
  std::int64_t limit;

  explicit FrameTimes(kit::TimeBase const& base, MotionHeader const& /*header*/) : limit(base.nominalRate() * 86400) {}
  std::optional<kit::Frame> at(std::uint64_t frame) const {
    auto const number = static_cast<std::int64_t>(frame);
    return number < limit ? std::optional<kit::Frame>({number}) : std::nullopt;
  }
};
struct MomentTimes {
  double seconds;

  explicit MomentTimes(kit::TimeBase const& /*base*/, MotionHeader const& header) : seconds(header.frameTime.seconds) {}
  std::optional<kit::Instant> at(std::uint64_t frame) const {
    return kit::InstantOfSeconds(static_cast<double>(frame) * seconds);
  }
};

/// Reads frames and adds them in blocks. Gives their number.
template <typename Time, typename Times>
std::uint64_t AddFrames(Source& source, MotionHeader const& header, Times const& timesOf, std::size_t channels,
                        MotionTree& tree) {
  // Numbers of a block, so that it stays in the processor's caches.
  constexpr std::size_t kBlock = 16384;
  std::size_t const framesOfBlock = std::max<std::size_t>(kBlock / std::max<std::size_t>(channels, 1), 1);
  FrameReader frames(source, channels);
  std::vector<Time> times;
  std::vector<double> values;
  std::uint64_t count = 0;
  for (; frames.next(values); ++count) {
    if (count != 0 && !(header.frameTime.seconds > 0)) {
      throw NoFrameTime(source, header);
    }
    std::optional<Time> const time = timesOf.at(count);
    if (!time) {
      throw source.failure("no time is left for a frame", frames.offset(), kit::Failure::kRefused);
    }
    times.push_back(*time);
    if (times.size() == framesOfBlock) {
      tree.add(times, values);
      times.clear();
      values.clear();
    }
  }
  tree.add(times, values);
  return count;
}

void ExplainMotion(kit::Input const& input, std::function<void(std::string const&)> const& line) {
  Source source(input);
  Skeleton const skeleton = ReadHierarchy(source);
  MotionHeader const header = ReadMotionHeader(source);
  std::size_t const channels = skeleton.channelCount;
  auto const roots = std::count_if(skeleton.joints.begin(), skeleton.joints.end(),
                                   [](Joint const& joint) { return joint.parent == Joint::kNoParent; });
  line(std::to_string(roots) + " roots, " + std::to_string(skeleton.joints.size()) + " joints with their end sites, " +
       std::to_string(channels) + " channels");
  line(std::to_string(header.frameCount) + " frames are stated, of " + header.frameTime.text +
       " s each: " + RateText(TimeBaseOf(input, source, header, channels)));
  Options const options = ReadOptions(OptionsPath(input));
  line(options.worldPositions
           ? "world positions are wanted by " + OptionsPath(input)
           : "no world positions; {\"worldPositions\": true} in " + OptionsPath(input) + " asks for them");
}

}  // namespace

bool Accepts(kit::Input const& input) {
  return input.extension() == "bvh" && BeginsLikeMotion(input);
}

void Convert(kit::Input const& input, kit::Output& output) {
  Options const options = ReadOptions(OptionsPath(input));
  Source source(input);
  Skeleton const skeleton = ReadHierarchy(source);
  std::size_t const channels = skeleton.channelCount;
  MotionHeader const header = ReadMotionHeader(source);
  kit::TimeBase const base = TimeBaseOf(input, source, header, channels);
  output.setTimeBase(base);

  kit::Group& top = output.top();
  top.text("frame time [s]", header.frameTime.text);
  // A text: the integers of an outline end at 2 to the 31st.
  top.text("frame count", std::to_string(header.frameCount));
  std::optional<WorldPositions> world;
  if (options.worldPositions) {
    world.emplace(skeleton, options);
  }
  MotionTree tree(skeleton, output, world ? &*world : nullptr);
  std::uint64_t const count = base.isGmt()
                                  ? AddFrames<kit::Instant>(source, header, MomentTimes(base, header), channels, tree)
                                  : AddFrames<kit::Frame>(source, header, FrameTimes(base, header), channels, tree);
  if (world && world->hasJointPositions() && count != 0) {
    bool const adds = world->jointPositions() == ePositions::kAdd;
    top.text("joint positions", adds ? "added to the offset" : "in place of the offset");
  }
  if (count != header.frameCount && channels != 0) {
    top.text("warning",
             "the file states " + std::to_string(header.frameCount) + " frames and has " + std::to_string(count));
  }
}

void Explain(kit::Input const& input, std::function<void(std::string const&)> const& line) {
  if (input.extension() != "bvh") {
    line("it does not take the file: the extension is not bvh");
    return;
  }
  if (!BeginsLikeMotion(input)) {
    line("it does not take the file: the first word is not HIERARCHY");
    return;
  }
  line("it takes the file: motion capture, the first word is HIERARCHY");
  try {
    ExplainMotion(input, line);
  } catch (kit::Failure const& failure) {
    line("it cannot be read: " + std::string(failure.what()) +
         (failure.line() < 0 ? std::string() : " (line " + std::to_string(failure.line()) + ")"));
  }
}

}  // namespace senmark_motion
