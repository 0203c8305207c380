#include <string>
#include <vector>

#include "Command.h"
#include "ConverterChoice.h"
#include "ConverterProbe.h"
#include "JsonWriter.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

char const* FormatText(eOwnFormat format) {
  switch (format) {
    case eOwnFormat::kVersion1:
      return "Timed Data JSON, version 1";
    case eOwnFormat::kVersion2:
      return "Timed Data JSON, version 2";
    case eOwnFormat::kNo:
    case eOwnFormat::kUnreadable:
      break;
  }
  return nullptr;
}

char const* TurnText(eTurn turn) {
  switch (turn) {
    case eTurn::kExtension:
      return "by extension";
    case eTurn::kModules:
      return "modules";
    case eTurn::kNative:
      return "the library's own";
  }
  return "";
}

int Status(ConverterChoice const& choice) {
  return choice.IsTaken() ? kFine : kFileAtFault;
}

/// A converter that asks for the extension of the file but does not get it.
struct Loser {
  ServingConverter serving;
  std::string reason;
};

std::vector<Loser> FindLosers(ModuleDiscovery const& modules, std::string const& extension) {
  std::vector<Loser> losers;
  for (FoundFolder const& folder : modules.Folders()) {
    for (FoundModule const& module : folder.modules) {
      for (FoundConverter const& converter : module.converters) {
        for (Claim const& claim : converter.claims) {
          if (claim.extension == extension && !claim.IsServed()) {
            losers.push_back({{&module, &converter}, claim.reason});
          }
        }
      }
    }
  }
  return losers;
}

void PrintChoice(std::ostream& out, ConverterChoice const& choice, std::vector<Loser> const& losers) {
  out << Printable(choice.path) << '\n';
  if (char const* const format = FormatText(choice.format)) {
    out << "  it is " << format << ": no converter is asked\n";
    return;
  }
  if (choice.format == eOwnFormat::kNo) {
    out << "  it is no Timed Data JSON; its extension is "
        << (choice.extension.empty() ? "empty" : Printable(choice.extension)) << '\n';
  }
  for (Loser const& loser : losers) {
    out << "  not asked: " << Printable(ConverterText(loser.serving) + ": " + loser.reason) << '\n';
  }
  for (AskedConverter const& asked : choice.asked) {
    out << "  " << TurnText(asked.turn) << ", " << Printable(asked.extension) << ": " << Printable(ConverterText(asked))
        << ": "
        << (asked.fails   ? "error"
            : asked.takes ? "yes"
                          : "no")
        << ", " << Printable(asked.reason) << '\n';
  }
  if (!choice.IsTaken()) {
    out << "  it is not opened: " << Printable(choice.error) << '\n';
  }
}

/// A text, or null if it is empty.
void WriteOptional(JsonWriter& json, char const* key, std::string const& text) {
  json.Key(key);
  if (text.empty()) {
    json.Null();
  } else {
    json.String(text);
  }
}

void WriteServing(JsonWriter& json, ServingConverter const& serving, std::string const& nativeName) {
  json.Key("converter");
  json.String(serving.converter == nullptr ? nativeName : serving.converter->manifest.uid);
  WriteOptional(json, "module", serving.module == nullptr ? std::string() : serving.module->folder.path);
}

void WriteFile(JsonWriter& json, ConverterChoice const& choice) {
  json.Key("file");
  json.String(choice.path);
  json.Key("extension");
  json.String(choice.extension);
  char const* const format = FormatText(choice.format);
  WriteOptional(json, "format", format == nullptr ? "" : format);
  json.Key("taken");
  json.Boolean(choice.IsTaken());
  WriteOptional(json, "error", choice.error);
}

void WriteAsked(JsonWriter& json, AskedConverter const& asked) {
  json.BeginObject();
  json.Key("turn");
  json.String(TurnText(asked.turn));
  json.Key("extension");
  json.String(asked.extension);
  WriteServing(json, asked.serving, asked.name);
  json.Key("answer");
  json.String(asked.fails ? "error" : asked.takes ? "yes" : "no");
  json.Key("reason");
  json.String(asked.reason);
  json.EndObject();
}

void WriteChoice(std::ostream& out, ConverterChoice const& choice, std::vector<Loser> const& losers) {
  JsonWriter json(out);
  json.BeginObject();
  WriteFile(json, choice);
  json.Key("notAsked");
  json.BeginArray();
  for (Loser const& loser : losers) {
    json.BeginObject();
    WriteServing(json, loser.serving, "");
    json.Key("reason");
    json.String(loser.reason);
    json.EndObject();
  }
  json.EndArray();
  json.Key("asked");
  json.BeginArray(JsonWriter::eLayout::kLines);
  for (AskedConverter const& asked : choice.asked) {
    WriteAsked(json, asked);
  }
  json.CloseAll();
}

/// What one converter says of the file.
struct Explanation {
  AskedConverter asked;
  ProbeAnswer answer;
};

/// Those whose word counts: the converter that takes the file, and before it the one that the extension calls for.
std::vector<Explanation> Explain(ConverterChoice const& choice) {
  std::vector<Explanation> explanations;
  for (AskedConverter const& asked : choice.asked) {
    bool const isFromModule = asked.serving.module != nullptr;
    if (isFromModule && !asked.fails && (asked.takes || asked.turn == eTurn::kExtension)) {
      explanations.push_back({asked, ProbeConverter(asked.serving, choice.path, eProbe::kExplain)});
    }
  }
  return explanations;
}

/// A converter that takes a file by its signature has run no code yet. It must, to convert the file.
void RefuseWhatCannotBeLoaded(ConverterChoice& choice, std::vector<Explanation> const& explanations) {
  for (Explanation const& explanation : explanations) {
    if (explanation.asked.takes && !explanation.answer.loadError.empty()) {
      choice.error =
          ConverterText(explanation.asked) + ": its module cannot be loaded: " + explanation.answer.loadError;
    }
  }
}

void PrintExplanation(std::ostream& out, Explanation const& explanation) {
  AskedConverter const& asked = explanation.asked;
  ProbeAnswer const& answer = explanation.answer;
  if (!asked.takes) {
    out << "The extension is that of " << Printable(ConverterText(asked))
        << ", which does not take it: " << Printable(asked.reason) << '\n';
  }
  for (std::string const& line : answer.lines) {
    out << "  " << Printable(line) << '\n';
  }
  if (!answer.explanationError.empty()) {
    out << "  (its explanation " << Printable(answer.explanationError) << ")\n";
  }
}

void PrintWhy(std::ostream& out, ConverterChoice const& choice, std::vector<Explanation> const& explanations) {
  for (Explanation const& explanation : explanations) {
    if (!explanation.asked.takes) {
      PrintExplanation(out, explanation);
    }
  }
  if (char const* const format = FormatText(choice.format)) {
    out << "It is " << format << " and is read as it stands.\n";
  } else if (!choice.IsTaken()) {
    out << "It is not opened: " << Printable(choice.error) << '\n';
  } else {
    AskedConverter const& taker = *choice.Taker();
    out << "It is converted by " << Printable(ConverterText(taker)) << ": " << Printable(taker.reason)
        << (taker.turn == eTurn::kExtension ? "" : ", and no converter for its extension does") << '\n';
  }
  for (Explanation const& explanation : explanations) {
    if (explanation.asked.takes) {
      PrintExplanation(out, explanation);
    }
  }
}

void WriteWhy(std::ostream& out, ConverterChoice const& choice, std::vector<Explanation> const& explanations) {
  JsonWriter json(out);
  json.BeginObject();
  WriteFile(json, choice);
  json.Key("takenBy");
  if (AskedConverter const* const taker = choice.Taker()) {
    WriteAsked(json, *taker);
  } else {
    json.Null();
  }
  json.Key("explanations");
  json.BeginArray(JsonWriter::eLayout::kLines);
  for (Explanation const& explanation : explanations) {
    json.BeginObject();
    WriteServing(json, explanation.asked.serving, "");
    json.Key("takes");
    json.Boolean(explanation.asked.takes);
    json.Key("lines");
    json.BeginArray();
    for (std::string const& line : explanation.answer.lines) {
      json.String(line);
    }
    json.EndArray();
    WriteOptional(json, "error", explanation.answer.explanationError);
    json.EndObject();
  }
  json.CloseAll();
}

}  // namespace

int RunChoice(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  ConverterChoice const choice = ChooseConverter(manager, *request.modules, request.file);
  std::vector<Loser> const losers = FindLosers(*request.modules, choice.extension);
  if (request.asJson) {
    WriteChoice(out, choice, losers);
  } else {
    PrintChoice(out, choice, losers);
  }
  return Status(choice);
}

int RunWhy(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  ConverterChoice choice = ChooseConverter(manager, *request.modules, request.file);
  std::vector<Explanation> const explanations = Explain(choice);
  RefuseWhatCannotBeLoaded(choice, explanations);
  if (request.asJson) {
    WriteWhy(out, choice, explanations);
  } else {
    PrintWhy(out, choice, explanations);
  }
  return Status(choice);
}

}  // namespace senmark_tool
