// Feeds a fuzz target a bounded and repeatable run of damaged inputs where libFuzzer is not at hand:
//   NAME-fuzz [-runs=N] FILE...
// Each FILE is tried as it is, then N inputs made from them. The input under trial is always in
// NAME-fuzz.input, so that it is at hand after a crash or a hang.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace {

constexpr std::size_t longestInput = 8192;

std::mt19937 random(20240229);

std::size_t below(std::size_t limit) {
    return limit == 0 ? 0 : random() % limit;
}

void damage(std::string& input, const std::vector<std::string>& seeds) {
    static constexpr std::string_view tokens[] = {",",   "\n", "\r\n", "\r",   "\"", "#",      "-",
                                                  "1e9", ".",  " ",    "-0.0", "\t", "1e-999", "99999999999"};
    const std::size_t at = below(input.size() + 1);
    const std::size_t length = below(std::min<std::size_t>(input.size() - at, 80) + 1);
    const std::size_t way = below(7);
    if (way == 0) input.insert(at, 1, static_cast<char>(below(256)));
    if (way == 1) input.insert(at, tokens[below(std::size(tokens))]);
    if (way == 2) input.insert(at, input.substr(at, length));
    if (way == 3) input.erase(at, length);
    if (way == 4) input.resize(at);
    if (way == 5 && at < input.size()) input[at] = static_cast<char>(input[at] ^ (1 << below(8)));
    if (way == 6) {
        const std::string& other = seeds[below(seeds.size())];
        input.insert(at, other.substr(below(other.size() + 1), 1 + below(200)));
    }
    if (input.size() > longestInput) input.resize(longestInput);
}

} // namespace

int main(int argumentCount, char** arguments) {
    long runs = 20000;
    std::vector<std::string> seeds = {""};
    for (int i = 1; i < argumentCount; ++i) {
        const std::string argument = arguments[i];
        if (argument.starts_with("-runs=")) {
            runs = std::atol(argument.c_str() + 6);
            continue;
        }
        std::ifstream file(argument, std::ios::binary);
        if (!file) return std::fprintf(stderr, "cannot read %s\n", argument.c_str()), 1;
        seeds.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

    const std::string trialName = std::string(arguments[0]) + ".input";
    std::FILE* const trial = std::fopen(trialName.c_str(), "wb");
    if (trial == nullptr) return std::fprintf(stderr, "cannot write %s\n", trialName.c_str()), 1;
    const auto tryInput = [&](const std::string& input) {
        std::rewind(trial);
        std::fwrite(input.data(), 1, input.size(), trial);
        if (std::fflush(trial) != 0 || ftruncate(fileno(trial), static_cast<off_t>(input.size())) != 0)
            std::abort();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    };
    for (const std::string& seed : seeds) tryInput(seed);
    for (long run = 0; run < runs; ++run) {
        std::string input = seeds[below(seeds.size())];
        for (std::size_t changes = 1 + below(8); changes > 0; --changes) damage(input, seeds);
        tryInput(input);
    }
    std::fclose(trial);
    std::remove(trialName.c_str());
    std::printf("figure: random inputs tried %ld\n", runs + static_cast<long>(seeds.size()));
}
