#include "Command.h"
#include "JsonWriter.h"
#include "NodeCounts.h"
#include "NodeText.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

void WriteTimeBase(JsonWriter& json, std::optional<TimeBase> const& base) {
  json.Key("timeBase");
  if (!base) {
    json.Null();
    return;
  }
  json.BeginObject();
  json.Key("kind");
  json.String(base->UsesTimecode() ? "timecode" : "utc");
  json.Key("start");
  json.String(base->Start());
  if (base->UsesTimecode()) {
    json.Key("framesPerSecond");
    json.Number(base->FramesPerSecond());
    json.Key("dropFrame");
    json.Boolean(base->DropsFrames());
  } else {
    json.Key("precisionLength");
    json.Unsigned(base->Precision());
    json.Key("isGMT");
    json.Boolean(base->IsGmt());
  }
  json.EndObject();
}

void WriteSyncTimes(JsonWriter& json, std::vector<senmark::VideoSyncTime> const& times) {
  json.Key("videoSyncTimes");
  json.BeginArray();
  for (senmark::VideoSyncTime const& time : times) {
    json.BeginObject();
    json.Key("fileName");
    json.String(time.fileName);
    if (std::string const* const text = std::get_if<std::string>(&time.at)) {
      json.Key("timeString");
      json.String(*text);
    } else {
      json.Key("frameNumber");
      json.Integer(std::get<std::int32_t>(time.at));
    }
    json.EndObject();
  }
  json.EndArray();
}

void PrintSyncTimes(std::ostream& out, std::vector<senmark::VideoSyncTime> const& times) {
  for (senmark::VideoSyncTime const& time : times) {
    out << "video       " << Printable(time.fileName) << " at ";
    if (std::string const* const text = std::get_if<std::string>(&time.at)) {
      out << Printable(*text) << '\n';
    } else {
      out << "frame " << std::get<std::int32_t>(time.at) << '\n';
    }
  }
}

std::string OrNone(std::string const& text) {
  return text.empty() ? "-" : Printable(text);
}

}  // namespace

int RunInfo(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  InputFile const input(manager, request.file, InputFile::eText::kKept);
  senmark::File const& file = input.File();
  senmark::FileInfo const info = file.info();
  std::optional<senmark::Extent> const extent = file.extent();
  std::optional<TimeBase> const base = input.FindTimeBase();
  NodeCounts const counts = CountNodes(file);
  std::vector<senmark::VideoSyncTime> const syncTimes = file.videoSyncTimes();

  if (!request.asJson) {
    out << "file        " << Printable(request.file) << "\nversion     " << OrNone(info.version) << "\ncreator     "
        << OrNone(info.creator) << "\nduration    " << TimeText(info.duration);
    if (extent && extent->end != info.duration) {
      out << ", last sample at " << TimeText(extent->end);
    }
    out << "\ntime base   ";
    if (base) {
      out << base->Description() << ", from " << Printable(base->Start()) << '\n';
    } else {
      out << "-\n";
    }
    out << "nodes       " << counts.groups << " groups, " << counts.statics << " static, " << counts.dynamics
        << " dynamic\nsamples     " << counts.samples << '\n';
    PrintSyncTimes(out, syncTimes);
    return kFine;
  }
  JsonWriter json(out);
  json.BeginObject();
  json.Key("file");
  json.String(request.file);
  json.Key("version");
  json.String(info.version);
  json.Key("creator");
  json.String(info.creator);
  json.Key("duration");
  WriteTime(json, info.duration);
  json.Key("lastSample");
  if (extent) {
    WriteTime(json, extent->end);
  } else {
    json.Null();
  }
  WriteTimeBase(json, base);
  json.Key("groups");
  json.Unsigned(counts.groups);
  json.Key("staticNodes");
  json.Unsigned(counts.statics);
  json.Key("dynamicNodes");
  json.Unsigned(counts.dynamics);
  json.Key("samples");
  json.Unsigned(counts.samples);
  WriteSyncTimes(json, syncTimes);
  json.CloseAll();
  return kFine;
}

}  // namespace senmark_tool
