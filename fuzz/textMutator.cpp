// Changes texts by their lines and tokens, as well as by bytes: drops, doubles, swaps
// and moves them, and leaves single tokens to the fuzzer, which has the dictionary.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using Parts = std::vector<std::string>;

// Each part with the separators behind it.
Parts partsOf(const std::string& text, const char* separators) {
    Parts parts;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = text.find_first_of(separators, begin);
        const std::size_t next =
            end == std::string::npos
                ? text.size()
                : std::min(text.find_first_not_of(separators, end), text.size());
        parts.push_back(text.substr(begin, next - begin));
        begin = next;
    }
    return parts;
}

class TextMutator {
public:
    explicit TextMutator(unsigned seed) : random(seed) {}

    std::string mutated(const std::string& text) {
        Parts parts = partsOf(text, below(2) == 0 ? "\n" : " \t\n");
        if (parts.empty())
            return "v 1 2 3\n";
        for (std::size_t times = 1 + below(3); times-- > 0 && !parts.empty();)
            change(parts);
        std::string result;
        for (const std::string& part : parts)
            result += part;
        return result;
    }

private:
    std::size_t below(std::size_t bound) { return random() % bound; }

    void change(Parts& parts) {
        enum Change { DROP, DOUBLE, SWAP, COPY, MUTATE, MANY, CHANGES };
        const std::size_t place = below(parts.size());
        const std::size_t other = below(parts.size());
        const auto at = parts.begin() + static_cast<std::ptrdiff_t>(place);
        switch (below(CHANGES)) {
            case DROP:
                parts.erase(at);
                break;
            case DOUBLE:
                parts.insert(at, std::string(parts[place]));
                break;
            case SWAP:
                std::swap(parts[place], parts[other]);
                break;
            case COPY:
                parts[place] = std::string(parts[other]);
                break;
            case MANY: {
                constexpr std::size_t MOST_COPIES = 20;
                parts.insert(at, 1 + below(MOST_COPIES), std::string(parts[place]));
                break;
            }
            default:
                mutateBytes(parts[place]);
        }
    }

    static void mutateBytes(std::string& part) {
        constexpr std::size_t ROOM = 16;
        const std::size_t size = part.size();
        part.resize(size + ROOM);
        part.resize(
            LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(part.data()), size, part.size()));
    }

    std::minstd_rand random;
};

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
    constexpr unsigned BYTES_ALONE = 4;
    if (seed % BYTES_ALONE == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string result = TextMutator(seed).mutated(text);
    const std::size_t length = std::min(result.size(), maxSize);
    std::memcpy(data, result.data(), length);
    return length;
}
