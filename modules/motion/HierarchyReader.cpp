#include "HierarchyReader.h"

#include <cmath>
#include <optional>
#include <utility>

#include "MotionNumber.h"
#include "Words.h"
#include "senmark/module/Number.h"

namespace senmark_motion {
namespace {

class HierarchyReader {
 public:
  explicit HierarchyReader(Source& source) : mWords(source) {}

  Skeleton Read() {
    if (!IsSameWord(NextWord(), "hierarchy")) {
      throw mWords.failure("the file does not begin with HIERARCHY");
    }
    for (;;) {
      std::string_view const word = NextWord();
      if (mOpen.empty() && IsSameWord(word, "motion")) {
        break;
      }
      TakeStatement(word);
    }
    if (mSkeleton.joints.empty()) {
      throw mWords.failure("no ROOT before MOTION");
    }
    mWords.leave();
    return std::move(mSkeleton);
  }

 private:
  void TakeStatement(std::string_view word) {
    if (IsSameWord(word, "root") && mOpen.empty()) {
      BeginJoint(std::string(mWords.restOfName()), false);
    } else if (mOpen.empty()) {
      throw mWords.failure("ROOT or MOTION is expected");
    } else if (word == "}") {
      mOpen.pop_back();
    } else if (IsSameWord(word, "joint")) {
      BeginJoint(std::string(mWords.restOfName()), false);
    } else if (IsSameWord(word, "end")) {
      if (!IsSameWord(NextWord(), "site")) {
        throw mWords.failure("End without Site");
      }
      BeginJoint(std::string(mWords.restOfName()), true);
    } else if (IsSameWord(word, "offset")) {
      TakeOffset();
    } else if (IsSameWord(word, "channels")) {
      TakeChannels();
    } else {
      throw mWords.failure("OFFSET, CHANNELS, JOINT, End Site or } is expected");
    }
  }

  void BeginJoint(std::string name, bool isEndSite) {
    if (mSkeleton.joints.size() == kMostJoints) {
      throw mWords.failure("more than " + std::to_string(kMostJoints) + " joints");
    }
    if (name.size() > kLongestName) {
      throw mWords.failure("a name has more than " + std::to_string(kLongestName) + " bytes");
    }
    Joint joint;
    joint.parent = mOpen.empty() ? Joint::kNoParent : mOpen.back();
    joint.isEndSite = isEndSite;
    joint.name = std::move(name);
    if (joint.name.empty()) {
      // Short also for end sites in one another, which need a limit where names have one.
      bool const isOfJoint = isEndSite && !mSkeleton.joints[joint.parent].isEndSite;
      joint.name = isOfJoint ? mSkeleton.joints[joint.parent].name + " End Site" : isEndSite ? "End Site" : "unnamed";
    }
    if (NextWord() != "{") {
      throw mWords.failure("{ is expected behind the name of a joint");
    }
    mOpen.push_back(mSkeleton.joints.size());
    mSkeleton.joints.push_back(std::move(joint));
  }

  void TakeOffset() {
    Joint& joint = mSkeleton.joints[mOpen.back()];
    if (joint.hasOffset) {
      throw mWords.failure("a second OFFSET in one joint");
    }
    joint.hasOffset = true;
    for (double& coordinate : joint.offset) {
      std::optional<double> const number = ParseNumber(NextWord());
      if (!number || !(std::fabs(*number) < kit::kNumberLimit)) {
        throw mWords.failure("OFFSET needs three numbers below 1e16");
      }
      coordinate = *number;
    }
  }

  void TakeChannels() {
    Joint& joint = mSkeleton.joints[mOpen.back()];
    if (joint.hasChannels) {
      throw mWords.failure("a second CHANNELS in one joint");
    }
    joint.hasChannels = true;
    std::optional<double> const count = ParseNumber(NextWord());
    if (!count || !(*count >= 0) || *count != std::floor(*count)) {
      throw mWords.failure("CHANNELS needs a number of channels");
    }
    if (*count > static_cast<double>(kMostChannels - mSkeleton.channelCount)) {
      throw mWords.failure("more than " + std::to_string(kMostChannels) + " channels");
    }
    joint.firstChannel = mSkeleton.channelCount;
    mSkeleton.channelCount += static_cast<std::size_t>(*count);
    for (auto left = static_cast<std::size_t>(*count); left != 0; --left) {
      std::string_view const name = NextWord();
      if (IsStatement(name) || name.size() > kLongestName) {
        throw mWords.failure("the name of a channel is expected");
      }
      joint.channels.push_back(MakeChannel(name));
    }
  }

  static bool IsStatement(std::string_view word) {
    for (char const* const keyword : {"{", "}", "joint", "end", "offset", "channels", "root", "motion"}) {
      if (IsSameWord(word, keyword)) {
        return true;
      }
    }
    return false;
  }

  std::string_view NextWord() {
    std::string_view word;
    if (!mWords.next(word)) {
      throw mWords.failure("the file ends before its motion");
    }
    return word;
  }

  Words mWords;
  Skeleton mSkeleton;
  std::vector<std::size_t> mOpen;  ///< joints whose bracket is open
};

}  // namespace

Skeleton ReadHierarchy(Source& source) {
  return HierarchyReader(source).Read();
}

}  // namespace senmark_motion
