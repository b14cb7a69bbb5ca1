#include "cli/answerJson.h"

#include "cli/numbers.h"
#include "cli/text.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova::cli {

namespace {

void append(std::string& out, double x) { out += x == NoValue ? "null" : shortestNumber(x); }
void append(std::string& out, std::int16_t x) { out += std::to_string(x); }
void append(std::string& out, bool x) { out += x ? "true" : "false"; }
void append(std::string& out, const std::string& text) { out += jsonText(text); }
void append(std::string& out, std::monostate) { out += "null"; }
void append(std::string& out, const std::shared_ptr<Sheet>& sheet) {
  out += sheet == nullptr ? "null" : jsonText(sheet->name());
}

void append(std::string& out, const Variant& value) {
  if (value.isNumber()) return append(out, value.toNumber());
  if (value.isText()) return append(out, value.toText());
  if (value.isFlag()) return append(out, value.toFlag());
  out += "null";
}

template <class T>
void appendRow(std::string& out, const Array<T>& table, Index i) {
  for (Index j = 1; j <= table.columns(); ++j) {
    out += j == 1 ? '[' : ',';
    append(out, table(i, j));
  }
  out += ']';
}

template <class T>
void append(std::string& out, const Array<T>& array) {
  if (!array.filled()) {
    out += "null";
    return;
  }
  for (Index i = 1; i <= array.rows(); ++i) {
    out += i == 1 ? '[' : ',';
    if (array.dimensions() == 2) {
      appendRow(out, array, i);
    } else {
      append(out, array(i));
    }
  }
  out += ']';
}

void appendOutputs(std::string& out, const Request& request) {
  out += "\"outputs\": {";
  const char* separator = "";
  for (std::size_t i = 0; i < request.values().size(); ++i) {
    const Argument& argument = request.method().arguments[i];
    if (!argument.isOutput()) continue;
    out += separator + jsonText(argument.name) + ": ";
    appendJson(out, request.values()[i]);
    separator = ", ";
  }
  out += "}";
}

void appendMessages(std::string& out, const std::vector<std::string>& messages) {
  out += ", \"messages\": [";
  for (std::size_t i = 0; i < messages.size(); ++i) out += (i == 0 ? "" : ", ") + jsonText(messages[i]);
  out += "]";
}

}  // namespace

void appendJson(std::string& out, const Value& value) {
  std::visit([&](const auto& held) { append(out, held); }, value);
}

std::string answerJson(const Request& request, const Answer& answer) {
  std::string out = "{";
  if (request.id()) out += "\"id\": " + *request.id() + ", ";
  if (answer.failure) {
    out += "\"failure\": {\"number\": " + std::to_string(answer.failure->number()) +
           ", \"text\": " + jsonText(answer.failure->text()) + "}, ";
    appendOutputs(out, request);
    appendMessages(out, answer.messages);
    return out + "}";
  }
  if (request.method().result != ValueType::None) {
    out += "\"result\": ";
    appendJson(out, answer.result);
    out += ", ";
  }
  appendOutputs(out, request);
  if (!answer.messages.empty()) appendMessages(out, answer.messages);
  return out + "}";
}

}  // namespace zelkova::cli
