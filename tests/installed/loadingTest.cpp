// The library loaded and unloaded by a running program, again and again: nothing
// stays behind, whether the host cleared the converter or not. The program is not
// linked with the library, so each load is a real one.
#include "support/temporaryDirectory.h"

#include <obj_adapter/version.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
// Behind windows.h, which it needs.
#include <psapi.h>
#else
#include <dlfcn.h>
#include <malloc.h>
#endif

namespace obj_adapter::test {
namespace {

constexpr int ROUNDS = 1000;
constexpr int WARM_UP_ROUNDS = 50;

#if defined(_WIN32)

using Library = HMODULE;

Library load() {
    return LoadLibraryW(L"" OBJ_ADAPTER_LIBRARY);
}
bool unload(Library library) {
    return FreeLibrary(library) != 0;
}
bool isLoaded() {
    return GetModuleHandleW(L"" OBJ_ADAPTER_LIBRARY) != nullptr;
}
template <typename Function>
Function find(Library library, const char* name) {
    // By way of a plain function: the compiler rightly asks what this cast is.
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(library, name)));
}
std::size_t bytesInUse() {
    PROCESS_MEMORY_COUNTERS counters = {};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

#else

using Library = void*;

Library load() {
    return dlopen(OBJ_ADAPTER_LIBRARY, RTLD_NOW | RTLD_LOCAL);
}
bool unload(Library library) {
    return dlclose(library) == 0;
}
bool isLoaded() {
    void* library = dlopen(OBJ_ADAPTER_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr)
        dlclose(library);
    return library != nullptr;
}
template <typename Function>
Function find(Library library, const char* name) {
    return reinterpret_cast<Function>(dlsym(library, name));
}
std::size_t bytesInUse() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

#endif

// Member functions take the converter as their first argument in either
// convention, and a static one is a plain function.
struct Functions {
    void* (*getInstance)();
    void (*clearInstance)();
    int (*import)(void* converter, const char* fileName);
    int (*getNumberOfVertices)(const void* converter);

    explicit Functions(Library library)
        : getInstance(find<void* (*)()>(library, "_ZN11obj_adapter12ObjConverter11getInstanceEv")),
          clearInstance(
              find<void (*)()>(library, "_ZN11obj_adapter12ObjConverter13clearInstanceEv")),
          import(find<int (*)(void*, const char*)>(
              library, "_ZN11obj_adapter12ObjConverter21importObjDataFromFileEPKc")),
          getNumberOfVertices(find<int (*)(const void*)>(
              library, "_ZNK11obj_adapter12ObjConverter19getNumberOfVerticesEv")) {}

    bool areAllThere() const {
        return getInstance != nullptr && clearInstance != nullptr && import != nullptr &&
               getNumberOfVertices != nullptr;
    }
};

// A model of some 100 KB, so that one that stays behind in each round shows.
constexpr int VERTICES = 2000;

class LoadingTest : public testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        ASSERT_FALSE(isLoaded());
        std::string text;
        for (int vertex = 0; vertex < VERTICES; ++vertex)
            text += "v " + std::to_string(vertex) + " 0 0\n";
        fileName = directory.write("a.obj", text);
    }

    void runRound() const {
        const Library library = load();
        ASSERT_NE(library, nullptr);
        const Functions functions(library);
        ASSERT_TRUE(functions.areAllThere());
        void* converter = functions.getInstance();
        // Unloading destroyed the converter of the round before.
        ASSERT_EQ(functions.getNumberOfVertices(converter), 0);
        ASSERT_EQ(functions.import(converter, fileName.c_str()), 1);
        ASSERT_EQ(functions.getNumberOfVertices(converter), VERTICES);
        if (GetParam())
            functions.clearInstance();
        ASSERT_TRUE(unload(library));
        ASSERT_FALSE(isLoaded());
    }

    const TemporaryDirectory directory;
    std::string fileName;
};

TEST_P(LoadingTest, aThousandTimesLeaveNothingBehind) {
    for (int round = 0; round < WARM_UP_ROUNDS; ++round)
        ASSERT_NO_FATAL_FAILURE(runRound()) << "round " << round;
    const std::size_t before = bytesInUse();
    for (int round = 0; round < ROUNDS; ++round)
        ASSERT_NO_FATAL_FAILURE(runRound()) << "round " << round;
    const std::size_t after = bytesInUse();
    // A byte for each vertex and round would be twice as much.
    constexpr std::size_t TOLERANCE = 1000000;
    EXPECT_LT(after, before + TOLERANCE);
}

INSTANTIATE_TEST_SUITE_P(ClearedFirst, LoadingTest, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& cleared) {
                             return cleared.param ? "cleared" : "notCleared";
                         });

// The measure of the test above does show memory that is not given back.
TEST(LoadingTestItself, memoryInUseIsSeen) {
    const std::size_t before = bytesInUse();
    const std::vector<char> block(8000000, 'x');
    EXPECT_GT(bytesInUse(), before + block.size() / 2);
    EXPECT_EQ(block[block.size() / 2], 'x');
}

#if defined(_WIN32)

TEST(VersionResource, holdsTheHeadersVersion) {
    const HMODULE library = load();
    ASSERT_NE(library, nullptr);
    const HRSRC resource =
        FindResourceW(library, MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16));
    ASSERT_NE(resource, nullptr);
    const auto* bytes =
        static_cast<const unsigned char*>(LockResource(LoadResource(library, resource)));
    ASSERT_NE(bytes, nullptr);
    // Three words of lengths and type, the key "VS_VERSION_INFO" in UTF-16 with
    // its zero, then the fixed part on a border of four bytes.
    constexpr std::size_t FIXED_PART = 40;
    VS_FIXEDFILEINFO version;
    ASSERT_GE(SizeofResource(library, resource), FIXED_PART + sizeof version);
    std::memcpy(&version, bytes + FIXED_PART, sizeof version);
    EXPECT_EQ(version.dwSignature, 0xFEEF04BDU);
    EXPECT_EQ(version.dwFileVersionMS,
              static_cast<DWORD>(OBJ_ADAPTER_VERSION_MAJOR << 16 | OBJ_ADAPTER_VERSION_MINOR));
    EXPECT_EQ(version.dwFileVersionLS, static_cast<DWORD>(OBJ_ADAPTER_VERSION_PATCH << 16));
    EXPECT_EQ(version.dwProductVersionMS, version.dwFileVersionMS);
    EXPECT_EQ(version.dwProductVersionLS, version.dwFileVersionLS);
    FreeLibrary(library);
}

#endif

}  // namespace
}  // namespace obj_adapter::test
