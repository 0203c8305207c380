#include "StaticPoints.h"

namespace senmark_gpx {

std::vector<std::string> PositionNames(bool hasElevation) {
  std::vector<std::string> names = {kit::WithUnit("Latitude", "deg"), kit::WithUnit("Longitude", "deg")};
  if (hasElevation) {
    names.push_back(kit::WithUnit("Elevation", "m"));
  }
  return names;
}

std::string NameOf(Point const& point, GpxFields const& fields) {
  std::size_t const name = fields.ofText("name");
  for (auto const& [field, text] : point.texts) {
    if (field == name) {
      return text;
    }
  }
  return {};
}

void StaticPoints::add(kit::Group& group, Point const& point, std::uint64_t number) {
  std::string const name = "Point " + std::to_string(number);
  if (point.timeText.empty() && point.numbers.empty() && point.texts.empty()) {
    AddPosition(group, name, point);
    return;
  }
  mValues.add();
  AddContent(group.group(name), point);
}

void StaticPoints::addWaypoint(kit::Group& group, Point const& point, std::uint64_t number) {
  mValues.add();
  std::string const name = NameOf(point, mFields);
  AddContent(group.group(name.empty() ? "Waypoint " + std::to_string(number) : name), point);
}

void StaticPoints::AddContent(kit::Group& group, Point const& point) {
  AddPosition(group, "Position", point);
  if (!point.timeText.empty()) {
    mValues.add();
    group.text("Time", point.timeText);
  }
  for (auto const& [field, text] : point.texts) {
    mValues.add();
    group.text(mFields[field].name, text);
  }
  for (auto const& [field, number] : point.numbers) {
    mValues.add();
    kit::NumberFormat format;
    format.unit = mFields[field].unit;
    format.decimals = kDecimals;
    group.number(mFields[field].name, number, format);
  }
}

void StaticPoints::AddPosition(kit::Group& group, std::string const& name, Point const& point) {
  mValues.add();
  std::vector<double> numbers = {point.latitude, point.longitude};
  if (point.elevation) {
    numbers.push_back(*point.elevation);
  }
  kit::NumberFormat format;
  format.decimals = kDecimals;
  group.numbers(name, numbers, format, PositionNames(point.elevation.has_value()), true);
}

}  // namespace senmark_gpx
