#include "Options.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>

#include "senmark/module/Failure.h"
#include "senmark/module/Input.h"

namespace senmark_motion {
namespace {

namespace kit = senmark::kit;

constexpr std::size_t kLargestFile = 65536;

class OptionsReader {
 public:
  explicit OptionsReader(std::string const& path) : mPath(path) {}

  Options Read() {
    kit::Input const input(mPath, "json", std::string());
    std::string const text = input.head(kLargestFile + 1);
    if (text.size() > kLargestFile) {
      throw Failure("is larger than " + std::to_string(kLargestFile) + " bytes");
    }
    rapidjson::Document document;
    // Without recursion, however deep the text is.
    document.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
    if (document.HasParseError()) {
      throw Failure("is no JSON: " + std::string(rapidjson::GetParseError_En(document.GetParseError())) + " at byte " +
                    std::to_string(document.GetErrorOffset()));
    }
    if (!document.IsObject()) {
      throw Failure("holds no object");
    }
    for (auto const& member : document.GetObject()) {
      Take(std::string(member.name.GetString(), member.name.GetStringLength()), member.value);
    }
    return mOptions;
  }

 private:
  void Take(std::string const& key, rapidjson::Value const& value) {
    if (!mKeys.insert(key).second) {
      throw Failure("has the key \"" + key + "\" twice");
    }
    if (key == "worldPositions") {
      if (!value.IsBool()) {
        throw Failure("wants true or false for \"" + key + '"');
      }
      mOptions.worldPositions = value.GetBool();
    } else if (key == "rootPositions") {
      mOptions.rootPositions = PositionsOf(key, value);
    } else if (key == "jointPositions") {
      mOptions.jointPositions = PositionsOf(key, value);
    } else {
      throw Failure("has the unknown key \"" + key + '"');
    }
  }

  ePositions PositionsOf(std::string const& key, rapidjson::Value const& value) const {
    std::string_view const text =
        value.IsString() ? std::string_view(value.GetString(), value.GetStringLength()) : std::string_view();
    if (text != "replace" && text != "add") {
      throw Failure(R"(wants "replace" or "add" for ")" + key + '"');
    }
    return text == "add" ? ePositions::kAdd : ePositions::kReplace;
  }

  kit::Failure Failure(std::string const& what) const { return kit::Failure(mPath + ' ' + what); }

  std::string mPath;
  Options mOptions;
  std::set<std::string> mKeys;
};

}  // namespace

Options ReadOptions(std::string const& path) {
  std::error_code error;
  bool const isThere = std::filesystem::exists(path, error);
  return isThere || error ? OptionsReader(path).Read() : Options();
}

}  // namespace senmark_motion
