/// The top of one file that is being written.
#pragma once

#include <memory>
#include <string>

#include "senmark/ISharedObject.h"
#include "senmark/ITdjsonGroup_v1.h"

namespace ns_sensor {
struct SK_DynamicFileInfo;
}

namespace SK_PLUGIN {

/// A file is made in this order: the root, its time base and sync times, `writeVersionToFile`; then nodes,
/// samples and the commit of each dynamic node; every node added to its group; at last `commit`.
///
/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonRoot_v1 : public virtual ITdjsonGroup_v1, public virtual ISharedObject {
 public:
  static unsigned GetInterfaceVersion() { return 1; }

  /// The root of a converter inside the library, made unless one lives under `key`; a module asks the host's
  /// table. Throws an `SK_PluginException` with code 1505 for a path that is null or empty. `info` is not
  /// looked at.
  static std::shared_ptr<ITdjsonRoot_v1> CreateRoot(void* key, char const* path,
                                                    ns_sensor::SK_DynamicFileInfo const* info);

  /// False if the file has been finished already.
  virtual bool Commit() = 0;
  virtual void SetCreator(std::string const& creator) = 0;
  /// The object itself, as the interface that it was made for.
  virtual ITdjsonRoot_v1* GetActualITdjsonRoot() = 0;
  /// Writes creator and outline and finishes the file. Errors: 2000 nothing to write, 2021 no children, 2016,
  /// 2020, 2023 and 2026 for objects that are not the writer's; 2005 if the conversion has ended; the codes of
  /// file operations plus 1000. After a failure the file is empty and the root has no children.
  virtual void commit(void* result) = 0;
  virtual void setCreator(char const* creator, void* result) = 0;
  /// Samples have time codes, at `value`/`scale` frames per second. dropFrame: 0 or 1. A dynamic node takes the
  /// time base over when it is made: the last one that was set by then.
  virtual void setSMPTETimeInfo(unsigned char dropFrame, unsigned value, unsigned scale, void* result) = 0;
  /// Samples have calendar times, with `precision` digits behind the point of the seconds. isGMT 1: the texts
  /// end in a zone letter; 0: in an offset.
  virtual void setUTCTimeInfo(unsigned precision, unsigned char isGMT, void* result) = 0;
  /// A frame of a video that belongs to the start of the samples. The name goes into the file as it is, and the
  /// time text too: neither may hold what has to be escaped in JSON, like a double quote.
  virtual void addSyncTimeFrameNum(char const* fileName, int frameNumber, void* result) = 0;
  /// The same by a time text of `length` bytes.
  virtual void addSyncTimeStr(char const* fileName, char const* timeString, unsigned long long length,
                              void* result) = 0;
  /// Creates the output file, or empties it, and writes its head. Errors: 2005 if the conversion has ended; those
  /// of file operations plus 1000. After a failure the root has no children.
  virtual void writeVersionToFile(void* result) = 0;
};

}  // namespace SK_PLUGIN
