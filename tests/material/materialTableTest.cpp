// Tests of material/materialTable.cpp.
#include "material/materialTable.h"

#include "material/readMtlText.h"
#include "support/countedMemory.h"
#include "support/randomSource.h"

#include <obj_adapter/geometryRecords.h>

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

namespace obj_adapter::test {
namespace {

// Longer than what a string holds without memory of its own.
const std::string LONG_NAME = "a name that is longer than a string holds by itself";

std::string namesOf(const MaterialTable& table) {
    std::string names;
    for (const Material& material : table.getMaterials())
        names += (names.empty() ? "" : " ") + material.name;
    return names;
}

// How a material gets into the table, if it does: the two must do the same for a new
// name.
using AddMaterial = void (*)(MaterialTable& table, const std::string& name);

void addAnyName(MaterialTable& table, const std::string& name) {
    table.addMaterial(name);
}

void addNewName(MaterialTable& table, const std::string& name) {
    if (!table.addMaterialOfNewName(name))
        table.addMaterial(name);
}

// The slow and obvious search.
int firstNamed(const MaterialTable& table, const std::string& name) {
    for (int i = 0; i < table.getNumberOfMaterials(); ++i) {
        if (table.getMaterials()[static_cast<std::size_t>(i)].name == name)
            return i;
    }
    return NO_INDEX;
}

struct MemoryOutcome {
    bool hasRunOut;  // false: the action needed no more allocations
    bool hasThrown;
};

// Runs the action with one allocation failing, after so many that succeed.
template <typename Action>
MemoryOutcome runOutOfMemory(int allocations, Action action) {
    MemoryOutcome outcome{true, false};
    failAllocationAfter(allocations);
    try {
        action();
    } catch (const std::bad_alloc&) {
        outcome.hasThrown = true;
    }
    outcome.hasRunOut = stopFailingAllocations();
    return outcome;
}

// Once more when an import begins, and not after each of its messages, even if the
// host has asked for a material before.
TEST(MaterialTableTest, NamesAreLookedAtAgainOnceWhenLoansEnd) {
    MaterialTable table;
    table.addMaterial(LONG_NAME);
    Material* lent = table.lendMaterial(0);
    EXPECT_EQ(table.findMaterial(LONG_NAME), 0);
    lent->name = "red";
    table.endLoans();
    EXPECT_EQ(table.findMaterial("red"), 0);
    const std::size_t before = getNumberOfAllocations();
    for (int message = 0; message < 3; ++message) {
        table.hostHasRun();
        EXPECT_EQ(table.findMaterial("red"), 0);
    }
    EXPECT_EQ(getNumberOfAllocations(), before);
}

TEST(MaterialTableTest, CurrentMaterialIsTheLast) {
    MaterialTable table;
    table.addMaterial("a");
    EXPECT_EQ(table.currentMaterial().name, "a");
    table.addMaterial("b");
    EXPECT_EQ(table.currentMaterial().name, "b");
    table.currentMaterial().dissolve = 0.5;
    EXPECT_EQ(describeMaterials(table), "a{} b{d=0.5}");
}

TEST(MaterialTableTest, EmptyTableHasNoCurrentMaterial) {
    MaterialTable table;
    try {
        table.currentMaterial();
        FAIL() << "nothing thrown";
    } catch (const std::runtime_error& failure) {
        EXPECT_STREQ(failure.what(), "No current material");
    }
}

TEST(MaterialTableTest, AddingReturnsThePosition) {
    MaterialTable table;
    EXPECT_EQ(table.getNumberOfMaterials(), 0);
    EXPECT_EQ(table.addMaterial("a"), 0);
    EXPECT_EQ(table.addMaterial("b"), 1);
    EXPECT_EQ(table.addMaterial("a"), 2);
    EXPECT_EQ(namesOf(table), "a b a");
    EXPECT_EQ(table.getNumberOfMaterials(), 3);
}

TEST(MaterialTableTest, AddingANewNameLeavesOthersAlone) {
    MaterialTable table;
    EXPECT_TRUE(table.addMaterialOfNewName("a"));
    EXPECT_TRUE(table.addMaterialOfNewName(LONG_NAME));
    EXPECT_FALSE(table.addMaterialOfNewName("a"));
    EXPECT_FALSE(table.addMaterialOfNewName(LONG_NAME));
    EXPECT_TRUE(table.addMaterialOfNewName(""));
    EXPECT_FALSE(table.addMaterialOfNewName(""));
    EXPECT_EQ(namesOf(table), "a " + LONG_NAME + " ");
    EXPECT_EQ(table.findMaterial(LONG_NAME), 1);
    EXPECT_EQ(table.findMaterial(""), 2);
    table.addMaterial("b");
    EXPECT_FALSE(table.addMaterialOfNewName("b"));
    EXPECT_EQ(describeMaterials(table), "a{} " + LONG_NAME + "{} {} b{}");
}

TEST(MaterialTableTest, SearchFindsTheFirstOfAName) {
    MaterialTable table;
    for (const char* name : {"red", "Red", "blue", "red", ""})
        table.addMaterial(name);
    table.addMaterial(std::string("nul\0x", 5));
    EXPECT_EQ(table.findMaterial("red"), 0);
    EXPECT_EQ(table.findMaterial("Red"), 1);
    EXPECT_EQ(table.findMaterial("blue"), 2);
    EXPECT_EQ(table.findMaterial(""), 4);
    EXPECT_EQ(table.findMaterial(std::string_view("nul\0x", 5)), 5);
    for (const char* name : {"RED", "re", "redd", " red", "blue ", "nul", "green"})
        EXPECT_EQ(table.findMaterial(name), NO_INDEX) << name;
}

TEST(MaterialTableTest, SearchInAnEmptyTableFindsNothing) {
    MaterialTable table;
    EXPECT_EQ(table.findMaterial("red"), NO_INDEX);
    EXPECT_EQ(table.findMaterial(""), NO_INDEX);
}

TEST(MaterialTableTest, LibraryNamesAreKeptOnceInOrder) {
    MaterialTable table;
    for (const char* name : {"b.mtl", "a.mtl", "b.mtl", "B.mtl", "a.mtl", "c.mtl"})
        table.addLibraryName(name);
    EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"b.mtl", "a.mtl", "B.mtl", "c.mtl"}));
}

TEST(MaterialTableTest, ClearingEmptiesBothLists) {
    MaterialTable table;
    table.addLibraryName("a.mtl");
    table.addMaterial("a");
    table.addMaterial("b");
    table.lendMaterial(0)->name = "c";
    table.clear();
    EXPECT_EQ(table.getNumberOfMaterials(), 0);
    EXPECT_TRUE(table.libraryNames.empty());
    for (const char* name : {"a", "b", "c"})
        EXPECT_EQ(table.findMaterial(name), NO_INDEX);
    table.addLibraryName("a.mtl");
    EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"a.mtl"}));
    EXPECT_EQ(table.addMaterial("b"), 0);
    EXPECT_EQ(table.findMaterial("b"), 0);
}

TEST(MaterialTableLoanTest, LentPointerIsTheRecord) {
    MaterialTable table;
    table.addMaterial("a");
    table.addMaterial("b");
    EXPECT_EQ(table.lendMaterial(1), &table.getMaterials()[1]);
}

TEST(MaterialTableLoanTest, RenamedMaterialIsFoundByItsNewName) {
    MaterialTable table;
    for (const char* name : {"a", "b", "a"})
        table.addMaterial(name);
    EXPECT_EQ(table.findMaterial("a"), 0);
    table.lendMaterial(0)->name = "c";
    EXPECT_EQ(table.findMaterial("c"), 0);
    EXPECT_EQ(table.findMaterial("a"), 2);
    table.lendMaterial(2)->name = "b";
    EXPECT_EQ(table.findMaterial("a"), NO_INDEX);
    EXPECT_EQ(table.findMaterial("b"), 1);
}

TEST(MaterialTableLoanTest, PointerMayBeWrittenThroughAfterASearch) {
    MaterialTable table;
    table.addMaterial("a");
    Material* lent = table.lendMaterial(0);
    for (const char* name : {"b", "c", "d"}) {
        EXPECT_EQ(table.findMaterial(name), NO_INDEX);
        lent->name = name;
        table.hostHasRun();
        EXPECT_EQ(table.findMaterial(name), 0);
        EXPECT_EQ(table.findMaterial("a"), NO_INDEX);
    }
}

TEST(MaterialTableLoanTest, WriteBeforeGrowthIsNotMissed) {
    MaterialTable table;
    table.addMaterial("a");
    table.lendMaterial(0)->name = "b";
    table.addMaterial("a");
    EXPECT_EQ(table.findMaterial("a"), 1);
    EXPECT_EQ(table.findMaterial("b"), 0);
}

TEST(MaterialTableLoanTest, WriteBetweenSearchAndGrowthIsNotMissed) {
    for (const AddMaterial add : {&addAnyName, &addNewName}) {
        MaterialTable table;
        table.addMaterial("a");
        Material* lent = table.lendMaterial(0);
        EXPECT_EQ(table.findMaterial("a"), 0);
        lent->name = "b";
        add(table, "c");
        EXPECT_EQ(table.findMaterial("a"), NO_INDEX);
        EXPECT_EQ(table.findMaterial("b"), 0);
        EXPECT_EQ(table.findMaterial("c"), 1);
    }
}

TEST(MaterialTableLoanTest, NewNameIsToldByWhatTheHostHasWritten) {
    MaterialTable table;
    table.addMaterial("a");
    table.lendMaterial(0)->name = "b";
    EXPECT_FALSE(table.addMaterialOfNewName("b"));
    EXPECT_TRUE(table.addMaterialOfNewName("a"));
    EXPECT_EQ(namesOf(table), "b a");
}

// Everything that can happen, in any order, against the slow search.
TEST(MaterialTableLoanTest, SearchesAgreeWithASlowTwin) {
    constexpr int ROUNDS = 300;
    constexpr int STEPS = 60;
    constexpr int NAMES = 5;
    RandomSource random(20240611);
    for (int round = 0; round < ROUNDS; ++round) {
        MaterialTable table;
        Material* lent = nullptr;
        const auto anyName = [&] {
            return std::string(1, static_cast<char>('a' + random.below(NAMES)));
        };
        for (int step = 0; step < STEPS; ++step) {
            const int action = random.below(5);
            if (action == 0) {
                table.addMaterial(anyName());
                lent = nullptr;
            } else if (action == 4) {
                const std::string name = anyName();
                const bool isNew = firstNamed(table, name) == NO_INDEX;
                ASSERT_EQ(table.addMaterialOfNewName(name), isNew)
                    << "round " << round << " step " << step;
                if (isNew)
                    lent = nullptr;
            } else if (action == 1 && table.getNumberOfMaterials() > 0) {
                lent = table.lendMaterial(random.below(table.getNumberOfMaterials()));
            } else if (action == 2 && lent != nullptr) {
                lent->name = anyName();
                table.hostHasRun();
            } else {
                const std::string name = anyName();
                ASSERT_EQ(table.findMaterial(name), firstNamed(table, name))
                    << "round " << round << " step " << step;
            }
        }
    }
}

// Whichever allocation fails, the table is as it was.
void expectFailedGrowthUndone(const std::string& added, AddMaterial add) {
    for (int allocations = 0;; ++allocations) {
        MaterialTable table;
        // As many as fill the room, so that one more needs memory whatever its name.
        for (const std::string& name :
             {std::string("old"), LONG_NAME + " too", std::string("third"), std::string("fourth")})
            table.addMaterial(name);
        const int before = table.findMaterial(added);
        const MemoryOutcome outcome = runOutOfMemory(allocations, [&] { add(table, added); });
        // What the table asks for generously it asks for sparingly once more.
        if (!outcome.hasThrown) {
            EXPECT_EQ(table.getNumberOfMaterials(), 5);
            EXPECT_EQ(table.findMaterial(added), before == NO_INDEX ? 4 : before);
            if (outcome.hasRunOut)
                continue;
            EXPECT_GE(allocations, 1);
            break;
        }
        EXPECT_TRUE(outcome.hasRunOut);
        EXPECT_EQ(table.getNumberOfMaterials(), 4);
        EXPECT_EQ(table.findMaterial(added), before);
        EXPECT_EQ(table.findMaterial("old"), 0);
        EXPECT_EQ(table.findMaterial(LONG_NAME + " too"), 1);
        EXPECT_EQ(table.addMaterial(added), 4);
        EXPECT_EQ(table.findMaterial(added), before == NO_INDEX ? 4 : before);
    }
}

TEST(MaterialTableMemoryTest, FailedGrowthLeavesTheTableAsItWas) {
    for (const std::string& added : {std::string("new"), std::string("old"), LONG_NAME}) {
        SCOPED_TRACE(added);
        expectFailedGrowthUndone(added, &addAnyName);
        expectFailedGrowthUndone(added, &addNewName);
    }
}

TEST(MaterialTableMemoryTest, FailedSearchCanBeRepeated) {
    for (int allocations = 0;; ++allocations) {
        MaterialTable table;
        table.addMaterial("a");
        table.addMaterial("b");
        table.lendMaterial(1)->name = LONG_NAME;
        const MemoryOutcome outcome =
            runOutOfMemory(allocations, [&] { table.findMaterial(LONG_NAME); });
        EXPECT_EQ(outcome.hasThrown, outcome.hasRunOut);
        EXPECT_EQ(table.findMaterial(LONG_NAME), 1);
        EXPECT_EQ(table.findMaterial("a"), 0);
        EXPECT_EQ(table.findMaterial("b"), NO_INDEX);
        if (!outcome.hasRunOut) {
            EXPECT_GE(allocations, 2);
            break;
        }
    }
}

TEST(MaterialTableMemoryTest, FailedLibraryNameIsNotRemembered) {
    for (int allocations = 0;; ++allocations) {
        MaterialTable table;
        table.addLibraryName("a.mtl");
        const MemoryOutcome outcome =
            runOutOfMemory(allocations, [&] { table.addLibraryName(LONG_NAME); });
        EXPECT_EQ(outcome.hasThrown, outcome.hasRunOut);
        if (!outcome.hasRunOut) {
            EXPECT_GE(allocations, 2);
            break;
        }
        EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"a.mtl"}));
        table.addLibraryName(LONG_NAME);
        EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"a.mtl", LONG_NAME}));
    }
}

// A failed allocation costs the statement, or the rest of the library, or has
// the file opened at the second place; what is stored is whole.
TEST(MaterialTableMemoryTest, ReadingSurvivesEveryFailedAllocation) {
    const TemporaryDirectory directory;
    const std::string spectralFile(40, 's');
    const std::string mapFile(40, 'm');
    const std::string path = directory.write(
        "memory.mtl", "newmtl " + std::string(40, 'a') + "\nKd spectral " + spectralFile +
                          "\nmap_Kd " + mapFile + "\nNs x\nmap_Ks -blendu x y\nnewmtl\nnewmtl b\n");
    for (int allocations = 0;; ++allocations) {
        SCOPED_TRACE(allocations);
        MaterialTable table;
        const MemoryOutcome outcome =
            runOutOfMemory(allocations, [&] { readMtlFile("", path, table); });
        ASSERT_LE(table.getNumberOfMaterials(), 1);
        if (table.getNumberOfMaterials() == 1) {
            const Material& material = table.currentMaterial();
            EXPECT_EQ(table.findMaterial(std::string(40, 'a')), 0);
            EXPECT_EQ(material.diffuse.spectralFile, material.hasDiffuse() ? spectralFile : "");
            EXPECT_EQ(material.textureMaps[Material::MAP_KD].textureMap.fileName,
                      material.hasTextureMap(Material::MAP_KD) ? mapFile : "");
        }
        if (!outcome.hasRunOut) {
            EXPECT_FALSE(outcome.hasThrown);
            ASSERT_EQ(table.getNumberOfMaterials(), 1);
            EXPECT_TRUE(table.currentMaterial().hasDiffuse());
            EXPECT_TRUE(table.currentMaterial().hasTextureMap(Material::MAP_KD));
            EXPECT_GE(allocations, 10);
            break;
        }
    }
}

}  // namespace
}  // namespace obj_adapter::test
