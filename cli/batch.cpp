#include "cli/batch.h"

#include <istream>
#include <nlohmann/json.hpp>
#include <ostream>

#include "cli/answerJson.h"
#include "cli/text.h"
#include "zelkova/frame/numberText.h"

namespace zelkova::cli {

std::string answerLine(Session& session, const std::string& line, const std::string& place,
                       std::ostream& warnings) {
  std::string id;
  try {
    if (trimmed(line).empty()) throw RequestError("the line is blank");
    const nlohmann::json json = parseJson(line, "the line");
    if (json.is_object() && json.contains("id")) id = "\"id\": " + json["id"].dump() + ", ";
    Request request = Request::fromJson(json);
    request.checkComplete();
    for (const std::string& warning : request.warnings()) {
      warnings << "zelkova: warning: " << (request.id() ? "id " + shortened(*request.id()) : place) << ": "
               << warning << "\n";
    }
    const Answer answer = session.runAndSave(request);
    return answerJson(request, answer);
  } catch (const std::exception& error) {
    // A line that takes more memory than there is must not end the batch either.
    return "{" + id + "\"error\": " + jsonText(error.what()) + "}";
  }
}

void runBatch(Session& session, std::istream& in, std::ostream& out, std::ostream& err) {
  std::size_t number = 0;
  for (std::string line; out && std::getline(in, line);) {
    out << answerLine(session, line, "line " + std::to_string(++number), err) << std::endl;
  }
  if (in.bad()) throw RequestError("standard input cannot be read");
}

}  // namespace zelkova::cli
