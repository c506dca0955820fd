// Host and library lend each other the standard library's strings and vectors, so
// both are compiled by one family of compilers with one kind of runtime. What can
// be checked of this while a host is compiled and linked stands here; the rest is
// in docs/hostGuide.md.
#pragma once

#include <obj_adapter/version.h>

#if defined(_MSC_VER)

// What one side allocates the other may free, which takes one heap: that of the
// runtime's DLL.
#if !defined(_DLL)
#error "obj_adapter needs the runtime's DLL: compile with /MD or /MDd, not with /MT or /MTd."
#endif

// The linker refuses a host whose files disagree, with themselves or with static
// libraries that use these headers. It cannot look into a DLL.
#define OBJ_ADAPTER_TEXT_OF(value) #value
#define OBJ_ADAPTER_TEXT(value) OBJ_ADAPTER_TEXT_OF(value)
#pragma detect_mismatch(   \
    "obj_adapter_version", \
    OBJ_ADAPTER_TEXT(OBJ_ADAPTER_VERSION_MAJOR) "." OBJ_ADAPTER_TEXT(OBJ_ADAPTER_VERSION_MINOR))
#if defined(_DEBUG)
#pragma detect_mismatch("obj_adapter_runtime", "debug")
#else
#pragma detect_mismatch("obj_adapter_runtime", "release")
#endif
#undef OBJ_ADAPTER_TEXT
#undef OBJ_ADAPTER_TEXT_OF

#endif
