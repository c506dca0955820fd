// Every sample file damaged in every small way there is: cut at each byte, each
// byte changed, tokens and lines dropped, doubled and swapped. Nothing crashes,
// which is for a sanitizer to say, the model stays whole, and a second run gives
// the same messages and the same model.
//
// With the sanitizers each byte takes each of its 256 values. Without them one change
// in so many is made; the environment variable OBJ_ADAPTER_DAMAGE=all makes all. See
// tests/damage/README.md.
#include "support/importText.h"
#include "support/messageRecorder.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace obj_adapter::test {
namespace {

bool takesAllValues() {
    const char* choice = std::getenv("OBJ_ADAPTER_DAMAGE");
    return choice != nullptr && std::string_view(choice) == "all";
}

// One sample, and the folder of all of them, in which it stands damaged.
class DamagedSamples : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        for (const auto& entry : std::filesystem::directory_iterator(OBJ_ADAPTER_SAMPLES))
            directory.write(entry.path().filename().string(), readFileBytes(entry.path().string()));
        fileName = GetParam();
        original = readFileBytes(directory.getPath() + fileName);
        ASSERT_GT(original.size(), 100U);
        // A library is read by way of the file that names it.
        const bool isLibrary = fileName.ends_with(".mtl");
        importedName = directory.getPath() +
                       (isLibrary ? fileName.substr(0, fileName.size() - 4) + ".obj" : fileName);
    }
    void TearDown() override { ObjConverter::clearInstance(); }

    // All that an import gives: messages, model, and the names of the tree.
    std::string importOnce() const {
        ObjConverter::clearInstance();
        ObjConverter* converter = ObjConverter::getInstance();
        converter->setSkipPolygonsWithoutEar(true);
        converter->setUseGroupNameHierarchy(true);
        converter->setSubdivisionRounds("ITERATIONS", 1);
        MessageRecorder recorder;
        const int code = converter->importObjDataFromFile(importedName.c_str());
        const ModelView model = viewOf(*converter);
        EXPECT_EQ(
            findViolations(model, code == ObjConverter::CONVERTER_OK ? ModelState::SUBDIVIDED
                                                                     : ModelState::ENDED_EARLY),
            "");
        std::string outcome = recorder.getText() + printModel(model);
        appendTree(*converter->getRootOfHierarchy(), outcome);
        return outcome;
    }

    static void appendTree(ObjHierarchyNode& root, std::string& text) {
        std::vector<ObjHierarchyNode*> nodes = {&root};
        while (!nodes.empty()) {
            ObjHierarchyNode* node = nodes.back();
            nodes.pop_back();
            text += node->getName() + "/" + node->getFullName() + "\n";
            for (int child = 0; child < node->getNumberOfChildren(); ++child)
                nodes.push_back(node->getChild(child));
        }
    }

    void importDamaged(const std::string& damaged) {
        // A file that is written over waits for the disk on some systems; a new one,
        // gone before its turn comes, never does.
        std::filesystem::remove(directory.getPath() + fileName);
        directory.write(fileName, damaged);
        const std::string first = importOnce();
        const std::string second = importOnce();
        EXPECT_TRUE(first == second) << "the second run differs";
        if (testing::Test::HasFailure())
            FAIL() << "with this file:\n" << damaged;
        ++imports;
    }

    void importWithByte(std::size_t position, char value) {
        std::string damaged = original;
        damaged[position] = value;
        ASSERT_NO_FATAL_FAILURE(importDamaged(damaged)) << "byte " << position;
    }

    // Each byte with each value from the lowest to the highest; one change in so many.
    void importWithEachValue(std::size_t lowest, std::size_t highest, std::size_t stride) {
        const std::size_t values = highest - lowest + 1;
        const std::size_t changes = original.size() * values;
        for (std::size_t change = 0; change < changes; change += stride) {
            const auto value = static_cast<unsigned char>(lowest + change % values);
            ASSERT_NO_FATAL_FAILURE(importWithByte(change / values, static_cast<char>(value)));
        }
        EXPECT_EQ(static_cast<std::size_t>(imports), (changes + stride - 1) / stride);
    }

    // Drops, doubles and swaps with the next each of the parts.
    void importWithPartsMoved(const std::vector<std::string_view>& parts) {
        const auto join = [](const std::vector<std::string_view>& list) {
            std::string text;
            for (const std::string_view part : list)
                text += part;
            return text;
        };
        for (std::size_t part = 0; part < parts.size(); ++part) {
            const auto place = static_cast<std::ptrdiff_t>(part);
            std::vector<std::string_view> dropped = parts;
            dropped.erase(dropped.begin() + place);
            ASSERT_NO_FATAL_FAILURE(importDamaged(join(dropped)));

            std::vector<std::string_view> doubled = parts;
            doubled.insert(doubled.begin() + place, parts[part]);
            ASSERT_NO_FATAL_FAILURE(importDamaged(join(doubled)));

            std::vector<std::string_view> swapped = parts;
            std::swap(swapped[part], swapped[(part + 1) % parts.size()]);
            ASSERT_NO_FATAL_FAILURE(importDamaged(join(swapped)));
        }
        EXPECT_GT(parts.size(), 1U);
        EXPECT_EQ(static_cast<std::size_t>(imports), 3 * parts.size());
    }

    // The text in parts, each with the bytes behind it up to the next part.
    std::vector<std::string_view> partsOf(std::string_view separators) const {
        std::vector<std::string_view> parts;
        std::string_view rest = original;
        while (!rest.empty()) {
            const std::size_t end = rest.find_first_of(separators);
            const std::size_t next =
                end == std::string_view::npos
                    ? rest.size()
                    : std::min(rest.find_first_not_of(separators, end), rest.size());
            parts.push_back(rest.substr(0, next));
            rest.remove_prefix(next);
        }
        return parts;
    }

    TemporaryDirectory directory;
    std::string fileName;
    std::string importedName;
    std::string original;
    int imports = 0;
};

TEST_P(DamagedSamples, cutAtEachByte) {
    for (std::size_t length = 0; length <= original.size(); ++length)
        ASSERT_NO_FATAL_FAILURE(importDamaged(original.substr(0, length))) << length;
    EXPECT_EQ(static_cast<std::size_t>(imports), original.size() + 1);
}

TEST_P(DamagedSamples, eachByteChangedALittleAndALot) {
    for (std::size_t position = 0; position < original.size(); ++position) {
        const char byte = original[position];
        for (const int value : {byte + 1, byte - 1, 0, 0xFF})
            ASSERT_NO_FATAL_FAILURE(importWithByte(position, static_cast<char>(value)));
    }
    EXPECT_EQ(static_cast<std::size_t>(imports), 4 * original.size());
}

// Coprime to the numbers of values, so that each value comes at many positions. Most is
// to be found where a sanitizer looks on: there all changes are made.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t STRIDE = 1;
#else
constexpr std::size_t STRIDE = 101;
#endif

TEST_P(DamagedSamples, eachByteChangedToEachControlCharacter) {
    importWithEachValue(0, 31, takesAllValues() ? 1 : STRIDE);
}

TEST_P(DamagedSamples, eachByteChangedToEachOtherCharacter) {
    importWithEachValue(32, 127, takesAllValues() ? 1 : STRIDE);
}

TEST_P(DamagedSamples, eachByteChangedToEachByteBeyond) {
    importWithEachValue(128, 255, takesAllValues() ? 1 : STRIDE);
}

TEST_P(DamagedSamples, tokensDroppedDoubledAndSwapped) {
    ASSERT_NO_FATAL_FAILURE(importWithPartsMoved(partsOf(" \t\n")));
}

TEST_P(DamagedSamples, linesDroppedDoubledAndSwapped) {
    ASSERT_NO_FATAL_FAILURE(importWithPartsMoved(partsOf("\n")));
}

INSTANTIATE_TEST_SUITE_P(Files, DamagedSamples,
                         testing::Values("groups.obj", "polygons.obj", "repairs.obj", "repairs.mtl",
                                         "tetrahedron.obj"),
                         [](const testing::TestParamInfo<const char*>& file) {
                             std::string name = file.param;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

// A sample that is added is damaged as well.
TEST(DamagedSamplesThemselves, areAllThereAre) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(OBJ_ADAPTER_SAMPLES))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"groups.obj", "polygons.obj", "repairs.mtl",
                                               "repairs.obj", "tetrahedron.obj"}));
}

}  // namespace
}  // namespace obj_adapter::test
