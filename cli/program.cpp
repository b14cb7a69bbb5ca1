#include "cli/program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "cli/Csv.h"
#include "cli/Request.h"
#include "cli/Session.h"
#include "cli/answerJson.h"
#include "cli/batch.h"
#include "cli/describe.h"
#include "cli/show.h"
#include "cli/text.h"
#include "zelkova/frame/numberText.h"

namespace zelkova::cli {

namespace {

constexpr int success = 0;
constexpr int methodFailed = 1;
constexpr int badRequest = 2;

constexpr int readersDigits = 6;

struct Options {
  bool json = false;
  bool markdown = false;
  std::string target;
  std::vector<std::string> words;
  int digits = readersDigits;
  bool full = false;
  std::string separator = ",";
  bool header = false;
  bool noHeader = false;
  std::optional<std::string> seed;
  std::optional<std::string> workbook;
};

/// Where the random draws start, if that was given.
std::optional<std::uint64_t> seedOf(const Options& options) {
  if (!options.seed) return std::nullopt;
  const std::string& text = *options.seed;
  std::uint64_t seed = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seed);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw RequestError("--seed: needs a whole number from 0 to 18446744073709551615");
  }
  return seed;
}

std::string readRequestText(const std::string& path, std::istream& in) {
  if (path == "-") return readAll(in, "standard input");
  if (!std::filesystem::exists(path)) {
    throw RequestError(path + ": there is no such file (an argument of the call is written name=value)");
  }
  return readFile(path);
}

/// Takes over the request that stands in a file, which may leave out what the command line says.
void readRequestFile(Request& request, const std::string& path, std::istream& in) {
  nlohmann::json json = parseJson(readRequestText(path, in), path == "-" ? "the request" : path);
  if (!json.is_object()) throw RequestError(path + ": a request is a JSON object");
  if (!json.contains("call")) json["call"] = request.name();
  if (json["call"] != request.name() && json["call"].is_string()) {
    throw RequestError(path + ": calls " + inQuotes(json["call"].get_ref<const std::string&>()) + ", not " +
                       inQuotes(request.name()));
  }
  request = Request::fromJson(json);
}

CsvStyle csvStyle(const Options& options) {
  CsvStyle style;
  const std::string separator = options.separator == "tab" ? "\t" : options.separator;
  if (separator.size() != 1 || separator.find_first_of("\"\r\n") != std::string::npos) {
    throw RequestError("--separator: needs one character that is neither a quote nor a line end");
  }
  style.separator = separator.front();
  if (options.noHeader) style.firstRow = CsvStyle::FirstRow::Data;
  if (options.header) style.firstRow = CsvStyle::FirstRow::Names;
  return style;
}

Request readCall(const Options& options, std::istream& in) {
  Request request(options.target);
  std::vector<std::string_view> assignments;
  const std::string* file = nullptr;
  for (const std::string& word : options.words) {
    if (word.find('=') != std::string::npos) {
      assignments.push_back(word);
    } else if (file == nullptr) {
      file = &word;
    } else {
      throw RequestError(inQuotes(word) +
                         ": a call reads one request file; an argument is written name=value");
    }
  }
  if (file != nullptr) readRequestFile(request, *file, in);

  CsvFiles files(csvStyle(options));
  for (const std::string_view word : assignments) {
    const std::size_t equals = word.find('=');
    const Argument& argument = request.claim(trimmed(word.substr(0, equals)));
    const std::string_view text = word.substr(equals + 1);
    if (text.starts_with("@@")) {
      request.set(argument, valueFromText(argument, std::string(text.substr(1))));
    } else if (text.starts_with('@')) {
      request.set(argument, files.select(argument, text.substr(1)));
    } else {
      request.set(argument, valueFromText(argument, std::string(text)));
    }
  }
  if (options.workbook) request.setWorkbook(*options.workbook);
  request.checkComplete();
  return request;
}

int call(const Options& options, std::istream& in, std::ostream& out, std::ostream& err) {
  Request request = readCall(options, in);
  for (const std::string& warning : request.warnings()) err << "zelkova: warning: " << warning << "\n";
  Session session(seedOf(options));
  const Answer answer = session.runAndSave(request);
  if (options.json) {
    out << answerJson(request, answer) << "\n";
  } else if (answer.failure) {
    for (const std::string& message : answer.messages) err << "Message: " << message << "\n";
    err << "Failure " << answer.failure->number() << ": " << answer.failure->text() << "\n";
    if (answer.failure->number() == static_cast<int>(FailureNumber::NoObject)) {
      err << "Name the file to draw into: --out FILE.xlsx\n";
    }
  } else {
    out << showAnswer(request, answer, options.full ? allDigits : options.digits);
    if (request.workbook()) out << "Saved " << *request.workbook() << "\n";
  }
  return answer.failure ? methodFailed : success;
}

/// "yTemplate.drawPugh", of which a user may leave out all but the last word.
std::string formMethod(std::string name) {
  const std::string subject = "yTemplate.";
  if (name.starts_with(subject)) name.erase(0, subject.size());
  const Class& forms = findClass("yTemplate");
  if (forms.find(name) == nullptr && forms.find("draw" + name) != nullptr) name.insert(0, "draw");
  return subject + name;
}

void list(const Options& options, std::ostream& out) {
  out << (options.json ? listJson() : options.markdown ? listMarkdown() : listText());
}

void describe(const Options& options, std::ostream& out) {
  if (options.target.find('.') != std::string::npos) {
    if (options.markdown) throw RequestError("--markdown: describes a whole class");
    const Request request(options.target);
    out << (options.json ? describeJson(request.target(), request.method())
                         : describeText(request.target(), request.method()));
    return;
  }
  const Class& subject = findClass(options.target);
  out << (options.json       ? describeJson(subject)
          : options.markdown ? describeMarkdown(subject)
                             : describeText(subject));
}

/// The words that the program understands.
class CommandLine {
 public:
  explicit CommandLine(Options& options) {
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "zelkova " ZELKOVA_VERSION);
    list_ = app_.add_subcommand("list", "Name the classes");
    addForms(*list_, options);
    describe_ = app_.add_subcommand("describe", "Show a class or a method: arguments, results, notes");
    describe_->add_option("CLASS[.METHOD]", options.target)->required();
    addForms(*describe_, options);
    call_ = app_.add_subcommand(
        "call",
        "Call a method and print its results.\n"
        "A value is a number, true or false, a text, a list with commas between, an array in JSON,\n"
        "@file.csv:column for a column by name or number, or @file.csv:3-5 for columns as a table.\n"
        "A text that begins with @ is written with a second one: @@home.");
    addCall(*call_, options);
    form_ = app_.add_subcommand(
        "form",
        "Draw a blank form into a spreadsheet file:\n"
        "drawCNEM NC= nr=, drawPairwise NP=, drawPugh NC= nr= or\n"
        "drawQFD NC= nr= [roomD= roomE= roomF=]; \"zelkova describe yTemplate\" tells more");
    form_->add_option("FORM", options.target)->required();
    form_->add_option("name=value", options.words, "Sizes, and rooms to keep");
    form_->add_option("--out", options.workbook, "The file to write, .xlsx; one of that name is replaced")
        ->required();
    form_->add_flag("--json", options.json, "Print the answer as a line of JSON");
    batch_ = app_.add_subcommand("batch", "Answer requests: JSON lines in, JSON lines out");
    addSeed(*batch_, options);
  }

  /// Reads the words; answers an exit code where there is nothing more to do.
  std::optional<int> parse(const std::vector<std::string>& words, std::ostream& out, std::ostream& err) {
    if (words.empty()) {
      err << app_.help();
      return badRequest;
    }
    if (!words.front().starts_with('-') && !isCommand(words.front())) {
      throw RequestError("there is no subcommand " + inQuotes(words.front()) +
                         "; \"zelkova --help\" names them");
    }
    try {
      app_.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::ParseError& error) {
      // Help and version are exceptions to this library too.
      if (error.get_exit_code() == 0) return app_.exit(error, out, err);
      throw RequestError(error.what());
    }
    return std::nullopt;
  }

  bool isCall() const { return call_->parsed(); }
  bool isForm() const { return form_->parsed(); }
  bool isBatch() const { return batch_->parsed(); }
  bool isDescribe() const { return describe_->parsed(); }

 private:
  static void addForms(CLI::App& command, Options& options) {
    command.add_flag("--json", options.json, "Print JSON");
    command.add_flag("--markdown", options.markdown, "Print a page of the reference")->excludes("--json");
  }

  static void addSeed(CLI::App& command, Options& options) {
    command.add_option("--seed", options.seed,
                       "Start the random draws at this whole number, so that they can be repeated");
  }

  static void addCall(CLI::App& command, Options& options) {
    command.add_option("CLASS.METHOD", options.target)->required();
    command.add_option("name=value|REQUEST.json|-", options.words,
                       "Arguments, and a file with a request in JSON");
    command.add_flag("--json", options.json, "Print the answer as one line of JSON, every digit kept");
    command.add_option("--digits", options.digits, "Significant digits of the numbers printed")
        ->check(CLI::Range(1, 17))
        ->capture_default_str();
    command.add_flag("--full", options.full, "Print every digit that matters")->excludes("--digits");
    command
        .add_option("--separator", options.separator, "What stands between the cells of a CSV file, or tab")
        ->capture_default_str();
    command.add_flag("--header", options.header,
                     "The first row of a CSV file names the columns, even by numbers");
    command.add_flag("--no-header", options.noHeader, "The first row of a CSV file is data")
        ->excludes("--header");
    command.add_option(
        "--out", options.workbook,
        "The file to save the worksheet in that the method draws on; one of that name is replaced");
    addSeed(command, options);
  }

  bool isCommand(const std::string& word) const {
    return word == list_->get_name() || word == describe_->get_name() || word == call_->get_name() ||
           word == form_->get_name() || word == batch_->get_name();
  }

  CLI::App app_{"Statistics for process improvement.", "zelkova"};
  CLI::App* list_;
  CLI::App* describe_;
  CLI::App* call_;
  CLI::App* form_;
  CLI::App* batch_;
};

}  // namespace

int runProgram(const std::vector<std::string>& arguments, std::istream& in, std::ostream& out,
               std::ostream& err) {
  try {
    Options options;
    CommandLine commandLine(options);
    if (const std::optional<int> code = commandLine.parse(arguments, out, err)) return *code;
    if (commandLine.isForm()) options.target = formMethod(options.target);
    if (commandLine.isCall() || commandLine.isForm()) return call(options, in, out, err);
    if (commandLine.isBatch()) {
      Session session(seedOf(options));
      runBatch(session, in, out, err);
    } else if (commandLine.isDescribe()) {
      describe(options, out);
    } else {
      list(options, out);
    }
    return success;
  } catch (const std::exception& error) {
    err << "zelkova: " << error.what() << "\n";
    return badRequest;
  }
}

}  // namespace zelkova::cli
