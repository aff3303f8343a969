#include "tools/kit/report.h"

#include <algorithm>
#include <cstdio>
#include <functional>

namespace kit {
namespace {

constexpr Outcome kOutcomes[] = {Outcome::kPassed, Outcome::kFailed, Outcome::kSkipped, Outcome::kNotRun};

constexpr char kHead[] = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>WFINFO test kit</title><style>
body { font: 15px/1.45 "Segoe UI", "Yu Gothic UI", sans-serif; margin: 2em auto; max-width: 70em; padding: 0 1em; }
table { border-collapse: collapse; width: 100%; margin: 0.5em 0 1.5em; }
td, th { border: 1px solid #ccc; padding: 0.2em 0.6em; text-align: left; vertical-align: top; }
td:first-child { font-family: Consolas, monospace; overflow-wrap: anywhere; }
pre { background: #f4f4f4; padding: 0.6em; overflow: auto; white-space: pre-wrap; }
.passed { background: #e2f4e2; } .failed { background: #fbdcdc; } .skipped { background: #fdf5d6; }
</style></head><body>
<h1>WFINFO test kit</h1>
)";

std::string Escaped(std::string_view text) {
  std::string out;
  for (const char unit : text) {
    switch (unit) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        // What a page may not hold stands as a question mark.
        out += static_cast<unsigned char>(unit) < 0x20 && unit != '\n' && unit != '\t' ? '?' : unit;
    }
  }
  return out;
}

std::string Cell(std::string_view text) { return "<td>" + Escaped(text) + "</td>"; }

std::string Seconds(double seconds) {
  char room[32];
  std::snprintf(room, sizeof room, "%.2f", seconds);
  return room;
}

std::string WineText(const Recorded& wine) {
  if (wine.outcome.empty()) return "not recorded";
  return wine.why.empty() ? wine.outcome : wine.outcome + ": " + wine.why;
}

std::string Row(const Result& result) {
  const std::string name(NameOf(result.verdict.outcome));
  return "<tr>" + Cell(result.name) + "<td class=\"" + name + "\">" + name + "</td>" +
         Cell(result.verdict.reason) + Cell(Seconds(result.seconds)) + Cell(WineText(result.wine)) +
         "</tr>\n";
}

// A table of the results that `take` takes; "" when there are none.
std::string Table(const Report& report, std::string_view title,
                  const std::function<bool(const Result&)>& take) {
  std::string rows;
  int count = 0;
  for (const Result& result : report.results) {
    if (take(result)) rows += Row(result), ++count;
  }
  if (count == 0) return "";
  return "<h2>" + Escaped(title) + " (" + std::to_string(count) +
         ")</h2>\n<table><tr><th>test</th><th>here</th><th>why</th><th>seconds</th><th>Wine</th></tr>\n" +
         rows + "</table>\n";
}

std::string Failures(const Report& report) {
  std::string text;
  for (const Result& result : report.results) {
    if (result.verdict.outcome != Outcome::kFailed) continue;
    text += "<h3>" + Escaped(result.name) + "</h3>\n<p>" + Escaped(result.verdict.reason) + "</p>\n";
    if (!result.verdict.output.empty()) text += "<pre>" + Escaped(result.verdict.output) + "</pre>\n";
  }
  return text.empty() ? "" : "<h2>Output of what failed</h2>\n" + text;
}

std::string Summary(const Report& report) {
  std::string text = "<p>" + Escaped(report.began) + ", " + Seconds(report.seconds) + " seconds. Kit " +
                     Escaped(report.version) + " (" + Escaped(report.commit) + ").</p>\n";
  if (report.stopped) text += "<p><strong>It was stopped with Ctrl+C before its end.</strong></p>\n";
  text += "<table><tr>";
  for (const Outcome outcome : kOutcomes) text += "<th>" + std::string(NameOf(outcome)) + "</th>";
  text += "</tr><tr>";
  for (const Outcome outcome : kOutcomes) text += "<td>" + std::to_string(CountOf(report, outcome)) + "</td>";
  text += "</tr></table>\n<table>\n";
  for (const auto& [what, value] : report.system) text += "<tr>" + Cell(what) + Cell(value) + "</tr>\n";
  text += "<tr>" + Cell("answers of Wine") + Cell(report.recorded_on) + "</tr></table>\n";
  for (const std::string& note : report.notes) text += "<p>" + Escaped(note) + "</p>\n";
  return text;
}

Json JsonOf(const Result& result) {
  Json json = Json::Object();
  json.With("name", result.name)
      .With("outcome", NameOf(result.verdict.outcome))
      .With("seconds", result.seconds);
  if (result.first) json.With("first", true);
  if (!result.verdict.reason.empty()) json.With("reason", result.verdict.reason);
  if (!result.verdict.output.empty()) json.With("output", result.verdict.output);
  if (!result.wine.outcome.empty()) json.With("wine", result.wine.outcome);
  if (!result.wine.why.empty()) json.With("wine_reason", result.wine.why);
  return json;
}

}  // namespace

bool Counts(const Result& result, bool like_wine) {
  return result.verdict.outcome == Outcome::kFailed && !(like_wine && result.wine.outcome == "failed");
}

int CountOf(const Report& report, Outcome outcome) {
  return static_cast<int>(
      std::count_if(report.results.begin(), report.results.end(),
                    [outcome](const Result& result) { return result.verdict.outcome == outcome; }));
}

std::string JsonOf(const Report& report) {
  Json system = Json::Object(), counts = Json::Object(), notes = Json::List(), tests = Json::List();
  for (const auto& [what, value] : report.system) system.With(what, value);
  for (const Outcome outcome : kOutcomes) counts.With(std::string(NameOf(outcome)), CountOf(report, outcome));
  for (const std::string& note : report.notes) notes.items.push_back(note);
  for (const Result& result : report.results) tests.items.push_back(JsonOf(result));
  Json json = Json::Object();
  json.With("kit", report.version).With("commit", report.commit).With("began", report.began);
  json.With("seconds", report.seconds)
      .With("stopped", report.stopped)
      .With("recorded_on", report.recorded_on);
  json.With("system", system).With("counts", counts).With("notes", notes).With("tests", tests);
  return WriteJson(json);
}

std::string HtmlOf(const Report& report) {
  const auto is = [](Outcome outcome) {
    return [outcome](const Result& result) { return result.verdict.outcome == outcome; };
  };
  std::string page = kHead + Summary(report);
  page += Table(report, "What only Windows can judge", [](const Result& result) { return result.first; });
  page += Table(report, "Failed", is(Outcome::kFailed));
  page += Table(report, "Other than under Wine", [](const Result& result) {
    return !result.wine.outcome.empty() && result.verdict.outcome != Outcome::kNotRun &&
           result.wine.outcome != NameOf(result.verdict.outcome);
  });
  page += Failures(report);
  page += Table(report, "Skipped", is(Outcome::kSkipped));
  page += Table(report, "Not run", is(Outcome::kNotRun));
  page += Table(report, "Passed", is(Outcome::kPassed));
  return page + "</body></html>\n";
}

}  // namespace kit
