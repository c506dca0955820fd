// Names to positions: many, long, empty, and made to collide.
#include "material/namePositions.h"

#include "support/randomSource.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace obj_adapter::test {
namespace {

void expectAllFound(const std::vector<std::string>& names) {
    NamePositions positions;
    for (std::size_t i = 0; i < names.size(); ++i) {
        ASSERT_EQ(positions.find(names[i]), NamePositions::NONE) << i;
        positions.add(NamePositions::Key(names[i]), static_cast<int>(i));
        ASSERT_EQ(positions.find(names[i]), static_cast<int>(i));
    }
    for (std::size_t i = 0; i < names.size(); ++i)
        ASSERT_EQ(positions.find(names[i]), static_cast<int>(i)) << i;
    for (std::size_t i = names.size(); i-- > 0;)
        ASSERT_EQ(positions.find(names[i]), static_cast<int>(i)) << i;
    positions.clear();
    for (const std::string& name : names)
        ASSERT_EQ(positions.find(name), NamePositions::NONE);
}

// Beyond 4 GB of names, which slots cannot point at, the map takes the rest; a shorter
// name may still have room.
TEST(NamePositions, areFoundBeyondTheRoomForTexts) {
    const std::vector<std::string> names = {"abc", "defgh", "ijk", "lm", "n", "", "opqrstuvwxyz"};
    for (const std::size_t room : {0U, 1U, 3U, 7U, 10U, 11U, 100U}) {
        SCOPED_TRACE(room);
        NamePositions positions(room);
        for (std::size_t i = 0; i < names.size(); ++i) {
            ASSERT_EQ(positions.find(names[i]), NamePositions::NONE) << i;
            positions.add(NamePositions::Key(names[i]), static_cast<int>(i));
        }
        for (std::size_t i = 0; i < names.size(); ++i)
            EXPECT_EQ(positions.find(names[i]), static_cast<int>(i)) << i;
        positions.clear();
        EXPECT_EQ(positions.find(names[0]), NamePositions::NONE);
        EXPECT_EQ(positions.find(names[2]), NamePositions::NONE);
    }
}

TEST(NamePositions, areFoundByTheWholeName) {
    std::vector<std::string> names = {"", "a", std::string(1, '\0'), std::string(2, '\0'), "A"};
    for (std::size_t length = 2; length < 40; ++length) {
        const std::string name(length, 'x');
        names.push_back(name);
        // One that differs in its last byte, one in its first, one in both halves.
        names.push_back(name.substr(1) + "y");
        names.push_back("y" + name.substr(1));
        names.push_back("z" + name.substr(2) + "z");
    }
    // Bytes of both signs.
    names.push_back("\x80\xFF");
    names.push_back("\xFF\x80");
    expectAllFound(names);
}

TEST(NamePositions, manyAreFound) {
    std::vector<std::string> names;
    for (int i = 0; i < 100000; ++i)
        names.push_back("material_" + std::to_string(i));
    expectAllFound(names);
}

// The name behind the one found last is tried before all others: whatever was found, or
// not found, before.
TEST(NamePositions, areFoundInAnyOrder) {
    constexpr int NAMES = 100;
    constexpr int SEARCHES = 20000;
    std::vector<std::string> names;
    NamePositions positions;
    RandomSource random(20240730);
    int next = 0;
    for (int search = 0; search < SEARCHES; ++search) {
        if (names.size() < NAMES && random.oneIn(20)) {
            // Short ones that begin alike, and one that is empty.
            names.push_back(std::string(names.size() % 5, 'x') +
                            (names.empty() ? "" : std::to_string(names.size())));
            positions.add(NamePositions::Key(names.back()), static_cast<int>(names.size()));
        }
        const int size = static_cast<int>(names.size());
        next = random.oneIn(3) ? random.below(NAMES) : next + 1;
        const bool isThere = next < size;
        const std::string name =
            isThere ? names[static_cast<std::size_t>(next)] : "x" + std::to_string(next) + "x";
        ASSERT_EQ(positions.find(name), isThere ? next + 1 : NamePositions::NONE) << search;
    }
    EXPECT_EQ(names.size(), std::size_t{NAMES});
}

// Names of eight bytes whose hashes are all the same: the steps of the hash
// backwards, from values that differ only in bits that it drops.
std::vector<std::string> collidingNames(std::size_t count) {
    constexpr std::uint64_t FACTOR = 0x9E3779B97F4A7C15U;
    std::uint64_t inverse = FACTOR;  // by Newton's method, modulo 2^64
    for (int step = 0; step < 6; ++step)
        inverse *= 2 - FACTOR * inverse;
    EXPECT_EQ(inverse * FACTOR, 1U);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint64_t hash = std::uint64_t{0x12345678} << 32U | i;
        const std::uint64_t piece = hash * inverse ^ std::rotl(8 * FACTOR, 32);
        std::string name(sizeof piece, '\0');
        std::memcpy(name.data(), &piece, sizeof piece);
        names.push_back(name);
    }
    return names;
}

// Going through all that collide would take minutes.
TEST(NamePositions, namesMadeToCollideAreFound) {
    expectAllFound(collidingNames(300000));
}

// Some that collide among many that do not, so that slots grow with both.
TEST(NamePositions, collidingNamesAreFoundAmongOthers) {
    std::vector<std::string> names;
    for (const std::string& name : collidingNames(2000)) {
        names.push_back(name);
        names.push_back("other_" + std::to_string(names.size()));
        names.push_back(std::to_string(names.size()));
    }
    expectAllFound(names);
}

}  // namespace
}  // namespace obj_adapter::test
