#include "ConverterChoice.h"

#include <fstream>
#include <map>
#include <utility>

#include "ConverterProbe.h"

namespace senmark_tool {

namespace {

struct Answer {
  bool takes;
  std::string reason;
  bool fails;
};

Answer CheckSignatures(ManifestConverter const& manifest, std::string const& path) {
  std::ifstream file(path, std::ios::binary);
  std::string all;
  for (FileSignature const& signature : manifest.signatures) {
    std::string const mismatch = signature.Mismatch(file);
    if (!mismatch.empty()) {
      return {false, mismatch, false};
    }
    all += (all.empty() ? "" : " and ") + signature.Text();
  }
  return {true, "it has the signature " + all, false};
}

Answer RunCheckFunction(ServingConverter const& serving, std::string const& path) {
  ProbeAnswer const answer = ProbeConverter(serving, path, eProbe::kCheck);
  if (!answer.loadError.empty()) {
    return {false, "its module cannot be loaded: " + answer.loadError, true};
  }
  if (!answer.checkError.empty()) {
    return {false, "its check function " + answer.checkError, true};
  }
  return {answer.takes, answer.takes ? "its check function says yes" : "its check function says no", false};
}

/// Goes through the questions of the library in their order.
class Questions {
 public:
  Questions(ModuleDiscovery const& modules, ConverterChoice& choice) : mModules(modules), mChoice(choice) {}

  void Ask() {
    if (!AskByExtension() && !AskModules() && !AskNatives()) {
      mChoice.error = "no converter takes it";
    }
    if (!mChoice.asked.empty() && mChoice.asked.back().fails) {
      AskedConverter const& last = mChoice.asked.back();
      mChoice.error = ConverterText(last) + ": " + last.reason;
    }
  }

 private:
  // Each gives whether the search is over.

  bool AskByExtension() {
    auto const serving = mModules.Serving().find(mChoice.extension);
    if (serving != mModules.Serving().end()) {
      return AskModule(eTurn::kExtension, serving->first, serving->second);
    }
    for (NativeConverter const& native : kNativeConverters) {
      if (native.extension == mChoice.extension) {
        return AskNative(eTurn::kExtension, native);
      }
    }
    return false;
  }

  bool AskModules() {
    for (auto const& [extension, serving] : mModules.Serving()) {
      if (AskModule(eTurn::kModules, extension, serving)) {
        return true;
      }
    }
    return false;
  }

  bool AskNatives() {
    for (NativeConverter const& native : kNativeConverters) {
      if (AskNative(eTurn::kNative, native)) {
        return true;
      }
    }
    return false;
  }

  bool AskModule(eTurn turn, std::string const& extension, ServingConverter const& serving) {
    auto known = mAnswers.find(serving.converter);
    if (known == mAnswers.end()) {
      ManifestConverter const& manifest = serving.converter->manifest;
      Answer answer = manifest.signatures.empty() ? RunCheckFunction(serving, mChoice.path)
                                                  : CheckSignatures(manifest, mChoice.path);
      known = mAnswers.emplace(serving.converter, std::move(answer)).first;
    }
    Answer const& answer = known->second;
    mChoice.asked.push_back(
        {turn, extension, serving, serving.converter->manifest.name, answer.takes, answer.reason, answer.fails});
    return answer.takes || answer.fails;
  }

  bool AskNative(eTurn turn, NativeConverter const& native) {
    Verdict const verdict = native.check(mChoice.path);
    mChoice.asked.push_back({turn, native.extension, {}, native.name, verdict.takes, verdict.reason, false});
    return verdict.takes;
  }

  ModuleDiscovery const& mModules;
  ConverterChoice& mChoice;
  std::map<FoundConverter const*, Answer> mAnswers;  ///< a converter is asked once for each of its extensions
};

/// What the library says to a file that it does not even look into.
std::string OpeningError(senmark::Senmark const& manager, std::string const& path) {
  try {
    manager.open(path);
  } catch (senmark::Error const& error) {
    return error.message() + " (code " + std::to_string(error.code()) + ')';
  }
  return "it changes while it is looked at";
}

}  // namespace

AskedConverter const* ConverterChoice::Taker() const {
  return !asked.empty() && asked.back().takes ? &asked.back() : nullptr;
}

ConverterChoice ChooseConverter(senmark::Senmark const& manager, ModuleDiscovery const& modules,
                                std::string const& file) {
  ConverterChoice choice;
  choice.path = senmark::detail::AbsolutePath(file);
  choice.extension = FileExtension(choice.path);
  choice.format = OwnFormat(choice.path, choice.extension);
  if (choice.format == eOwnFormat::kUnreadable) {
    choice.error = OpeningError(manager, file);
  } else if (choice.format == eOwnFormat::kNo) {
    Questions(modules, choice).Ask();
  }
  return choice;
}

std::string ConverterText(ServingConverter const& serving) {
  ManifestConverter const& manifest = serving.converter->manifest;
  std::string const name = manifest.name.empty() ? "" : '"' + manifest.name + "\" (" + manifest.uid + ')';
  return (name.empty() ? manifest.uid : name) + " of " + serving.module->folder.name;
}

std::string ConverterText(AskedConverter const& asked) {
  return asked.serving.module == nullptr ? "the library's own converter for " + asked.name
                                         : ConverterText(asked.serving);
}

}  // namespace senmark_tool
