/// The data file that a converter writes.
#pragma once

#include <unistd.h>

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "senmark/ITdjsonRoot_v1.h"
#include "senmark/ITdjsonStaticDataBool_v1.h"
#include "senmark/ITdjsonStaticDataNumArr_v1.h"
#include "senmark/ITdjsonStaticDataNum_v1.h"
#include "senmark/ITdjsonStaticDataString_v1.h"
#include "senmark/module/Streams.h"

namespace senmark::kit {

class Output;

/// A node that holds others. It belongs to the `Output`, and so do the streams that it gives.
///
/// Every `name` is any text; it becomes the display name, with the unit behind it where there is one. The match name,
/// and the id of the samples, are made of it: `MatchNames`. Children keep the order in which they were made; a stream
/// without samples and a group in which nothing is left stay out of the file.
class Group {
 public:
  Group(Group const&) = delete;
  Group& operator=(Group const&) = delete;

  /// Groups inside each other that a reader takes, with any stream or value in the innermost.
  static constexpr unsigned kDeepest = 46;

  /// Errors: `Failure` with code 1507 for a group that is deeper than `kDeepest`.
  Group& group(std::string_view name);

  /// A value that does not change. Errors: `Failure` with code 1507 for a number that cannot be read back (see
  /// `Rounded`); NaN and infinity are left out if the format keeps gaps.
  void number(std::string_view name, double value, NumberFormat const& format = {});
  /// One to three numbers; more become a group with a number each. elementNames: as many as values, or none.
  void numbers(std::string_view name, std::vector<double> const& values, NumberFormat const& format = {},
               std::vector<std::string> const& elementNames = {}, bool isPoint = false);
  /// text: UTF-8; what cannot be written becomes U+FFFD, see `Utf8`. An empty one is left out.
  void text(std::string_view name, std::string_view text);
  void flag(std::string_view name, bool value);

  /// Values over time. Errors: `Failure` with code 1507 while the file has no time base.
  NumberStream& numberStream(std::string_view name, StreamFormat const& format = {});
  /// elementNames: one to three; `ArrayGroup` takes more.
  ArrayStream& arrayStream(std::string_view name, std::vector<std::string> const& elementNames,
                           StreamFormat const& format = {});
  TextStream& textStream(std::string_view name, StreamFormat const& format = {});

 private:
  friend class Output;

  template <typename Interface>
  using Held = detail::Held<Interface>;
  using StaticNode =
      std::variant<Held<SK_PLUGIN::ITdjsonStaticDataNum_v1>, Held<SK_PLUGIN::ITdjsonStaticDataNumArr_v1>,
                   Held<SK_PLUGIN::ITdjsonStaticDataString_v1>, Held<SK_PLUGIN::ITdjsonStaticDataBool_v1>>;
  using Child = std::variant<StaticNode, Stream*, std::unique_ptr<Group>>;

  Group(Output& output, unsigned depth, std::string displayName, std::string matchName)
      : mOutput(output), mDepth(depth), mDisplayName(std::move(displayName)), mMatchName(std::move(matchName)) {}

  bool HasContent() const;
  void AddChildrenTo(SK_PLUGIN::ITdjsonGroup_v1& node) const;
  template <typename Kind, typename... Arguments>
  Kind& MakeStream(std::string_view name, StreamFormat const& format, Arguments const&... arguments);

  Output& mOutput;
  unsigned mDepth;  ///< groups around it, the top left out
  std::string mDisplayName;
  std::string mMatchName;
  std::vector<Child> mChildren;
};

/// The file as a whole. It is written while samples come and finished by the kit when the converter returns.
class Output {
 public:
  /// Bytes of samples that wait in memory to be put in order, those of all streams together.
  static constexpr std::size_t kSortMemory = std::size_t{12} << 20;

  /// api         as the library gave it to the module.
  /// path        of the file, which is emptied.
  /// sortMemory  what to take for `kSortMemory`; what is beyond it goes to a temporary file.
  Output(SK_PLUGIN::HostAPI const& api, std::string const& path, std::size_t sortMemory = kSortMemory)
      : mRoom{&api, this, detail::SortRoom(sortMemory), {}}, mRegistration{&api, this}, mPath(path) {
    MakeRoot();
  }
  Output(Output const&) = delete;
  Output& operator=(Output const&) = delete;

  /// How samples tell their time; needed before the first stream, and then fixed.
  /// Errors: `Failure` with code 1507 once there are streams.
  void setTimeBase(TimeBase const& base) {
    RequireNotBegun("the time base");
    mRoom.timeBase = base;
  }
  /// The program or device that made the recording.
  void setCreator(std::string_view creator) {
    std::string const text = Utf8(creator);
    detail::CallWriter("set the creator", [&](void* result) { mRoot->setCreator(text.c_str(), result); });
  }
  /// The frame of a video at which the samples begin. Before the first stream.
  void addSyncFrame(std::string_view videoFile, int frame) {
    RequireNotBegun("a sync time");
    std::string const name = VideoName(videoFile);
    detail::CallWriter("add a sync time",
                       [&](void* result) { mRoot->addSyncTimeFrameNum(name.c_str(), frame, result); });
  }

  /// Errors: `Failure` with code 1507 for a file without a time base of moments, and for a year that has not four
  /// digits.
  Moment moment(Instant const& instant) const {
    if (!mRoom.timeBase || !mRoom.timeBase->isGmt()) {
      throw Refused("a moment in GMT in a file that has none");
    }
    detail::SampleKey const key = detail::KeyOf(instant, *mRoom.timeBase);
    if (!detail::CanBeWritten(key)) {
      throw Refused("a year that has not four digits");
    }
    return Moment(key, mClock.at(key));
  }

  /// The top of the tree.
  Group& top() { return *mTop; }

  /// Lets go of everything that was said and written so far, the time base too, as if this object were new: for a
  /// converter that finds out on its way that what it took for granted does not hold. Groups and streams, `top()` too,
  /// and moments are void afterwards, names are free again, and nothing of it is in the file. Also after a `Failure`;
  /// not after `finish`. Errors: `Failure` if the writer cannot begin anew; only another `restart` makes sense then.
  void restart() {
    // In the order in which they would go with this object.
    mStreams.clear();
    mTop.reset();
    mRoot = {};
    mRegistration.end();
    mNames = {};
    mRoom.timeBase.reset();
    mRoom.sort.clear();
    if (std::exchange(mHasBegun, false)) {
      // If this fails, what the file holds goes all the same when it is begun again.
      [[maybe_unused]] int const cut = ::truncate(mPath.c_str(), 0);
    }
    MakeRoot();
  }

  /// Writes what is not written yet. The kit calls it when the converter has returned.
  /// Errors: `Failure`, with code 1507 for a file without any content.
  void finish() {
    if (!mTop) {
      throw Refused("an output that could not begin anew");
    }
    Begin();
    for (std::unique_ptr<Stream> const& stream : mStreams) {
      stream->finish();
    }
    if (!mTop->HasContent()) {
      throw Refused("nothing to write: the input has no data");
    }
    mTop->AddChildrenTo(*mRoot.get());
    detail::CallWriter("finish the file", [&](void* result) { mRoot->commit(result); });
  }

 private:
  friend class Group;

  void MakeRoot() {
    unsigned char existed = 0;
    mRoot = detail::Make<SK_PLUGIN::ITdjsonRoot_v1>("begin a file", [&](void** root, void* result) {
      mRoom.api->mTdjsonWriterAPI->Static_CreateRoot(mRoom.key, mPath.c_str(), nullptr, root, &existed, 1, result);
    });
    mTop.reset(new Group(*this, 0, std::string(), std::string()));
  }

  void Begin() {
    if (mHasBegun) {
      return;
    }
    if (mRoom.timeBase) {
      TimeBase const& base = *mRoom.timeBase;
      detail::CallWriter("set the time base", [&](void* result) {
        if (base.isGmt()) {
          mRoot->setUTCTimeInfo(base.digits(), 1, result);
        } else {
          mRoot->setSMPTETimeInfo(base.dropsFrames() ? 1 : 0, base.value(), base.scale(), result);
        }
      });
    }
    detail::CallWriter("begin the file", [&](void* result) { mRoot->writeVersionToFile(result); });
    mHasBegun = true;
  }

  void RequireNotBegun(char const* what) const {
    if (mHasBegun) {
      throw Refused(std::string(what) + " comes after the first stream");
    }
  }

  static std::string VideoName(std::string_view name) {
    std::string text = Utf8(name);
    for (char const character : text) {
      if (character == '"' || character == '\\' || static_cast<unsigned char>(character) < 0x20) {
        throw Refused("the name of a video holds a quote, a backslash or a control character");
      }
    }
    return text;
  }

  /// Ends the conversion in the library too, however it went.
  struct Registration {
    SK_PLUGIN::HostAPI const* api;
    void* key;
    ~Registration() { end(); }
    void end() const {
      SK_PLUGIN::SK_PluginResult result;
      api->mHandleMemoryAPI->Static_RemoveConverterFromMap(key, &result);
    }
  };

  // What comes later goes first: streams and nodes, the root, then the conversion.
  detail::StreamRoom mRoom;
  Registration mRegistration;
  std::string mPath;
  mutable detail::Clock mClock;  ///< of the moments that it gives
  MatchNames mNames;
  detail::Held<SK_PLUGIN::ITdjsonRoot_v1> mRoot;
  std::unique_ptr<Group> mTop;
  std::deque<std::unique_ptr<Stream>> mStreams;
  bool mHasBegun = false;
};

/// Numbers over time that belong together, however many: an `ArrayStream` up to three, a group of `NumberStream`s
/// beyond.
class ArrayGroup {
 public:
  ArrayGroup(Group& parent, std::string_view name, std::vector<std::string> const& elementNames,
             StreamFormat const& format = {}) {
    if (elementNames.size() <= 3) {
      mArray = &parent.arrayStream(name, elementNames, format);
    } else {
      Group& group = parent.group(name);
      for (std::string const& element : elementNames) {
        mNumbers.push_back(&group.numberStream(element, format));
      }
    }
  }

  /// As `ArrayStream::add`; beyond three numbers, one that is no number is a gap of its own stream alone.
  template <typename Time>
  void add(Time const& time, std::vector<double> const& values) {
    if (mArray != nullptr) {
      mArray->add(time, values);
      return;
    }
    if (values.size() != mNumbers.size()) {
      throw Refused("another number of elements than the streams are");
    }
    for (std::size_t i = 0; i != values.size(); ++i) {
      mNumbers[i]->add(time, values[i]);
    }
  }

 private:
  ArrayStream* mArray = nullptr;
  std::vector<NumberStream*> mNumbers;
};

inline Group& Group::group(std::string_view name) {
  std::string displayName = Utf8(name);
  if (mDepth == kDeepest) {
    throw Refused(displayName + ": a group within " + std::to_string(mDepth) + " others");
  }
  std::string matchName = mOutput.mNames.make(displayName);
  std::unique_ptr<Group> child(new Group(mOutput, mDepth + 1, std::move(displayName), std::move(matchName)));
  Group& made = *child;
  mChildren.emplace_back(std::move(child));
  return made;
}

inline void Group::number(std::string_view name, double value, NumberFormat const& format) {
  if (!std::isfinite(value) && format.keepsGaps) {
    return;
  }
  double const rounded = Rounded(value, format.decimals);
  std::string const displayName = WithUnit(name, format.unit);
  std::string const matchName = mOutput.mNames.make(name);
  detail::StreamRoom const& room = mOutput.mRoom;
  auto node = detail::Make<SK_PLUGIN::ITdjsonStaticDataNum_v1>("make a number", [&](void** made, void* result) {
    room.api->mTdjsonWriterAPI->Static_CreateStaticDataNum(room.key, made, matchName.c_str(), displayName.c_str(),
                                                           rounded, 1, result);
  });
  detail::SetAutomaticNumbers(*node.get(), 1);
  mChildren.emplace_back(StaticNode(std::move(node)));
}

inline void Group::numbers(std::string_view name, std::vector<double> const& values, NumberFormat const& format,
                           std::vector<std::string> const& elementNames, bool isPoint) {
  if (values.empty() || (!elementNames.empty() && elementNames.size() != values.size())) {
    throw Refused(std::string(name) + ": an array without numbers, or with another number of names");
  }
  if (values.size() > 3) {
    Group& elements = group(name);
    for (std::size_t i = 0; i != values.size(); ++i) {
      elements.number(elementNames.empty() ? std::string(name) + ' ' + std::to_string(i) : elementNames[i], values[i],
                      format);
    }
    return;
  }
  std::vector<double> rounded;
  for (double const value : values) {
    if (!std::isfinite(value) && format.keepsGaps) {
      return;
    }
    rounded.push_back(Rounded(value, format.decimals));
  }
  std::string const displayName = WithUnit(name, format.unit);
  std::string const matchName = mOutput.mNames.make(name);
  detail::StreamRoom const& room = mOutput.mRoom;
  auto node = detail::Make<SK_PLUGIN::ITdjsonStaticDataNumArr_v1>("make an array", [&](void** made, void* result) {
    room.api->mTdjsonWriterAPI->Static_CreateStaticDataNumArr(room.key, made, matchName.c_str(), displayName.c_str(), 1,
                                                              result);
  });
  // The writer takes what is there when it is asked, so this order is its own.
  for (double const value : rounded) {
    detail::CallWriter("add an element", [&](void* result) { return node->addElement(value, result); });
  }
  for (std::size_t i = 0; i != rounded.size(); ++i) {
    detail::CallWriter("set a range", [&](void* result) {
      node->setNumberRange(detail::kMinimumAutomatic, detail::kMaximumAutomatic, detail::kMinimumAutomatic,
                           detail::kMaximumAutomatic, result);
    });
  }
  for (std::string const& element : elementNames) {
    std::string const clean = Utf8(element);
    detail::CallWriter("name an element", [&](void* result) { node->addDisplayName(clean.c_str(), result); });
  }
  detail::CallWriter("set elements", [&](void* result) { node->setIsPoint(isPoint ? 1 : 0, result); });
  detail::CallWriter("set digits", [&](void* result) {
    node->setNumberPattern(detail::kCountAutomatic, detail::kCountAutomatic, 0, result);
  });
  detail::CallWriter("set elements", [&](void* result) { node->setArrCount(rounded.size(), result); });
  mChildren.emplace_back(StaticNode(std::move(node)));
}

inline void Group::text(std::string_view name, std::string_view text) {
  std::string const value = Utf8(text);
  if (value.empty()) {
    return;
  }
  std::string const displayName = Utf8(name);
  std::string const matchName = mOutput.mNames.make(displayName);
  detail::StreamRoom const& room = mOutput.mRoom;
  auto node = detail::Make<SK_PLUGIN::ITdjsonStaticDataString_v1>("make a text", [&](void** made, void* result) {
    room.api->mTdjsonWriterAPI->Static_CreateStaticDataString(room.key, made, matchName.c_str(), displayName.c_str(),
                                                              value.c_str(), 1, result);
  });
  detail::CallWriter("set lengths", [&](void* result) { node->setStringProperties(0, 0, 0, result); });
  mChildren.emplace_back(StaticNode(std::move(node)));
}

inline void Group::flag(std::string_view name, bool value) {
  std::string const displayName = Utf8(name);
  std::string const matchName = mOutput.mNames.make(displayName);
  detail::StreamRoom const& room = mOutput.mRoom;
  auto node = detail::Make<SK_PLUGIN::ITdjsonStaticDataBool_v1>("make a flag", [&](void** made, void* result) {
    room.api->mTdjsonWriterAPI->Static_CreateStaticDataBool(room.key, made, matchName.c_str(), displayName.c_str(),
                                                            value ? 1 : 0, 1, result);
  });
  mChildren.emplace_back(StaticNode(std::move(node)));
}

template <typename Kind, typename... Arguments>
Kind& Group::MakeStream(std::string_view name, StreamFormat const& format, Arguments const&... arguments) {
  if (!mOutput.mRoom.timeBase) {
    throw Refused(std::string(name) + ": a stream in a file without a time base");
  }
  mOutput.Begin();
  std::unique_ptr<Kind> stream(
      new Kind(mOutput.mRoom, format, WithUnit(name, format.unit), mOutput.mNames.make(name), arguments...));
  Kind& made = *stream;
  mOutput.mStreams.push_back(std::move(stream));
  mChildren.emplace_back(&made);
  return made;
}

inline NumberStream& Group::numberStream(std::string_view name, StreamFormat const& format) {
  return MakeStream<NumberStream>(name, format);
}

inline ArrayStream& Group::arrayStream(std::string_view name, std::vector<std::string> const& elementNames,
                                       StreamFormat const& format) {
  if (elementNames.empty() || elementNames.size() > 3) {
    throw Refused(std::string(name) + ": an array has one to three elements");
  }
  std::vector<std::string> clean;
  clean.reserve(elementNames.size());
  for (std::string const& element : elementNames) {
    clean.push_back(Utf8(element));
  }
  return MakeStream<ArrayStream>(name, format, clean);
}

inline TextStream& Group::textStream(std::string_view name, StreamFormat const& format) {
  return MakeStream<TextStream>(name, format);
}

inline bool Group::HasContent() const {
  for (Child const& child : mChildren) {
    if (auto const* const stream = std::get_if<Stream*>(&child)) {
      if ((*stream)->count() != 0) {
        return true;
      }
    } else if (auto const* const group = std::get_if<std::unique_ptr<Group>>(&child)) {
      if ((*group)->HasContent()) {
        return true;
      }
    } else {
      return true;
    }
  }
  return false;
}

inline void Group::AddChildrenTo(SK_PLUGIN::ITdjsonGroup_v1& node) const {
  detail::StreamRoom const& room = mOutput.mRoom;
  for (Child const& child : mChildren) {
    if (auto const* const stream = std::get_if<Stream*>(&child)) {
      if ((*stream)->count() != 0) {
        detail::CallWriter("add a stream", [&](void* result) { node.addDynamicData((*stream)->Node(), result); });
      }
    } else if (auto const* const group = std::get_if<std::unique_ptr<Group>>(&child)) {
      Group const& inner = **group;
      if (inner.HasContent()) {
        auto made = detail::Make<SK_PLUGIN::ITdjsonGroup_v1>("make a group", [&](void** object, void* result) {
          room.api->mTdjsonWriterAPI->Static_CreateGroup(room.key, object, inner.mMatchName.c_str(),
                                                         inner.mDisplayName.c_str(), 1, result);
        });
        inner.AddChildrenTo(*made.get());
        detail::CallWriter("add a group", [&](void* result) { node.addGroup(made.get(), result); });
      }
    } else {
      std::visit(
          [&](auto const& held) {
            detail::CallWriter("add a value", [&](void* result) { node.addStaticData(held.get(), result); });
          },
          std::get<StaticNode>(child));
    }
  }
}

}  // namespace senmark::kit
