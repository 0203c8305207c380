/// The host's table of functions, through which every result and every error leaves the library, and
/// the small table that the library gives back.
///
/// Rules of the whole border:
/// - The table is not copied: it must live as long as the library is used. Only the first table of a
///   process counts; one that is given later is ignored.
/// - Every proc is called on the thread that called the library, inside that call. A proc may call
///   other handlers, but not the handler that is calling it, and it must not throw.
/// - Every pointer that a proc gets is borrowed: it is good until the proc returns.
/// - Strings are UTF-8 and end in a NUL that their length does not count.
/// - A failed call has no result of its own: entry `error` is called instead, once, with the client
///   error object of the call, and nothing is sent behind it.
#pragma once

#include <cstdint>

namespace ns_sensor {

/// Receives data paths.
struct SK_PathProcs {
  /// One segment of a path. A list of siblings comes as their common way first (`isLast` 0, once each,
  /// from the root), then one call for each sibling (`isLast` 1).
  ///
  /// matchName  name of the node; index: position among its siblings, -1 for the root.
  /// pathCount  how many siblings the whole list has.
  void (*pathSegment)(void* client, char const* matchName, std::int32_t index, std::uint64_t pathCount,
                      std::uint8_t isLast);
};

/// Receives the properties of a node, when the host asks for them through `SK_HostPropertyAPI`.
struct SK_PropertyProcs {
  /// Digits before and behind the point, a flag for a sign place, and four limits. All ones in the
  /// digits: not set. A minimum above its maximum: not set.
  void (*number)(void* client, std::uint64_t const* digitsInteger, std::uint64_t const* digitsDecimal,
                 bool const* isSigned, double const* occurringMin, double const* occurringMax, double const* legalMin,
                 double const* legalMax);
  /// Bytes of the text in the file, digits of its length, and whether samples mark events.
  void (*string)(void* client, std::uint64_t const* maxLen, std::uint64_t const* maxDigitsInStrLength,
                 bool const* eventMarkerB);
  /// As `number`, with the count of numbers in each value and whether they are one point.
  void (*numberArray)(void* client, std::uint64_t const* digitsInteger, std::uint64_t const* digitsDecimal,
                      bool const* isSigned, std::uint64_t const* arraySize, bool const* isPoint);
  /// Called behind `numberArray`, once for each name; `length` in bytes.
  void (*numberArrayDisplayName)(void* client, char const* name, std::uint64_t length);
  /// Called behind the names, once for each range.
  void (*numberArrayRange)(void* client, double const* occurringMin, double const* occurringMax, double const* legalMin,
                           double const* legalMax);
};

/// The host's table. The order of its entries is part of the interface.
struct SK_ClientProcs {
  SK_PathProcs* path;          ///< entry 0
  SK_PropertyProcs* property;  ///< entry 1

  /// Entry 2. `properties` is a handle for `SK_HostPropertyAPI`, good until the proc returns.
  ///
  /// dataType   an `eDataValueType`.
  /// value      a double (0), bytes of text (1), doubles (2), a bool (3).
  /// valueSize  bytes of a text, count of an array, 0 for the others.
  void (*staticDataInfo)(void* client, char const* displayName, char const* matchName, void* properties,
                         std::uint8_t dataType, void const* value, std::uint64_t valueSize);

  /// Entry 3. The times of the node's first and last sample in seconds as value and scale, both counted from
  /// the file's first sample: what is called a duration is where the node ends. Both 0/1 for a node without
  /// samples. `interpolation` is an `eInterpolationType`.
  void (*dynamicDataInfo)(void* client, char const* displayName, char const* matchName, std::uint8_t dataType,
                          void* properties, char const* sampleSetID, std::uint64_t sampleCount,
                          std::uint8_t interpolation, bool hasExpectedFrequency, std::int32_t startValue,
                          std::uint32_t startScale, std::int32_t durationValue, std::uint32_t durationScale,
                          char const* expectedMaxInterSampleDuration);

  /// Entry 4. `childType` is an `eGroupChildType`.
  void (*groupChildInfo)(void* client, std::uint8_t childType, char const* displayName, char const* matchName);

  /// Entry 5. One sample, in the order of the answer; value and size as in entry 2.
  void (*sample)(void* client, std::int32_t timeValue, std::uint32_t timeScale, void const* value,
                 std::uint64_t valueSize, std::uint8_t valueType);

  /// Entry 6. Duration in seconds as value and scale.
  void (*fileInfo)(void* client, std::int32_t durationValue, std::uint32_t durationScale, char const* version,
                   std::uint64_t versionLength, char const* creator, std::uint64_t creatorLength);

  /// Entry 7. `valueKind` 0: `value` is an int, the frame number, and `valueSize` is 0.
  /// `valueKind` 1: `value` is a time text of `valueSize` bytes.
  void (*videoSyncTime)(void* client, char const* fileName, std::uint8_t kind, void const* value,
                        std::uint64_t valueSize, std::uint8_t valueKind);

  /// Entry 8. A file extension without its point, and what it stands for.
  void (*supportedFormat)(void* client, char const* extension, char const* description);

  /// Entry 9. Called before the first sample of an answer. The host may lower `*count`, to get only
  /// that many; it must not raise it. From a reversed range the lowered count gives the samples from
  /// that position down to the first.
  void (*sampleCount)(void* client, std::uint64_t* count);

  /// Entry 10. A text; `length` in bytes.
  void (*string)(void* client, char const* text, std::uint64_t length);

  /// Entry 11. A failure.
  ///
  /// code    an `eErrorCode`; message: for people, in English.
  /// offset  bytes from the start of the input file, -1 for none; line: line in it, -1 for none.
  void (*error)(void* clientError, std::int32_t code, char const* message, std::int64_t offset, std::int64_t line);
};

/// What the host may call from inside entry 2 or 3, with the properties handle that it got there, to
/// have the properties sent to its `SK_PropertyProcs`. The data type tells which one is right.
struct SK_HostPropertyAPI {
  void (*pushNumber)(void* properties, void* client);       ///< for data type 0
  void (*pushNumberArray)(void* properties, void* client);  ///< for data type 2
  void (*pushString)(void* properties, void* client);       ///< for data type 1
};

}  // namespace ns_sensor
