# GoogleTest for the target, compiled from the sources of Debian's package
# googletest: the installed library is for this machine.
set(GTest_SOURCE_DIR /usr/src/googletest/googletest CACHE PATH "GoogleTest's sources")

include(FindPackageHandleStandardArgs)
if(EXISTS ${GTest_SOURCE_DIR}/src/gtest-all.cc)
    set(GTest_SOURCES_FOUND TRUE)
endif()
find_package_handle_standard_args(GTest
    REQUIRED_VARS GTest_SOURCE_DIR GTest_SOURCES_FOUND
    FAIL_MESSAGE "the sources of GoogleTest are missing (Debian's package googletest)")

if(GTest_FOUND AND NOT TARGET GTest::gtest)
    add_library(gtest STATIC EXCLUDE_FROM_ALL ${GTest_SOURCE_DIR}/src/gtest-all.cc)
    target_include_directories(gtest SYSTEM
        PUBLIC ${GTest_SOURCE_DIR}/include
        PRIVATE ${GTest_SOURCE_DIR})
    target_compile_features(gtest PUBLIC cxx_std_14)
    add_library(GTest::gtest ALIAS gtest)

    add_library(gtest_main STATIC EXCLUDE_FROM_ALL ${GTest_SOURCE_DIR}/src/gtest_main.cc)
    target_link_libraries(gtest_main PUBLIC gtest)
    add_library(GTest::gtest_main ALIAS gtest_main)
endif()
