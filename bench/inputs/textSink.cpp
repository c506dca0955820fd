// Writing of generated inputs. Used by generate_inputs; its files are checked by
// the hashes in bench/expectedModels.txt.
#include "inputs/textSink.h"

#include <stdexcept>

namespace obj_adapter::bench {

TextSink::TextSink(const std::string& fileName) : file(std::fopen(fileName.c_str(), "wb")) {
    if (file == nullptr)
        throw std::runtime_error("cannot write " + fileName);
    buffer.reserve(2 * BLOCK_SIZE);
}

TextSink::~TextSink() {
    if (file != nullptr)
        std::fclose(file);
}

TextSink& TextSink::writeNumber(double number, std::chars_format format, int decimals) {
    char digits[NUMBER_LENGTH];
    digits[0] = ' ';
    const auto end =
        std::to_chars(digits + 1, digits + NUMBER_LENGTH, number, format, decimals).ptr;
    return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
}

void TextSink::flush() {
    if (std::fwrite(buffer.data(), 1, buffer.size(), file) != buffer.size())
        throw std::runtime_error("cannot write an input file; is the disk full?");
    buffer.clear();
}

void TextSink::close() {
    flush();
    const int code = std::fclose(file);
    file = nullptr;
    if (code != 0)
        throw std::runtime_error("cannot write an input file; is the disk full?");
}

}  // namespace obj_adapter::bench
