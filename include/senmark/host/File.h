/// One opened file.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "senmark/host/SampleRange.h"
#include "senmark/host/VideoSyncVessel.h"

namespace senmark {

/// Cheap to copy: copies are the same opening, which ends with the last of them and with the last range
/// of its samples. Several threads may use one file at once.
class File {
 public:
  /// Samples of a piece of a range, unless told otherwise.
  static constexpr std::uint64_t kDefaultWindow = 4096;

  /// What the file says about itself.
  FileInfo info() const {
    detail::Receiver receiver;
    FileInfo info;
    receiver.fileInfo = &info;
    ns_sensor::SK_FileInfo record;
    Handler().getFileInfo(&record, receiver.Client(), receiver.Client());
    receiver.Raise();
    return info;
  }

  /// From the first sample of all sets to the last one. None: the file has no samples.
  ///
  /// `info().duration` may be shorter: the library does not look at the end of a set that begins before
  /// the end of another.
  std::optional<Extent> extent() const {
    std::optional<Extent> whole;
    for (auto const& [id, data] : Sets()) {
      if (!data->extent) {
        continue;
      }
      if (!whole) {
        whole = data->extent;
      }
      whole->start = data->extent->start < whole->start ? data->extent->start : whole->start;
      whole->end = data->extent->end > whole->end ? data->extent->end : whole->end;
    }
    return whole;
  }

  /// The moments at which videos and the samples belong together, in the order of the file.
  std::vector<VideoSyncTime> videoSyncTimes() const {
    detail::Receiver receiver;
    std::vector<VideoSyncTime> times;
    receiver.syncTimes = &times;
    detail::VideoSyncVessel vessel;
    Handler().getVideoSyncTime(vessel.ForLibrary(), receiver.Client(), receiver.Client());
    vessel.Verify(times);
    receiver.Raise();
    return times;
  }

  /// The children of a group, in the order of the file.
  ///
  /// path    of a group; empty for the top of the tree.
  /// Errors: 33, 34, 45 a path that leads to no group.
  std::vector<ChildPath> children(std::string const& path = std::string()) const {
    detail::Receiver receiver;
    std::vector<ChildPath> found;
    receiver.children = &found;
    if (path.empty()) {
      Handler().getRootChildren(receiver.Client(), receiver.Client());
    } else {
      Handler().getGroupChildren(path.data(), path.size(), receiver.Client(), receiver.Client());
    }
    receiver.Raise();
    for (ChildPath& child : found) {
      // A name may be empty, and an empty name finds nothing.
      child.path =
          path + (child.matchName.empty() ? "[" + std::to_string(child.index) + "]" : "[\"" + child.matchName + "\"]");
    }
    return found;
  }

  /// One node with all that the file tells about it.
  ///
  /// path    below the top of the tree: per step a match name in double quotes or an index from 0, in
  ///         square brackets, like `["arm"][2]["hand"]`.
  /// Errors: 1 empty path; 33, 34, 45 a path that leads to no node.
  Node node(std::string const& path) const {
    detail::Receiver receiver;
    Node node;
    node.path = path;
    receiver.node = &node;
    receiver.propertyApi = mFile->session->propertyApi();
    Handler().getGroupChildInfo(path.data(), path.size(), receiver.Client(), receiver.Client());
    receiver.Raise();
    if (node.kind == eNodeKind::kStatic) {
      Handler().getStaticDataInfo(path.data(), path.size(), receiver.Client(), receiver.Client());
    } else if (node.kind == eNodeKind::kDynamic) {
      Handler().getDynamicDataInfo(path.data(), path.size(), receiver.Client(), receiver.Client());
    }
    receiver.Raise();
    if (node.dynamic && LacksSamples(*node.dynamic)) {
      node.dynamic->extent.reset();
    }
    return node;
  }

  /// Visits all nodes below a group: each node before its children, in the order of the file.
  ///
  /// visit  called with a `Node const&` and its depth as an int, 0 for the children of `path`. What it
  ///        throws ends the walk.
  /// Errors: as `children`.
  template <class Visit>
  void walk(Visit&& visit, std::string const& path = std::string(), int depth = 0) const {
    for (ChildPath const& child : children(path)) {
      Node const current = node(child.path);
      visit(current, depth);
      if (current.kind == eNodeKind::kGroup) {
        walk(visit, child.path, depth + 1);
      }
    }
  }

  /// One set of samples.
  ///
  /// id      `DynamicData::sampleSetId` of a node.
  /// window  samples that a pass over a range fetches at once, more or less.
  /// Errors: 35 no node has this id.
  Samples samples(std::string const& id, std::uint64_t window = kDefaultWindow) const {
    auto const found = Sets().find(id);
    if (found == Sets().end()) {
      throw Error(ns_sensor::kUnknownSampleId, "no node has the sample set \"" + id + "\"");
    }
    return Samples(mFile, found->second, window);
  }

 private:
  friend class Senmark;
  using SetMap = std::map<std::string, std::shared_ptr<DynamicData const>>;

  /// What was learned about a file while it is open.
  struct Known {
    std::once_flag once;
    SetMap sets;
  };

  File(std::shared_ptr<detail::Session> session, std::string const& absolutePath, std::string const& absoluteOutput)
      : mFile(std::make_shared<detail::OpenFile>(std::move(session), absolutePath, absoluteOutput)),
        mKnown(std::make_shared<Known>()) {}

  ns_sensor::ISensorFileHandler& Handler() const { return *mFile->handler; }

  /// The sets by their ids, gathered by one walk over the tree when they are first needed.
  SetMap const& Sets() const {
    std::call_once(mKnown->once, [this] {
      SetMap sets;
      walk([&](Node const& node, int) {
        if (node.dynamic) {
          sets.emplace(node.dynamic->sampleSetId, std::make_shared<DynamicData const>(*node.dynamic));
        }
      });
      mKnown->sets = std::move(sets);
    });
    return mKnown->sets;
  }

  /// A file may tell a count of samples and have none of them. Such a set begins and ends at 0, which a
  /// set with one sample may do too.
  bool LacksSamples(DynamicData const& data) const {
    Time const zero;
    if (!data.extent || data.extent->start != zero || data.extent->end != zero) {
      return false;
    }
    detail::Receiver receiver;
    ns_sensor::SK_DynamicSampleInfo info;
    Handler().getSampleInfo(data.sampleSetId.data(), data.sampleSetId.size(), 0, 1, 0, 1, &info, 0, receiver.Client(),
                            receiver.Client());
    if (receiver.error && receiver.error->code() == ns_sensor::kNoSamples) {
      return true;
    }
    receiver.Raise();
    return false;
  }

  std::shared_ptr<detail::OpenFile> mFile;
  std::shared_ptr<Known> mKnown;
};

}  // namespace senmark
