// The macro language on arbitrary source: it never crashes or runs for ever; a problem stands inside the
// source; what can be read can be run within its limits; running twice prints the same.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "host/macro/check.h"
#include "host/macro/run.h"
#include "host/macro/syntax.h"

namespace {

using namespace wrenfold::macro;

class EchoHost : public MacroHost {
 public:
  std::variant<Value, Complaint> Call(const std::string& name, std::span<const Value> parameters) override {
    if (name.size() % 7 == 6) return Complaint{"refused"};
    return parameters.empty() ? Value(name) : parameters[0];
  }
  bool HasFunction(std::string_view name) const override { return name.size() % 2 == 0; }
  void Print(std::string_view line) override { printed.append(line.substr(0, 64)).append("\n"); }
  std::string printed;
};

std::string Same(std::string_view utf8) { return std::string(utf8); }

void CheckPlace(const Problem& problem, std::string_view source) {
  const auto lines = static_cast<std::size_t>(
      std::count_if(source.begin(), source.end(), [](char c) { return c == '\n' || c == '\r'; }));
  Demand(problem.place.line >= 1 && problem.place.line <= lines + 1);
  Demand(problem.place.column >= 1 && problem.place.column <= source.size() + 1);
  Demand(!problem.text.empty());
}

std::optional<std::string> CheckHostCall(const std::string& name, std::size_t,
                                         std::span<const std::string_view>) {
  return name.size() % 7 == 5 ? std::optional<std::string>("unknown") : std::nullopt;
}

void CheckNames(const Program& program, std::string_view source) {
  KnownNames known;
  const HostNames host{CheckHostCall, [](std::string_view name) { return name.size() % 2 == 0; }};
  const auto problem = CheckProgram(program, host, known);
  if (problem) CheckPlace(*problem, source);
}

std::string RunOnce(const Program& program, std::string_view source) {
  EchoHost host;
  Interpreter interpreter(host, Limits{2000, 4096});
  const auto problem = interpreter.Run(program);
  if (problem) CheckPlace(*problem, source);
  CheckNames(program, source);
  return host.printed;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  for (const bool bare : {false, true}) {
    const auto parsed = Parse(source, {Same, bare});
    if (const auto* problem = std::get_if<Problem>(&parsed)) {
      CheckPlace(*problem, source);
      continue;
    }
    const Program& program = std::get<Program>(parsed);
    Demand(RunOnce(program, source) == RunOnce(program, source));
  }
  return 0;
}
