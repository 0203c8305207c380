/// Everything a host application needs, without the sharp edges of the raw border: C++17 headers, no
/// dependencies, nothing to link when the library is loaded at run time.
///
///     senmark::Senmark manager(senmark::Library::Load("/usr/lib/libsenmark.so"));
///     senmark::File file = manager.open("walk.tdjson");
///     file.walk([](senmark::Node const& node, int depth) {
///       std::cout << std::string(2 * depth, ' ') << node.matchName << '\n';
///     });
///     for (senmark::Sample const& sample : file.samples("hip").within({0, 1}, {3, 2})) {
///       std::cout << sample.time.seconds() << '\n';  // from 0 to 1.5 seconds
///     }
///
/// Errors:   `senmark::Error`; `senmark::attempt` gives them as a value instead.
/// Lifetime: everything keeps what it came from alive, so objects may be dropped in any order.
/// Threads:  `Senmark` and `File` may be used by several threads at once. Opening, closing and streams
///           are put in a row, for the whole process.
///
/// What the wrapper takes care of:
/// - The library keeps the first table of client procs of a process. All users of the wrapper share one,
///   also across shared objects. A process that gives the library a table of another kind first cannot
///   use the wrapper: `Senmark` throws then, as far as that can be found out.
/// - Errors come through a client proc only: here they are thrown.
/// - A range without samples, and the neighbours of an only sample, are errors: here they are empty, and
///   that sample.
/// - A range begins with the last sample before its start: `covering` has it, `within` has not.
/// - A start behind the end turns the order round: only `reversed` does.
/// - Of several samples at the end of a range only the first one comes: `within` has all.
/// - A range is decoded as a whole: here it comes in pieces.
/// - A time behind 24 hours of time code begins anew: here it is behind all samples.
/// - A name without a folder has no extension: paths are made absolute.
/// - A file's duration may end before its last set does: `File::extent` does not.
/// - Opening a file must not run beside the making of a stream: there is a lock.
/// - When only the copy to an output path fails, the file stays open: here it is closed.
/// - A stream that is reset still counts what it had left: `Stream::rewind` does not.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "senmark/host/Error.h"
#include "senmark/host/File.h"
#include "senmark/host/Library.h"
#include "senmark/host/Stream.h"
#include "senmark/host/Time.h"
#include "senmark/host/Values.h"

namespace senmark {

/// What the library is started with. Only the first start in a process counts, until the last `Senmark`
/// and all that came from it are gone.
struct Options {
  std::string pluginFolder;   ///< folder of converter modules; empty: none
  std::string wantedModules;  ///< comma-separated names of the modules to use; empty: all
  std::string locale;         ///< like "en_US"; empty: that
};

/// The library, started. Cheap to copy.
class Senmark {
 public:
  /// Errors: 21 another table of client procs is in force in this process.
  explicit Senmark(Library const& library, Options const& options = Options())
      : mSession(std::make_shared<detail::Session>(library, OrNull(options.pluginFolder), OrNull(options.wantedModules),
                                                   OrNull(options.locale))) {}

  /// Opens a file; one that is of another kind is converted first.
  ///
  /// path        of the file, relative paths from the current folder.
  /// outputPath  where a copy in the Timed Data JSON format shall stand; empty: nowhere. Its folder must
  ///             exist.
  ///
  /// Errors: 2 no path; 3 a path too long; 4 no such file; 25 no converter takes the file; 58 no such
  ///         output folder; 5, 6, 14, 15, 19, 21, 28 to 49, 54 it cannot be read, often with a place;
  ///         1000 to 2999 it cannot be converted.
  File open(std::string const& path, std::string const& outputPath = std::string()) const {
    return File(mSession, detail::AbsolutePath(path), detail::AbsolutePath(outputPath));
  }

  /// Gives a file as bytes in the Timed Data JSON format; one that is of another kind is converted first.
  ///
  /// validate  true: a file of the format is read once, with the errors of `open`.
  /// Errors:   as `open`.
  Stream stream(std::string const& path, bool validate = false) const {
    return Stream(mSession, detail::AbsolutePath(path), validate);
  }

  /// The kinds of files that can be opened, in the order of their extensions.
  std::vector<Format> formats() const {
    detail::Receiver receiver;
    std::vector<Format> formats;
    receiver.formats = &formats;
    mSession->library().functions().supportedFormats(receiver.Client(), receiver.Client(), detail::ForwardingTable());
    receiver.Raise();
    return formats;
  }

  /// The last error of the calling thread, as the library keeps it: code 0 when there was none.
  ///
  /// clear  true: forgets it afterwards.
  Error lastError(bool clear = false) const {
    Error last(0, std::string());
    mSession->library().functions().lastException(
        &last,
        [](void* client, std::int32_t code, char const* message, std::int64_t offset, std::int64_t line) {
          *static_cast<Error*>(client) = Error(code, message, offset, line);
        },
        clear);
    return last;
  }

  /// Renders a message of a module: plain text, or "$$$/", a key, "=" and a text with the marks ^1 to ^4,
  /// which `values` replace in their order.
  std::string message(std::string const& literal, std::vector<std::string> const& values = {}) const {
    char const* given[4] = {};
    for (std::size_t i = 0; i != values.size() && i != 4; ++i) {
      given[i] = values[i].c_str();
    }
    detail::Receiver receiver;
    std::string text;
    receiver.answer = &text;
    mSession->library().functions().localizedErrorMsg(literal.c_str(), given[0], given[1], given[2], given[3],
                                                      receiver.Client());
    receiver.Raise();
    return text;
  }

 private:
  static char const* OrNull(std::string const& text) { return text.empty() ? nullptr : text.c_str(); }

  std::shared_ptr<detail::Session> mSession;
};

}  // namespace senmark
