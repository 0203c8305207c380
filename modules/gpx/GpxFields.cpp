#include "GpxFields.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "senmark/module/Failure.h"

namespace senmark_gpx {

namespace {

struct Known {
  std::vector<char const*> elements;  ///< local names in lower case
  Field field;
};

/// Numbers: of the standard first, then of extensions in wide use.
std::vector<Known> const& Numbers() {
  static std::vector<Known> const numbers = {
      {{"speed"}, {"Speed", "m/s"}},
      {{"course"}, {"Course", "deg", false, true}},
      {{"magvar"}, {"Magnetic variation", "deg"}},
      {{"geoidheight"}, {"Geoid height", "m"}},
      {{"sat"}, {"Satellites", "", false, true}},
      {{"hdop"}, {"HDOP", ""}},
      {{"vdop"}, {"VDOP", ""}},
      {{"pdop"}, {"PDOP", ""}},
      {{"ageofdgpsdata"}, {"DGPS age", "s"}},
      {{"dgpsid"}, {"DGPS station", "", false, true}},
      {{"hr", "heartrate"}, {"Heart rate", "bpm"}},
      {{"cad", "cadence"}, {"Cadence", "rpm"}},
      {{"power", "powerinwatts", "watts"}, {"Power", "W"}},
      {{"atemp", "temp", "temperature"}, {"Temperature", "\u00B0C"}},
      {{"wtemp"}, {"Water temperature", "\u00B0C"}},
      {{"depth"}, {"Depth", "m"}},
      {{"bearing"}, {"Bearing", "deg", false, true}},
      {{"distance"}, {"Distance", "m"}},
      {{"hacc"}, {"Horizontal accuracy", "m"}},
      {{"vacc"}, {"Vertical accuracy", "m"}},
  };
  return numbers;
}

std::vector<Known> const& Texts() {
  static std::vector<Known> const texts = {
      {{"name"}, {"Name", "", true, true, true}},        {{"cmt"}, {"Comment", "", true, true, true}},
      {{"desc"}, {"Description", "", true, true, true}}, {{"src"}, {"Source", "", true, true, false}},
      {{"sym"}, {"Symbol", "", true, true, true}},       {{"type"}, {"Type", "", true, true, true}},
      {{"fix"}, {"Fix", "", true, true, false}},
  };
  return texts;
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& character : lower) {
    character = character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
  }
  return lower;
}

void AddKnown(std::vector<Known> const& known, std::vector<Field>& fields,
              std::unordered_map<std::string, std::size_t>& byName) {
  for (Known const& each : known) {
    for (char const* const element : each.elements) {
      byName.emplace(element, fields.size());
    }
    fields.push_back(each.field);
  }
}

}  // namespace

GpxFields::GpxFields() {
  AddKnown(Texts(), mFields, mTexts);
  AddKnown(Numbers(), mFields, mNumbers);
  mKnown = mFields.size();
}

std::size_t GpxFields::ofNumber(std::string_view localName) {
  std::string name(localName);
  auto const found = mNumbers.find(name);
  if (found != mNumbers.end()) {
    return found->second;
  }
  if (mAdded == kMostNames) {
    throw senmark::kit::Failure("points have more than " + std::to_string(kMostNames) + " other elements with numbers");
  }
  ++mAdded;
  // A name of a known field in other letters is kept too, so that it is found at once from now on.
  auto const known = mNumbers.find(LowerCase(name));
  std::size_t field = mFields.size();
  if (known != mNumbers.end() && known->second < mKnown) {
    field = known->second;
  } else {
    mFields.push_back({name, std::string()});
  }
  mNumbers.emplace(std::move(name), field);
  return field;
}

std::size_t GpxFields::ofText(std::string_view localName) const {
  auto const found = mTexts.find(std::string(localName));
  return found == mTexts.end() ? kNone : found->second;
}

bool GpxFields::IsStandardNumber(std::string_view localName) {
  static constexpr std::string_view kNames[] = {"ele",  "speed", "course", "magvar",        "geoidheight", "sat",
                                                "hdop", "vdop",  "pdop",   "ageofdgpsdata", "dgpsid"};
  return std::find(std::begin(kNames), std::end(kNames), localName) != std::end(kNames);
}

}  // namespace senmark_gpx
