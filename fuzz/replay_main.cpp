// Runs a fuzz target without libFuzzer.
//
//   TARGET FILE|FOLDER...
//       each input once, and each of its prefixes up to 64 bytes, so that truncated units at the end are
//       always covered
//   TARGET -search=SECONDS -seed=N FILE|FOLDER...
//       then changes of them, made blindly: for targets that libFuzzer cannot run. The input that ends the
//       process lies in the file "last-input".
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "tests/monkey/dice.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kLongestInput = 4096;
constexpr std::string_view kPieces[] = {
    "\"",   "\"\"", ",",        "\r",           "\n",   "\r\n",         " ",
    "\x81", "\x1A", "\x93\xFA", "\xEF\xBB\xBF", "\xFF", "\xE6\x97\xA5", "\xFE"};

unsigned long long g_inputs = 0;

void Run(const Bytes& bytes, std::size_t size) {
  // An exact-size copy lets the sanitizer see reads past the end.
  const Bytes input(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
  LLVMFuzzerTestOneInput(input.data(), input.size());
  ++g_inputs;
}

void Replay(const std::filesystem::path& file, std::vector<Bytes>& corpus) {
  std::ifstream stream(file, std::ios::binary);
  const Bytes bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  for (std::size_t size = 0; size < bytes.size() && size < 64; ++size) Run(bytes, size);
  Run(bytes, bytes.size());
  corpus.push_back(bytes);
}

// One change of `bytes` at `at`, with the help of another input.
void Change(Bytes& bytes, std::size_t at, const Bytes& other, monkey::Dice& dice) {
  const auto where = bytes.begin() + static_cast<std::ptrdiff_t>(at);
  const std::size_t rest = bytes.size() - at;
  const std::string_view piece = dice.Of(kPieces);
  switch (dice.Below(6)) {
    case 0:
      if (rest > 0) *where = static_cast<std::uint8_t>(dice.Next());
      break;
    case 1:
      bytes.insert(where, piece.begin(), piece.end());
      break;
    case 2:
      bytes.erase(where, where + static_cast<std::ptrdiff_t>(dice.Below(rest + 1)));
      break;
    case 3:
      bytes.insert(where, static_cast<std::uint8_t>(dice.Next()));
      break;
    case 4:
      bytes.insert(where, other.begin(),
                   other.begin() + static_cast<std::ptrdiff_t>(dice.Below(other.size() + 1)));
      break;
    default:
      if (rest > 0) *where = static_cast<std::uint8_t>(*where ^ 1U << dice.Below(8));
  }
}

Bytes g_at_hand;

// The process ends: what it was at is kept.
void Keep(int signal) {
  std::ofstream stream("last-input", std::ios::binary | std::ios::trunc);
  stream.write(reinterpret_cast<const char*>(g_at_hand.data()),
               static_cast<std::streamsize>(g_at_hand.size()));
  stream.close();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void Search(const std::vector<Bytes>& corpus, double seconds, std::uint64_t seed) {
  for (const int signal : {SIGABRT, SIGSEGV, SIGFPE, SIGILL}) std::signal(signal, &Keep);
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  for (std::uint64_t number = 0; !corpus.empty() && std::chrono::steady_clock::now() < end; ++number) {
    monkey::Dice dice(seed, number);
    Bytes& bytes = g_at_hand;
    bytes = corpus[dice.Below(corpus.size())];
    for (auto changes = 1 + dice.Below(8); changes > 0; --changes)
      Change(bytes, dice.Below(bytes.size() + 1), corpus[dice.Below(corpus.size())], dice);
    if (bytes.size() > kLongestInput) bytes.resize(kLongestInput);
    Run(bytes, bytes.size());
  }
}

}  // namespace

int main(int argument_count, char** arguments) {
  std::vector<Bytes> corpus;
  double seconds = 0;
  std::uint64_t seed = 1;
  for (int i = 1; i < argument_count; ++i) {
    const std::string_view word = arguments[i];
    const std::filesystem::path path = arguments[i];
    if (word.starts_with("-search=")) {
      seconds = std::atof(arguments[i] + 8);
    } else if (word.starts_with("-seed=")) {
      seed = std::strtoull(arguments[i] + 6, nullptr, 10);
    } else if (std::filesystem::is_directory(path)) {
      for (const auto& entry : std::filesystem::directory_iterator(path)) Replay(entry.path(), corpus);
    } else {
      Replay(path, corpus);
    }
  }
  std::printf("%llu inputs replayed\n", g_inputs);
  const unsigned long long replayed = g_inputs;
  if (seconds > 0) {
    Search(corpus, seconds, seed);
    std::printf("%llu inputs searched, seed %llu\n", g_inputs - replayed,
                static_cast<unsigned long long>(seed));
  }
  return g_inputs > 0 ? 0 : 1;
}
