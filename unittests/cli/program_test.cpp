#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/Session.h"
#include "unittests/cli/runProgram.h"
#include "unittests/templates/spreadsheet.h"

namespace zelkova::cli {
namespace {

using nlohmann::json;

/// The answers of a batch, a line each.
std::vector<json> batch(const std::string& input) {
  const Outcome outcome = run({"batch"}, input);
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  std::vector<json> answers;
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);) answers.push_back(json::parse(line));
  return answers;
}

json answer(const std::string& request) { return batch(request + "\n").at(0); }

/// A file that lives for a test.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& text) {
    static int count = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("zelkova-test-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
    std::ofstream(path_, std::ios::binary) << text;
  }
  ~TemporaryFile() { std::filesystem::remove(path_); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

const char* const oneT =
    R"("call": "yHTest.OneTOutput", "args": {"dy": [4.9, 5.1, 5.3], "TestMean": 5, "CLevel": 0.95, "TestType": "Not equals"})";

// Fault: an answer that is not what the protocol promises. Expected: R, t.test(c(4.9, 5.1, 5.3), mu = 5).
TEST(Batch, AnswersWithEveryDigit) {
  const json reply = answer(std::string(R"({"id": "a1", )") + oneT + "}");
  EXPECT_EQ(reply["id"], "a1");
  const double expected[] = {5,
                             0.95,
                             3,
                             5.1,
                             0.2,
                             0.115470053837925,
                             4.60317245764993,
                             5.59682754235006,
                             0.866025403784437,
                             0.477767032132907};
  ASSERT_EQ(reply["outputs"]["OneTValue"].size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_NEAR(reply["outputs"]["OneTValue"][i].get<double>(), expected[i], 1e-13);
  }
  EXPECT_EQ(reply.size(), 2u) << "neither failure nor messages";

  // The shortest digits that read back the same, whole numbers without a point.
  const Outcome outcome = run({"batch"}, R"({"call": "WorksheetFunction.Max", "args": [[0.1, -2]]})"
                                         "\n");
  EXPECT_EQ(outcome.out, "{\"result\": 0.1, \"outputs\": {}}\n");
  EXPECT_EQ(
      run({"batch"}, R"({"id": null, "call": "WorksheetFunction.Sum", "args": {"values": [[1, 2], [3, 4]]}})")
          .out,
      "{\"id\": null, \"result\": 10, \"outputs\": {}}\n");
}

// Fault: one bad line that ends the batch, loses its id, or shifts the answers of the others.
TEST(Batch, GoesOnAfterABadLine) {
  const std::vector<json> replies =
      batch(std::string("{\n\n[1]\n{\"id\": 7, \"call\": \"yHTest.NoSuch\"}\n{\"id\": 8, ") + oneT + "}");
  ASSERT_EQ(replies.size(), 5u);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_TRUE(replies[i]["error"].is_string()) << i;
  EXPECT_EQ(replies[3]["id"], 7);
  EXPECT_EQ(replies[4]["id"], 8);
  EXPECT_TRUE(replies[4].contains("outputs"));
}

// Faults: points apart from their lines, an output lost between them, a named result torn from its names.
// Expected: by hand; counts of 4 have limits 2 and 6 at one sigma.
TEST(Program, ShowsParallelOutputsSideBySide) {
  const Outcome chart = run({"call", "yControlChart.ControlChartOutput", "ChartType=CChart", "dy=4,4,4",
                             "LimitPos=1", "LCLBound=", "UCLBound=", "EstimateType=", "kvar1=", "kvar2=",
                             "kvar3=", "kvar4=", "kvar5=", "kvar6=", "kvar7=", "kvar8="});
  EXPECT_EQ(chart.out.substr(0, chart.out.find("\n\n")),
            "     DataX  DataY  CCL  LCL  UCL  FailedTest\n"
            "  1      1      4    4    2    6\n"
            "  2      2      4    4    2    6\n"
            "  3      3      4    4    2    6");
  EXPECT_NE(chart.out.find("PhaseX  (not filled)"), std::string::npos);
  EXPECT_EQ(run({"call", "yDStat.DesStatOutput", "dy=1,2,3"}).out.substr(0, 4), "DSO\n");
}

// Fault: a failure without its number, or outputs that are missing or half filled beside it.
TEST(Batch, AnswersAFailureWithNumberAndText) {
  const json reply =
      answer(R"({"id": 1, "call": "yHTest.OneTOutput", "args": [[2, 2, 2], 5, 0.95, "Not equals"]})");
  EXPECT_EQ(reply, json::parse(R"({"id": 1, "failure": {"number": 11, "text": "Division by zero"},
                                   "outputs": {"OneTValue": null}, "messages": []})"));
  // An array left out was never filled, and one that is null neither.
  for (const char* dy : {"", "\"dy\": null, "}) {
    const json never = answer(std::string(R"({"call": "yHTest.OneTOutput", "args": {)") + dy +
                              R"("TestMean": 5, "CLevel": 0.95, "TestType": ""}})");
    EXPECT_EQ(never["failure"]["number"], 9);
  }
}

// Fault: null that is not `NoValue` both ways; a text taken for a number, or a number refused as a text.
TEST(Batch, ConvertsOnlyAsPromised) {
  const json paired =
      answer(R"({"call": "yHTest.PairedTOutput", "args": [[1.5, 2.5], [1, 2], null, 0.95, "Not equals"]})");
  EXPECT_EQ(paired["outputs"]["PTValue"][16], nullptr);  // t, without spread
  EXPECT_EQ(paired["outputs"]["PTValue"][14], nullptr);  // TestMeanD, as it was given
  EXPECT_EQ(paired["outputs"]["Difference"], json({0.5, 0.5}));
  EXPECT_EQ(answer(R"({"call": "WorksheetFunction.Max", "args": [[1, null]]})")["result"], nullptr);

  EXPECT_TRUE(answer(R"({"call": "WorksheetFunction.Pi", "args": null})").contains("result"));

  // Where the elements of an array are arguments of their own.
  EXPECT_EQ(answer(R"({"call": "WorksheetFunction.Min", "args": [3, -1, 2]})")["result"], -1);
  EXPECT_EQ(answer(R"({"call": "WorksheetFunction.Max", "args": [3, 5]})")["result"], 5);
  EXPECT_TRUE(answer(R"({"call": "WorksheetFunction.Max", "args": [3, "5"]})").contains("error"));

  // A number stands for its text, which is no alternative, so nothing is decided.
  const json number = answer(R"({"call": "yHTest.OneTOutput", "args": [[1, 2], 5, 0.95, 1.50]})");
  EXPECT_EQ(number["outputs"]["OneTValue"][9], 0);
}

// Fault: a request that is taken although its reader cannot know what is meant, or an error that does not
// name the culprit. Each is one line, and nothing is printed beside it.
TEST(Call, RefusesWhatItCannotRead) {
  const TemporaryFile csv("x,name,x\n1,a,2\n3,b,\n");
  const TemporaryFile ragged("x,y\n1,2\n3\n");
  const TemporaryFile gap("x\n1\n\n2\n");
  const TemporaryFile widerGap("x,y\n1,2\n\n,\n\n3,4\n\n");
  const TemporaryFile noRows("x,y\n");
  const TemporaryFile numbers("1,2\n3,4\n");
  const TemporaryFile quote("x\n\"1\n2\n");
  const TemporaryFile latin("name\n\xE4\n");
  const TemporaryFile comma("x;y\n1,5;2\n");
  const TemporaryFile tabs("x\ty\n1\t2\n\t\n3\t4\n");
  const TemporaryFile carriageReturns("x\r1\r\r2\r");
  const TemporaryFile lineEnd("x\n\"a\nb\"\n");
  const TemporaryFile bad("{\"call\": \"yHTest.OneTOutput\", ");
  const TemporaryFile bare(R"({"dy": [1, 2], "TestMean": 5})");
  const TemporaryFile other(R"({"call": "yDStat.DesStatOutput"})");
  const struct {
    std::vector<std::string> words;
    const char* culprit;
  } cases[] = {
      {{"yNone.OneTOutput"}, "yNone"},
      {{"yhtest.OneTOutput"}, "did you mean yHTest?"},
      {{"yHTest.BartlettOutput"}, "did you mean BarlettOutput?"},
      {{"yHTest.levenOutptu"}, "has no method \"levenOutptu\"; \"zelkova"},  // three letters off
      {{"yHTest.KrusklWoutput"}, "did you mean KruskalWOutput?"},
      {{"yDstats.DesStatOutput"}, "did you mean yDStat?"},
      {{"yHTest.OneTOutput", "TestMaen=5"}, "did you mean TestMean?"},
      {{"yHTest.OneTOutput", "x=5"}, "no argument \"x\"; it takes"},
      {{"TInv.x"}, "did you mean WorksheetFunction.TInv?"},
      {{"yHTest.OneTOutput", "testmean=5"}, "did you mean TestMean?"},
      {{"yHTest.OneTOutput", "dy=@" + comma.path() + ":x"}, "--separator"},
      {{"yHTest"}, "CLASS.METHOD"},
      {{"yHTest.oneToutput"}, "oneToutput"},
      {{"yHTest.OneTOutput", "OneTValue=5"}, "OneTValue"},
      {{"yHTest.OneTOutput", "dy=1,2", "dy=1,2"}, "dy: is given twice"},
      {{"yHTest.OneTOutput", "dy=1,2", "TestMean=5", "CLevel=0.95"}, "TestType"},
      {{"yHTest.OneTOutput", "TestMean=five"}, "TestMean: \"five\""},
      {{"yHTest.OneTOutput", "dy=1,,2"}, "dy"},
      {{"yHTest.OneTOutput", "dy="}, "dy"},
      {{"yHTest.OneTOutput", "dy=[]"}, "dy"},
      {{"yHTest.OneTOutput", "dy=[1, \"2\"]"}, "dy"},
      {{"yHTest.OneTOutput", "dy=[1, 1e999]"}, "dy"},
      {{"yHTest.OneTOutput", "dy=[[1, 2], [3, 4]]"}, "dy: needs a vector"},
      {{"yHTest.OneTOutput", "dy=[[1, 2], [3]]"}, "dy: row 2"},
      {{"yHTest.OneTOutput", "dy=@no-such-file.csv:x"}, "no-such-file.csv"},
      {{"yHTest.OneTOutput", "dy=@" + csv.path()}, "dy"},
      {{"yHTest.OneTOutput", "dy=@" + csv.path() + ":y"}, "\"y\""},
      {{"yHTest.OneTOutput", "dy=@" + csv.path() + ":x"}, "two columns"},
      {{"yHTest.OneTOutput", "dy=@" + csv.path() + ":name"}, "line 2, column \"name\": \"a\""},
      {{"yHTest.OneTOutput", "dy=@" + csv.path() + ":3"}, "line 3, column \"x\": a blank cell"},
      {{"yHTest.OneTOutput", "dy=@" + csv.path() + ":4"}, "\"4\""},
      {{"yHTest.OneTOutput", "dy=@" + csv.path() + ":3-4"}, "3-4"},
      {{"yHTest.OneTOutput", "dy=@" + csv.path() + ":1-1"}, "dy: needs a vector"},
      {{"yHTest.OneTOutput", "TestMean=@" + csv.path() + ":1"}, "TestMean"},
      {{"yHTest.OneTOutput", "dy=@" + ragged.path() + ":x"}, "line 3"},
      {{"yHTest.OneTOutput", "dy=@" + gap.path() + ":x"}, "line 3 is blank"},
      {{"yHTest.OneTOutput", "dy=@" + widerGap.path() + ":x"}, "line 3 is blank"},
      {{"yHTest.OneTOutput", "dy=@" + noRows.path() + ":x"}, "no rows"},
      {{"yHTest.OneTOutput", "dy=@" + numbers.path() + ":1"}, "line 1"},
      {{"yHTest.OneTOutput", "dy=@" + quote.path() + ":x"}, "line 2"},
      {{"yHTest.OneTOutput", "dy=@" + latin.path() + ":name"}, "line 2 is not UTF-8"},
      {{"yHTest.OneTOutput", "--separator", ";", "dy=@" + comma.path() + ":x"}, "\"1,5\""},
      {{"yHTest.OneTOutput", "no-such-file.json"}, "no-such-file.json"},
      {{"yHTest.OneTOutput", bad.path()}, "is not JSON"},
      {{"yHTest.OneTOutput", bare.path()}, "put arguments under \"args\""},
      {{"yHTest.OneTOutput", other.path()}, "yDStat.DesStatOutput"},
      {{"yHTest.TwoTOutput_S", "EqualVariance=1"}, "EqualVariance"},
      {{"WorksheetFunction.MInverse", "matrix=1,2"}, "matrix: needs a table"},
      {{"yHTest.OneTOutput", "--digits", "0"}, "digits"},
      {{"yHTest.OneTOutput", "--full", "--digits", "3"}, "--full"},
      {{"yHTest.OneTOutput", "--separator", "\"", "dy=@" + comma.path() + ":x"}, "--separator"},
      {{"yHTest.OneTOutput", "dy=@" + tabs.path() + ":x", "--separator", "\t"},
       "line 3, column \"x\": a blank cell"},
      {{"yHTest.OneTOutput", "dy=@" + carriageReturns.path() + ":x"}, "line 3 is blank"},
      {{"yHTest.OneTOutput", "dy=@" + lineEnd.path() + ":x"}, "column \"x\": \"a\\nb\""},
      {{"yHTest.OneTOutput", "TestMean=5\n6"}, "\"5\\n6\""},
      {{"yHTest.OneTOutput", "dy=@/:x"}, "/: cannot be read"},
      {{"yHTest.OneTOutput", "/"}, "/: cannot be read"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> words = {"call"};
    words.insert(words.end(), c.words.begin(), c.words.end());
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.code, 2) << outcome.err;
    EXPECT_EQ(outcome.out, "") << c.culprit;
    EXPECT_NE(outcome.err.find(c.culprit), std::string::npos)
        << c.culprit << " is not named: " << outcome.err;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
  }
}

// Fault: a batch whose decided-nothing answers pass for p-values of 0, warnings that cannot be told apart or
// that stand among the answers.
TEST(Batch, WarnsOfATextThatIsNoChoice) {
  const std::string rest = R"("call": "yHTest.OneTOutput", "args": [[1, 2, 3.5], 2, 0.95, "not equals"]})"
                           "\n";
  const Outcome outcome = run({"batch"}, "{\"id\": \"a1\", " + rest + "{" + oneT + "}\n{" + rest);
  const std::string warning =
      "TestType is \"not equals\", which is none of its choices: \"Less than\" \"Greater than\" \"Not "
      "equals\"\n";
  EXPECT_EQ(outcome.err, "zelkova: warning: id \"a1\": " + warning + "zelkova: warning: line 3: " + warning);
  EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 3);
  EXPECT_EQ(outcome.out.find("warning"), std::string::npos);
}

// Fault: requests that no batch may accept silently.
TEST(Batch, RefusesWhatItCannotRead) {
  for (const char* line :
       {R"({"args": {}})", R"({"call": 5})", R"({"call": "yPath.AppPath", "arg": {}})",
        R"({"call": "yPath.AppPath", "args": 5})", R"({"call": "yPath.AppPath", "args": [1]})",
        R"({"call": "WorksheetFunction.NormSDist", "args": {"z": "1"}})",
        R"({"call": "WorksheetFunction.NormSDist", "args": {"z": true}})",
        R"({"call": "WorksheetFunction.NormSDist", "args": {"z": 1e400}})",
        R"({"call": "WorksheetFunction.NormSDist", "args": {"z": [1]}})",
        R"({"call": "WorksheetFunction.NormSDist", "args": {}})",
        R"({"call": "WorksheetFunction.Sum", "args": {"values": [[], []]}})",
        R"({"call": "WorksheetFunction.Sum", "args": {"values": [1, [2]]}})",
        R"({"call": "WorksheetFunction.NormDist", "args": [1, 2, 3, 0]})",
        R"({"call": "WorksheetFunction.NormSDist", "args": {"z": 1, "z": 2}})",
        R"({"call": "yHTest.OneTOutput", "args": {"TestType": false}})", "\xFF"}) {
    EXPECT_TRUE(answer(line)["error"].is_string()) << line;
  }
}

// Fault: requests that bring the program down, and the rest of the batch with it.
TEST(Batch, SurvivesMonstrousLines) {
  const std::string deep(100'000, '[');
  std::string ragged = "[[0";
  for (int i = 0; i < 60'000; ++i) ragged += ",0";
  ragged += "]";
  for (int i = 0; i < 60'000; ++i) ragged += ",[]";
  const std::vector<json> replies =
      batch("{\"id\": " + deep + std::string(deep.size(), ']') + ", \"call\": \"WorksheetFunction.Pi\"}\n" +
            deep + "\n{\"call\": \"WorksheetFunction.Sum\", \"args\": [" + ragged +
            "]]}\n{\"call\": \"WorksheetFunction.Pi\"}");
  ASSERT_EQ(replies.size(), 4u);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(replies[i]["error"].is_string()) << i;
  EXPECT_TRUE(replies[3].contains("result"));
}

// Fault: a file whose quoting, mark, line ends or blank end change the numbers.
TEST(Call, ReadsColumnsOfAFile) {
  const TemporaryFile csv("\xEF\xBB\xBF\"the, \"\"x\"\"\nin mm\",b,c\r\n 1.5 ,2,3\r\n\"-2e1\",4,5\r\n\r\n\n");
  const auto sum = [&](const std::string& selection) {
    return json::parse(
        run({"call", "WorksheetFunction.Sum", "--json", "values=@" + csv.path() + ":" + selection}).out);
  };
  EXPECT_EQ(sum("the, \"x\"\nin mm")["result"], -18.5);
  EXPECT_EQ(sum("1")["result"], -18.5);
  EXPECT_EQ(sum("2-3")["result"], 14);
  const TemporaryFile plain("7\n8");
  EXPECT_EQ(json::parse(run({"call", "WorksheetFunction.Sum", "--json", "--no-header",
                             "values=@" + plain.path() + ":1"})
                            .out)["result"],
            15);
  const TemporaryFile years("2019,2020\n1,2\n3,4\n");
  EXPECT_EQ(run({"call", "WorksheetFunction.Sum", "--header", "values=@" + years.path() + ":2020"}).out,
            "Sum  6\n");
  const TemporaryFile colons("time:s\n4\n");
  EXPECT_EQ(run({"call", "WorksheetFunction.Sum", "values=@" + colons.path() + ":time:s"}).out, "Sum  4\n");
  // One column serves where a table is asked for: the inverse of a 1 by 1 matrix.
  EXPECT_EQ(run({"call", "WorksheetFunction.MInverse", "matrix=@" + colons.path() + ":1"}).out,
            "MInverse\n        1\n  1  0.25\n");
  for (const char* end : {"\n,\n\n , \n", ",\n\n,\n,,\n", "\n\n\"\",", "\r\n,\r\n"}) {
    const TemporaryFile blankEnd(std::string("x,y\n1,2\n3,4\n") + end);
    EXPECT_EQ(run({"call", "WorksheetFunction.Sum", "values=@" + blankEnd.path() + ":x"}).out, "Sum  4\n")
        << end;
  }
  const TemporaryFile semicolons("x;y\n1.5;2\n");
  EXPECT_EQ(
      run({"call", "WorksheetFunction.Sum", "--separator", ";", "values=@" + semicolons.path() + ":x"}).out,
      "Sum  1.5\n");
}

// Fault: columns that do not stand under each other, digits that were not asked for, `NoValue` shown as a
// number.
TEST(Call, PrintsForAReader) {
  const std::vector<std::string> paired = {
      "call",        "yHTest.PairedTOutput", "dy1=1.5,2.5",        "dy2=1,2",
      "TestMeanD=0", "CLevel=0.95",          "TestType=Not equals"};
  const Outcome outcome = run(paired);
  EXPECT_EQ(outcome.code, 0);
  EXPECT_NE(outcome.out.find("PTValue\n"
                             "   1  N1              2\n"
                             "   2  Mean1           2\n"
                             "   3  SD1             0.707107\n"),
            std::string::npos)
      << outcome.out;
  EXPECT_NE(outcome.out.find("  17  T               -\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("Difference\n  1  0.5\n  2  0.5\n"), std::string::npos) << outcome.out;

  std::vector<std::string> full = paired;
  full.push_back("--full");
  EXPECT_NE(run(full).out.find("0.7071067811865476"), std::string::npos);  // sqrt(1/2), shortest digits
  full.back() = "--digits=3";
  EXPECT_NE(run(full).out.find("0.707\n"), std::string::npos);
}

// Fault: an option text that decides nothing, and nobody notices that the p-value of 0 means nothing.
TEST(Call, WarnsOfATextThatIsNoChoice) {
  const Outcome outcome =
      run({"call", "yHTest.OneTOutput", "dy=1,2,3.5,4", "TestMean=2", "CLevel=0.95", "TestType=not equals"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_NE(outcome.out.find("10  PValue    0\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.err.find("warning: TestType is \"not equals\""), std::string::npos) << outcome.err;
}

// Fault: a method's failure that exits 0 or 2, or prints a part of a result.
TEST(Call, ExitsWithOneWhereTheMethodFails) {
  const std::vector<std::string> words = {"call",       "yHTest.OneTOutput", "dy=2,2",
                                          "TestMean=0", "CLevel=0.95",       "TestType=Less than"};
  const Outcome outcome = run(words);
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "Failure 11: Division by zero\n");
  std::vector<std::string> asJson = words;
  asJson.push_back("--json");
  EXPECT_EQ(run(asJson).code, 1);
  EXPECT_EQ(json::parse(run(asJson).out)["failure"]["number"], 11);
}

// Fault: a request file whose arguments are lost, or overridden by the command line without a word.
TEST(Call, ReadsARequestFromAFileOrStandardInput) {
  const std::string request = std::string("{") + oneT + "}";
  const TemporaryFile file(request);
  const Outcome fromFile = run({"call", "yHTest.OneTOutput", file.path(), "--json"});
  EXPECT_EQ(json::parse(fromFile.out)["outputs"]["OneTValue"][2], 3);
  EXPECT_EQ(run({"call", "yHTest.OneTOutput", "-", "--json"}, request).out, fromFile.out);
  EXPECT_EQ(run({"call", "yHTest.OneTOutput", file.path(), "TestMean=4"}).code, 2);
  const Outcome both = run({"call", "yHTest.OneTOutput", "-", "TestMean=5", "TestType=Not equals", "--json"},
                           R"({"args": {"dy": [4.9, 5.1, 5.3], "CLevel": 0.95}})");
  EXPECT_EQ(both.out, fromFile.out);
}

// Fault: `list` and `describe` in a form that a program cannot read, or with words of a failure in it.
TEST(Describe, SpeaksTextAndJson) {
  EXPECT_NE(run({"list"}).out.find("yHTest"), std::string::npos);
  const json list = json::parse(run({"list", "--json"}).out);
  EXPECT_TRUE(
      std::any_of(list.begin(), list.end(), [](const json& entry) { return entry["name"] == "yDStat"; }));
  const json method = json::parse(run({"describe", "yHTest.TwoTOutput", "--json"}).out);
  EXPECT_EQ(method["arguments"][5]["name"], "EqualVariance");
  EXPECT_EQ(method["arguments"][6]["slots"][12], "DF");
  EXPECT_NE(run({"describe", "yDStat.DesStatOutput"}).out.find("  17  MedianUpper"), std::string::npos);
  EXPECT_EQ(run({"describe", "yNone"}).code, 2);
  EXPECT_NE(run({"no-such-command"}).err.find("no-such-command"), std::string::npos);
  EXPECT_EQ(run({"no-such-command"}).code, 2);
  EXPECT_EQ(run({}).code, 2);
  EXPECT_EQ(run({"--help"}).code, 0);
}

// Fault: a program that works in process but not as a file: exit codes, standard input, its own folder.
TEST(Program, RunsAsAFile) {
  const std::string program = ZELKOVA_PROGRAM;
  const auto exitCode = [&](const std::string& words) {
    return WEXITSTATUS(std::system((program + " " + words + " >/dev/null 2>&1").c_str()));
  };
  EXPECT_EQ(exitCode("list"), 0);
  EXPECT_EQ(exitCode("call yHTest.OneTOutput dy=2,2 TestMean=0 CLevel=0.95 TestType="), 1);
  EXPECT_EQ(exitCode("call yHTest.OneTOutput dy=two"), 2);
  EXPECT_EQ(exitCode("batch <&-"), 2);
  EXPECT_EQ(WEXITSTATUS(std::system((program + " list 2>/dev/null >/dev/full").c_str())), 2);
  const std::string folder = std::filesystem::path(program).parent_path().string();
  EXPECT_EQ(std::system(("test \"$(cd / && PATH=" + folder +
                         ":$PATH zelkova call yPath.AppPath)\" = 'AppPath  " + folder + "'")
                            .c_str()),
            0);
}

// Fault: a form that is not saved, saved after a failure, or saved over another file by a failure.
TEST(Program, DrawsFormsIntoFiles) {
  const TemporaryFolder folder;
  const std::string file = folder / "pugh.xlsx";
  const Outcome drawn = run({"form", "drawPugh", "NC=3", "nr=5", "--out", file});
  EXPECT_EQ(drawn.code, 0);
  EXPECT_EQ(drawn.out, "Saved " + file + "\n");
  const std::string content = contentOf(file);
  EXPECT_TRUE(content.starts_with("PK"));

  EXPECT_EQ(run({"form", "drawPugh", "NC=300", "nr=5", "--out", file}).code, 1);
  EXPECT_EQ(run({"form", "drawPugh", "NC=3", "--out", file}).code, 2);
  EXPECT_EQ(run({"form", "drawPugh", "NC=3", "nr=5"}).code, 2);
  EXPECT_EQ(contentOf(file), content);
  std::filesystem::create_directory(folder / "folder.xlsx");
  for (const std::string& nowhere : {folder / "no/pugh.xlsx", folder / "folder.xlsx"}) {
    const Outcome refused = run({"form", "drawPugh", "NC=3", "nr=5", "--out", nowhere});
    EXPECT_EQ(refused.code, 1) << nowhere;
    EXPECT_NE(refused.err.find("cannot be saved"), std::string::npos) << refused.err;
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / ""), {}), 2);
}

// Fault: requests for one workbook that do not draw on one sheet, or a worksheet asked for among the
// arguments.
TEST(Program, RequestsNameTheirWorkbook) {
  const TemporaryFolder folder;
  const auto request = [&](const std::string& call, const std::string& args, const std::string& file) {
    return R"({"call": "yTemplate.)" + call + R"(", "args": )" + args + R"(, "workbook": ")" + folder / file +
           "\"}\n";
  };
  const Outcome drawn = run({"batch"}, request("drawPairwise", R"({"NP": 2})", "a.xlsx") +
                                           request("AddListVad", R"(["A9", 1, 3])", "a.xlsx") +
                                           request("AddComment", R"(["A1", "again", 90, 40])", "a.xlsx") +
                                           request("AddComment", R"(["A1", "again", 90, 40])", "a.xlsx") +
                                           request("AddComment", R"(["A1", "new sheet", 90, 40])", "b.xlsx"));
  EXPECT_EQ(
      drawn.out,
      "{\"outputs\": {}}\n{\"outputs\": {}}\n{\"outputs\": {}}\n"
      "{\"failure\": {\"number\": 1004, \"text\": \"the cell has a comment already\"}, \"outputs\": {}, "
      "\"messages\": []}\n{\"outputs\": {}}\n");
  const Outcome refused = run({"batch"}, R"({"call": "yTemplate.Superborder", "args": ["A1", 5, true]})"
                                         "\n"
                                         R"({"call": "yTemplate.PassSheet", "workbook": 5})"
                                         "\n");
  EXPECT_EQ(refused.out.find("{\"error\": \"nWS: is a worksheet"), 0U) << refused.out;
  EXPECT_NE(refused.out.find("must name a file"), std::string::npos);
  const Outcome other = run({"call", "WorksheetFunction.NormSDist", "z=1", "--out", folder / "a.xlsx"});
  EXPECT_EQ(other.code, 2);
  EXPECT_NE(other.err.find("draws on no worksheet"), std::string::npos) << other.err;

  // What was not drawn last cannot be touched up: it would be lost.
  const std::string form = contentOf(folder / "a.xlsx");
  const Outcome lost = run({"call", "yTemplate.AddComment", "tcell=A1", "stext=x", "dwidth=90", "dheight=40",
                            "--out", folder / "a.xlsx"});
  EXPECT_EQ(lost.code, 2);
  EXPECT_EQ(contentOf(folder / "a.xlsx"), form);
  EXPECT_EQ(run({"form", "Pugh", "NC=1", "nr=1", "--out", folder / "a.xlsx"}).code, 0);
}

// Fault: a form that a failure cut short, saved with the next drawing.
TEST(Program, FailuresLeaveTheSheetAsItWas) {
  const TemporaryFolder folder;
  Session session;
  const auto draw = [&](const char* method, const std::string& name, const std::string& value) {
    Request request(std::string("yTemplate.") + method);
    for (const Argument& argument : request.method().arguments) {
      if (argument.name == name) request.set(argument, valueFromText(argument, value));
      if (argument.name == "nr" || argument.name == "NC") request.set(argument, std::int16_t{2});
    }
    request.setWorkbook(folder / "form.xlsx");
    return session.runAndSave(request).failure.has_value();
  };
  EXPECT_FALSE(draw("drawPugh", "", ""));
  EXPECT_TRUE(draw("drawCNEM", "", ""));  // at its first comment, since A1 has one
  EXPECT_FALSE(draw("SuperFormat", "selectedcells", "A9"));
  EXPECT_EQ(session.workbook().firstSheet()->cell(1, 1), Variant("CTQ or Criteria"));
  EXPECT_EQ(session.workbook().firstSheet()->format(1, 1).font.size, 8);
}

}  // namespace
}  // namespace zelkova::cli
