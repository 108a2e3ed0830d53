/* How the folder of the data files is found from the name under which the program was started. */
#include "support/fresh_system.h"

#include "top/startup.h"

#include <cstdlib>
#include <fstream>

using namespace tolvek;
namespace fs = std::filesystem;

namespace {

struct data_dir : fresh_system {
    std::string kept_path;

    void SetUp() override {
        fresh_system::SetUp();
        kept_path = std::getenv("PATH");
        folder = fs::canonical(folder);
        fs::create_directories(folder / "lib");
        fs::create_directories(folder / "bin");
        std::ofstream(folder / "lib/prog") << "#!/bin/sh\n";
        fs::permissions(folder / "lib/prog", fs::perms::owner_all);
    }
    void TearDown() override {
        setenv("PATH", kept_path.c_str(), 1);
        fresh_system::TearDown();
    }

    static std::string found(const std::string &started_as) {
        char directory[directory_room];
        find_data_directory(started_as.c_str(), directory);
        return directory;
    }
    std::string data() const { return (folder / "lib/BACKWARD/").string(); }
    void link(const fs::path &to, const std::string &at) { fs::create_symlink(to, folder / at); }
};

TEST_F(data_dir, a_path_from_the_root_is_taken_as_it_stands) {
    char path[1024];
    EXPECT_EQ(GetExecName("/a/b/prog", path), 0);
    EXPECT_STREQ(path, "/a/b/prog");
    EXPECT_EQ(found((folder / "lib/prog").string()), data());
}

TEST_F(data_dir, a_relative_path_is_seen_from_the_working_directory) {
    char path[1024];
    EXPECT_EQ(GetExecName("./lib/prog", path), 2);
    EXPECT_EQ(path, (folder / "lib/prog").string());
    fs::current_path(folder / "bin");
    EXPECT_EQ(GetExecName("../lib/prog", path), 2);
    EXPECT_EQ(path, (folder / "lib/prog").string());
    EXPECT_EQ(found("../lib/prog"), data());
}

TEST_F(data_dir, a_relative_path_to_nothing_stays_unresolved) {
    char path[1024];
    EXPECT_EQ(GetExecName("./nowhere/prog", path), 1);
    EXPECT_EQ(path, (folder / "nowhere/prog").string());
}

TEST_F(data_dir, a_bare_name_is_looked_for_along_the_path) {
    char path[1024];
    fs::create_directories(folder / "first/prog"); /* a directory is no program */
    setenv("PATH", ("::" + (folder / "first").string() + ":" + (folder / "lib").string()).c_str(), 1);
    EXPECT_EQ(GetExecName("prog", path), 0);
    EXPECT_EQ(path, (folder / "lib/prog").string());
    setenv("PATH", "lib", 1);
    EXPECT_EQ(GetExecName("prog", path), 2);
    EXPECT_EQ(path, (folder / "lib/prog").string());
}

TEST_F(data_dir, a_name_that_is_not_on_the_path_is_not_found) {
    char path[1024] = "before";
    EXPECT_EQ(GetExecName("no_such_program", path), -1);
    EXPECT_STREQ(path, "");
    unsetenv("PATH");
    EXPECT_EQ(GetExecName("prog", path), -1);
    EXPECT_EQ(found("prog"), "./BACKWARD/");
}

TEST_F(data_dir, links_are_followed_to_the_folder_of_the_program) {
    link("../lib/prog", "bin/relative");
    link(folder / "lib/prog", "bin/from_root");
    link("relative", "bin/to_a_link");
    for (const char *name : {"bin/relative", "bin/from_root", "bin/to_a_link"})
        EXPECT_TRUE(
            fs::equivalent(fs::path(found((folder / name).string())).parent_path().parent_path(), folder / "lib"))
            << name;
}

TEST_F(data_dir, a_path_that_is_too_long_is_not_found) {
    char path[1024];
    EXPECT_EQ(GetExecName(("/" + std::string(2000, 'a')).c_str(), path), -1);
    EXPECT_STREQ(path, "");
}

TEST_F(data_dir, elements_of_a_list_are_taken_one_by_one) {
    char element[16];
    const char *rest = getPathElement("ab::c", element, sizeof element);
    EXPECT_STREQ(element, "ab");
    rest = getPathElement(rest, element, sizeof element);
    EXPECT_STREQ(element, "");
    rest = getPathElement(rest, element, sizeof element);
    EXPECT_STREQ(element, "c");
    EXPECT_EQ(getPathElement(rest, element, sizeof element), nullptr);
}

} // namespace
