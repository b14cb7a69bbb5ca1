#include "cli/describe.h"

#include <nlohmann/json.hpp>

#include "cli/Columns.h"
#include "cli/answerJson.h"
#include "cli/text.h"

namespace zelkova::cli {

using nlohmann::ordered_json;

namespace {

std::string inWords(Direction direction) {
  switch (direction) {
    case Direction::In:
      return "in";
    case Direction::Out:
      return "out";
    case Direction::InOut:
      return "in-out";
  }
  return {};
}

std::string typeInWords(const Argument& argument) { return zelkova::inWords(argument.type, argument.shape); }

std::string defaultText(const Argument& argument) {
  std::string text;
  appendJson(text, argument.defaultValue);
  return text;
}

std::string helpText(const Argument& argument) {
  std::string choices;
  for (const std::string& choice : argument.choices)
    choices += (choices.empty() ? ": " : ", ") + inQuotes(choice);
  const std::string spread = argument.spread ? " (by position they may also be passed one by one)" : "";
  return argument.help + choices + spread +
         (argument.optional ? " (optional, default " + defaultText(argument) + ")" : "");
}

std::string bindingText(const Class& subject) {
  return subject.binds ? "Needs a running host at creation; the program brings its own."
                       : "Needs no host at creation.";
}

ordered_json asJson(const Method& method) {
  ordered_json arguments = ordered_json::array();
  for (const Argument& argument : method.arguments) {
    ordered_json entry = {{"name", argument.name},
                          {"direction", inWords(argument.direction)},
                          {"type", typeInWords(argument)},
                          {"help", argument.help}};
    if (argument.optional) entry["default"] = ordered_json::parse(defaultText(argument));
    if (!argument.choices.empty()) entry["choices"] = argument.choices;
    if (!argument.slots.empty()) entry["slots"] = argument.slots;
    arguments.push_back(entry);
  }
  ordered_json json = {{"name", method.name}, {"help", method.help}, {"arguments", arguments}};
  if (method.result != ValueType::None)
    json["result"] = zelkova::inWords(method.result, Shape::VectorOrTable);
  if (!method.notes.empty()) json["notes"] = method.notes;
  return json;
}

ordered_json summaryJson(const Class& subject) {
  return {{"name", subject.name}, {"help", subject.help}, {"binds", subject.binds}};
}

std::string signature(const Method& method) {
  std::string names;
  for (const Argument& argument : method.arguments) names += (names.empty() ? "" : ", ") + argument.name;
  return method.name + "(" + names + ")";
}

/// A text as a cell of a Markdown table.
std::string cell(std::string text) {
  for (std::size_t at = 0; (at = text.find('|', at)) != std::string::npos; at += 2) text.insert(at, "\\");
  return text;
}

std::string markdown(const Method& method) {
  std::string page = "\n## " + method.name + "\n\n" + method.help + ".\n\n    " + signature(method) + "\n";
  if (!method.arguments.empty()) page += "\n| Argument | Direction | Type | Meaning |\n|---|---|---|---|\n";
  for (const Argument& argument : method.arguments) {
    page += "| `" + argument.name + "` | " + inWords(argument.direction) + " | " + typeInWords(argument) +
            " | " + cell(helpText(argument)) + " |\n";
  }
  if (method.result != ValueType::None) {
    page += "\nReturns a " + zelkova::inWords(method.result, Shape::VectorOrTable) + ".\n";
  }
  for (const Argument& argument : method.arguments) {
    if (argument.slots.empty()) continue;
    const bool isTable = argument.shape == Shape::Table;
    page += std::string(isTable ? "\nColumns of `" : "\nSlots of `") + argument.name + "`:\n\n";
    for (std::size_t i = 0; i < argument.slots.size(); ++i) {
      page += std::to_string(i + 1) + ". `" + argument.slots[i] + "`\n";
    }
  }
  for (const std::string& note : method.notes) page += "\n" + note + "\n";
  return page;
}

}  // namespace

std::string listText() {
  Columns columns;
  for (const Class& subject : Catalogue::get().classes()) columns.add({subject.name, subject.help});
  const Class& functions = Catalogue::get().worksheetFunctions();
  columns.add({functions.name, functions.help});
  return columns.text();
}

std::string listJson() {
  ordered_json list = ordered_json::array();
  for (const Class& subject : Catalogue::get().classes()) list.push_back(summaryJson(subject));
  list.push_back(summaryJson(Catalogue::get().worksheetFunctions()));
  return list.dump(2) + "\n";
}

std::string listMarkdown() {
  std::string page =
      "# Reference\n\nOne page a class, made from the catalogue that the program is made from.\n\n| Class | "
      "What it offers | Methods |\n|---|---|---|\n";
  const auto row = [&](const Class& subject) {
    page += "| [" + subject.name + "](" + subject.name + ".md) | " + subject.help + " | " +
            std::to_string(subject.methods.size()) + " |\n";
  };
  for (const Class& subject : Catalogue::get().classes()) row(subject);
  row(Catalogue::get().worksheetFunctions());
  return page;
}

std::string describeText(const Class& subject) {
  std::string text = subject.name + ": " + subject.help + ". " + bindingText(subject) + "\n\n";
  Columns columns;
  for (const Method& method : subject.methods) columns.add({"  " + method.name, method.help});
  return text + columns.text();
}

std::string describeText(const Class& subject, const Method& method) {
  std::string text = subject.name + "." + method.name + ": " + method.help + ".\n";
  Columns columns;
  for (const Argument& argument : method.arguments) {
    columns.add(
        {"  " + argument.name, inWords(argument.direction), typeInWords(argument), helpText(argument)});
  }
  if (!method.arguments.empty()) text += "\n" + columns.text();
  if (method.result != ValueType::None) {
    text += "\nReturns a " + zelkova::inWords(method.result, Shape::VectorOrTable) + ".\n";
  }
  for (const Argument& argument : method.arguments) {
    if (argument.slots.empty()) continue;
    text += "\n" + std::string(argument.shape == Shape::Table ? "Columns of " : "Slots of ") + argument.name +
            ":\n";
    Columns slots;
    for (std::size_t i = 0; i < argument.slots.size(); ++i) {
      slots.add({"  " + std::to_string(i + 1), argument.slots[i]});
    }
    text += slots.text();
  }
  for (const std::string& note : method.notes) text += "\n" + note + "\n";
  return text;
}

std::string describeJson(const Class& subject) {
  ordered_json json = summaryJson(subject);
  json["methods"] = ordered_json::array();
  for (const Method& method : subject.methods) json["methods"].push_back(asJson(method));
  return json.dump(2) + "\n";
}

std::string describeJson(const Class& subject, const Method& method) {
  ordered_json json = {{"class", subject.name}};
  json.update(asJson(method));
  return json.dump(2) + "\n";
}

std::string describeMarkdown(const Class& subject) {
  std::string page = "# " + subject.name + "\n\n" + subject.help + ". " + bindingText(subject) + "\n";
  for (const Method& method : subject.methods) page += markdown(method);
  return page;
}

}  // namespace zelkova::cli
