// Replays a corpus through a fuzz target without libFuzzer: each file under the given folders or files once,
// and each of its prefixes up to 64 bytes, so that truncated units at the end are always covered.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::size_t g_inputs = 0;

void Run(const std::vector<char>& bytes, std::size_t size) {
  // An exact-size copy lets the sanitizer see reads past the end.
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
  LLVMFuzzerTestOneInput(input.data(), input.size());
  ++g_inputs;
}

void Replay(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  for (std::size_t size = 0; size < bytes.size() && size < 64; ++size) Run(bytes, size);
  Run(bytes, bytes.size());
}

}  // namespace

int main(int argument_count, char** arguments) {
  for (int i = 1; i < argument_count; ++i) {
    const std::filesystem::path path = arguments[i];
    if (std::filesystem::is_directory(path)) {
      for (const auto& entry : std::filesystem::directory_iterator(path)) Replay(entry.path());
    } else {
      Replay(path);
    }
  }
  std::printf("%zu inputs replayed\n", g_inputs);
  return g_inputs > 0 ? 0 : 1;
}
