/// Reference counting, the same for every object of the writer.
///
/// The rules of the writer's whole border:
/// - Objects come from the `Static_Create...` functions of the host's table, as a `void*` that points to the
///   `_v1` interface of their family, and leave with one reference taken in advance. The first `Acquire`
///   claims that reference, and the `Release` that belongs to it gives it back; the object is deleted when
///   no reference is left. A group and a root acquire each child that is added to them, and release it when they
///   go: an object that its maker has not acquired by then belongs to them, and must not be used after them.
/// - An operation whose name begins with a lower-case letter (a border form) never throws. Its last argument
///   is the address of an `SK_PluginResult`, which it fills in on a failure and else leaves alone. The
///   capitalised operations throw and are for callers that were compiled together with the library. Any border
///   form may report 1034 for a lack of memory, 1023 for a null text and for what has no code of its own.
/// - Texts are NUL-terminated UTF-8 and are copied; that they are UTF-8 is not looked at. What JSON wants escaped is
///   escaped by the writer, but not in match names and in what belongs to sync times.
/// - One conversion runs on one thread. Only the reference counts may be used from several.
#pragma once

namespace SK_PLUGIN {

/// Binary interface: the order of the virtual functions is fixed.
class ISharedObject {
 public:
  /// Claims the reference that was taken in advance if there is one, else takes another.
  virtual void Acquire() const = 0;
  /// Gives a reference back. The object is deleted with the last one, or if there was none.
  virtual void Release() const = 0;
  virtual ISharedObject* GetISharedObject_I() = 0;
  /// Never called by a module: `Release` ends an object.
  virtual ~ISharedObject() = default;
  /// Takes a reference in advance, for somebody who has not called `Acquire` yet.
  virtual void AcquireInternal() const = 0;
};

}  // namespace SK_PLUGIN
