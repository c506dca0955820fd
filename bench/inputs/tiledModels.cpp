// Tiling of real files; see the header.
#include "inputs/tiledModels.h"

#include "inputs/textSink.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace obj_adapter::bench {

namespace {

// By this much x coordinates of one repetition lie beside those of the last.
constexpr double TILE_DISTANCE = 64.0;
constexpr int MOST_TILES_ASIDE = 1000;

constexpr std::string_view BLANKS = " \t\r";

std::string readWhole(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Cuts the next token off the text, and the blanks before it.
std::string_view takeToken(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    const std::string_view token = text.substr(0, text.find_first_of(BLANKS));
    text.remove_prefix(token.size());
    return token;
}

// One file, and how many records of each kind it has.
struct Source {
    std::filesystem::path path;
    std::vector<std::string> lines;
    std::int64_t counts[3] = {0, 0, 0};  // v, vt, vn
};

int kindOf(std::string_view keyword) {
    constexpr std::string_view KEYWORDS[] = {"v", "vt", "vn"};
    const auto* found = std::find(std::begin(KEYWORDS), std::end(KEYWORDS), keyword);
    return found == std::end(KEYWORDS) ? -1 : static_cast<int>(found - KEYWORDS);
}

Source readSource(const std::filesystem::path& path) {
    Source source;
    source.path = path;
    std::string text = readWhole(path);
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        std::string line = text.substr(begin, end - begin);
        begin = end + 1;
        // Continued lines are joined, which makes no difference to any reader.
        if (!source.lines.empty() && source.lines.back().ends_with('\\')) {
            source.lines.back().pop_back();
            source.lines.back() += line;
        } else {
            source.lines.push_back(std::move(line));
        }
    }
    for (const std::string& line : source.lines) {
        std::string_view rest = line;
        if (const int kind = kindOf(takeToken(rest)); kind >= 0)
            ++source.counts[kind];
    }
    return source;
}

// Moves x, with as many decimals as it had; other forms of number stay.
void writeMovedVertex(TextSink& obj, std::string_view rest, double distance) {
    const std::string_view x = takeToken(rest);
    double value = 0;
    const std::size_t point = x.find('.');
    const auto [end, failure] = std::from_chars(x.data(), x.data() + x.size(), value);
    if (failure != std::errc() || end != x.data() + x.size() || point == std::string_view::npos ||
        x.find_first_of("eE") != std::string_view::npos)
        obj << "v " << x;
    else
        (obj << "v").writeFixed(value + distance, static_cast<int>(x.size() - point - 1));
    obj << rest << "\n";
}

// A corner with its positive indices moved on.
void writeMovedCorner(TextSink& obj, std::string_view corner, const std::int64_t (&counts)[3]) {
    obj << " ";
    for (const std::int64_t count : counts) {
        const std::size_t slash = std::min(corner.find('/'), corner.size());
        const std::string_view text = corner.substr(0, slash);
        std::int64_t index = 0;
        std::from_chars(text.data(), text.data() + text.size(), index);
        if (index > 0)
            obj << index + count;
        else
            obj << text;
        if (slash == corner.size())
            return;
        obj << "/";
        corner.remove_prefix(slash + 1);
    }
}

void writeMovedFace(TextSink& obj, std::string_view rest, const std::int64_t (&counts)[3]) {
    obj << "f";
    for (std::string_view corner = takeToken(rest); !corner.empty(); corner = takeToken(rest))
        writeMovedCorner(obj, corner, counts);
    obj << "\n";
}

// Strings files together, one after the other.
class Tiling {
public:
    explicit Tiling(const std::string& outputFile) : output(outputFile), obj(outputFile) {}

    void write(const Source& source, double distance) {
        for (const std::string& line : source.lines) {
            std::string_view rest = line;
            const std::string_view keyword = takeToken(rest);
            if (keyword == "v")
                writeMovedVertex(obj, rest, distance);
            else if (keyword == "f")
                writeMovedFace(obj, rest, counts);
            else if (keyword == "mtllib")
                writeLibrary(source, std::string(takeToken(rest)));
            else
                obj << line << "\n";
        }
        for (int kind = 0; kind < 3; ++kind)
            counts[kind] += source.counts[kind];
    }

    std::int64_t getByteCount() const { return obj.getByteCount(); }
    void close() { obj.close(); }

private:
    void writeLibrary(const Source& source, const std::string& name) {
        const std::filesystem::path library = source.path.parent_path() / name;
        if (!std::filesystem::exists(library) || !libraries.insert(library).second)
            return;
        const std::filesystem::path copy =
            output.parent_path() /
            (output.stem().string() + "_" + std::to_string(libraries.size()) + ".mtl");
        std::filesystem::copy_file(library, copy,
                                   std::filesystem::copy_options::overwrite_existing);
        std::filesystem::permissions(copy, std::filesystem::perms::owner_write,
                                     std::filesystem::perm_options::add);
        obj << "mtllib " << copy.filename().string() << "\n";
    }

    std::filesystem::path output;
    TextSink obj;
    std::int64_t counts[3] = {0, 0, 0};
    std::set<std::filesystem::path> libraries;
};

std::vector<Source> readSources(const std::string& folder) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file() && entry.path().extension() == ".obj")
            paths.push_back(entry.path());
    }
    if (paths.empty())
        throw std::runtime_error("no .obj files below " + folder);
    std::sort(paths.begin(), paths.end());
    std::vector<Source> sources;
    for (const std::filesystem::path& path : paths)
        sources.push_back(readSource(path));
    return sources;
}

}  // namespace

void writeTiledModels(const std::string& folder, const std::string& outputFile,
                      std::int64_t bytes) {
    const std::vector<Source> sources = readSources(folder);
    Tiling tiling(outputFile);
    for (int tile = 0; tiling.getByteCount() < bytes; ++tile) {
        for (const Source& source : sources) {
            if (tiling.getByteCount() < bytes)
                tiling.write(source, TILE_DISTANCE * (tile % MOST_TILES_ASIDE));
        }
    }
    tiling.close();
}

}  // namespace obj_adapter::bench
