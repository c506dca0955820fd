// Numbers against the C library in the "C" locale, with the differences that are
// meant: subnormal results are values, and a few hexadecimal ones are left out
// because C libraries have been seen to round them the wrong way.
#include "fuzzing.h"
#include "obj/numberParsing.h"

#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

std::string describe(double value) {
    if (std::isnan(value))
        return std::signbit(value) ? "-nan" : "nan";
    return std::to_string(std::bit_cast<std::uint64_t>(value));
}

template <typename Parse>
std::string resultOf(Parse parse) {
    try {
        return parse();
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

std::string expectedDouble(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const double value = std::strtod(text.c_str(), &end);
    if (end == text.c_str())
        return "invalid stod argument";
    if (errno == ERANGE && (std::isinf(value) || value == 0.0))
        return "stod argument out of range";
    return describe(value);
}

std::string expectedInt(const std::string& text) {
    if (text.empty())
        return "No integer found";
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (end == text.c_str())
        return "invalid stoi argument";
    const bool fits =
        value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
    return errno == ERANGE || !fits ? "stoi argument out of range" : std::to_string(value);
}

bool isTinyHexadecimal(const std::string& text) {
    return text.find_first_of("xX") != std::string::npos &&
           std::abs(std::strtod(text.c_str(), nullptr)) <= std::numeric_limits<double>::min();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace obj_adapter;
    // A token has no zero byte.
    const std::string text =
        std::string(std::string(reinterpret_cast<const char*>(data), size).c_str());
    // Exactly as long as the text, so that reading past it shows.
    const auto copy = std::make_unique<char[]>(text.size());
    text.copy(copy.get(), text.size());
    const Token token{copy.get(), copy.get() + text.size()};

    if (!isTinyHexadecimal(text)) {
        fuzz::requireEqual(resultOf([&] { return describe(parseDouble(token)); }),
                           expectedDouble(text), "parseDouble of " + text);
    }
    fuzz::requireEqual(resultOf([&] { return std::to_string(parseInt(token.view())); }),
                       expectedInt(text), "parseInt of " + text);
    return 0;
}
