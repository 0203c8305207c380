#include "Command.h"

namespace senmark_tool {

namespace {

/// A time of the user's, or `otherwise` when there is none.
senmark::Time TimeOf(InputFile const& input, std::string const& text, senmark::Time const& otherwise) {
  if (text.empty()) {
    return otherwise;
  }
  std::optional<senmark::Time> time = ParseSeconds(text);
  if (!time && LooksLikeTimeText(text)) {
    std::optional<TimeBase> const base = input.FindTimeBase();
    time = base ? base->Parse(text) : std::nullopt;
    if (!time && base) {
      throw UsageError("\"" + text + "\" is no time of this file; its times begin at " + base->Start());
    }
  }
  if (!time) {
    throw UsageError("\"" + text +
                     "\" is no time: give seconds like 1.5, a fraction like 3/2, or a time as the file writes it");
  }
  return *time;
}

}  // namespace

InputFile OpenForRange(senmark::Senmark const& manager, Request const& request) {
  bool const needsText = LooksLikeTimeText(request.from) || LooksLikeTimeText(request.to);
  return InputFile(manager, request.file, needsText ? InputFile::eText::kKept : InputFile::eText::kNotNeeded);
}

senmark::Samples RequestedSet(senmark::File const& file, Request const& request) {
  try {
    return file.samples(request.sampleSet);
  } catch (senmark::Error const& error) {
    if (error.code() != ns_sensor::kUnknownSampleId) {
      throw;
    }
    std::string known;
    file.walk([&](senmark::Node const& node, int) {
      if (node.dynamic && known.size() < 200) {
        known += (known.empty() ? "" : ", ") + node.dynamic->sampleSetId;
      }
    });
    throw UsageError("no sample set \"" + request.sampleSet + "\"" +
                     (known.empty() ? "; the file has none" : "; the file has " + known));
  }
}

std::optional<senmark::Extent> RequestedExtent(InputFile const& input, senmark::Samples const& samples,
                                               Request const& request) {
  senmark::Extent wanted = samples.data().extent.value_or(senmark::Extent());
  wanted.start = TimeOf(input, request.from, wanted.start);
  wanted.end = TimeOf(input, request.to, wanted.end);
  if (wanted.start > wanted.end && !request.from.empty() && !request.to.empty()) {
    throw UsageError("the begin \"" + request.from + "\" is later than the end \"" + request.to + "\"");
  }
  if (!samples.data().extent || wanted.start > wanted.end) {
    return std::nullopt;
  }
  return wanted;
}

senmark::SampleRange RequestedSamples(InputFile const& input, senmark::Samples const& samples, Request const& request) {
  std::optional<senmark::Extent> const extent = RequestedExtent(input, samples, request);
  if (request.from.empty() && request.to.empty()) {
    return samples.all();
  }
  return extent ? samples.within(extent->start, extent->end) : samples.within({1, 1}, {0, 1});
}

}  // namespace senmark_tool
