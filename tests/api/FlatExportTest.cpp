// Every function the flat interface's header declares is exported from the
// shared library under its plain name.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <string>

TEST(FlatExports, EveryDeclaredFunctionIsExportedUnmangled) {
    void* lib = dlopen(ZEM_BINARY_DIR "/libzemxmps.so", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(lib, nullptr) << dlerror();
    std::ifstream header(ZEM_SOURCE_DIR "/api/zemxmps.h");
    const std::regex declaration(R"(^int32_t\s+(\w+)\()");
    int declared = 0;
    std::smatch m;
    for (std::string line; std::getline(header, line);) {
        if (!std::regex_search(line, m, declaration)) continue;
        ++declared;
        EXPECT_NE(dlsym(lib, m[1].str().c_str()), nullptr) << m[1];
    }
    // The header was read: each family of the interface is declared.
    EXPECT_GE(declared, 239);
    dlclose(lib);
}
