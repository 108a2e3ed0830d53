/* Where the program's data files are: beside the executable, found from the name under which it was started. */
#include "top/startup.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace tolvek {

constexpr std::size_t path_room = 1024;

/* Appends text; false, with the path emptied, when it does not fit. */
static bool append(char *path, std::size_t room, const char *text) {
    if (std::strlen(path) + std::strlen(text) >= room) {
        path[0] = 0;
        return false;
    }
    std::strcat(path, text);
    return true;
}

const char *getPathElement(const char *list, char *element, std::size_t room) {
    element[0] = 0;
    if (!list || !*list) return nullptr;
    std::size_t length = std::strcspn(list, ":");
    if (length < room) {
        std::memcpy(element, list, length);
        element[length] = 0;
    }
    return list[length] == ':' ? list + length + 1 : list + length;
}

static bool is_program(const char *path) {
    struct stat facts;
    return access(path, X_OK) == 0 && stat(path, &facts) == 0 && !S_ISDIR(facts.st_mode);
}

/* A relative path, seen from the working directory. */
static int resolve_relative(const char *name, char path[path_room]) {
    char whole[path_room];
    path[0] = 0;
    if (!getcwd(whole, sizeof whole) || !append(whole, sizeof whole, "/") || !append(whole, sizeof whole, name))
        return -1;
    char resolved[PATH_MAX];
    bool found = realpath(whole, resolved) && std::strlen(resolved) < path_room;
    std::strcpy(path, found ? resolved : whole);
    return found ? 2 : 1;
}

static int search_path(const char *name, char path[path_room]) {
    char element[path_room];
    for (const char *rest = std::getenv("PATH"); (rest = getPathElement(rest, element, sizeof element));) {
        if (!element[0] || !append(element, sizeof element, "/") || !append(element, sizeof element, name)) continue;
        if (!is_program(element)) continue;
        if (element[0] != '/') return resolve_relative(element, path);
        std::strcpy(path, element);
        return 0;
    }
    path[0] = 0;
    return -1;
}

int GetExecName(const char *name, char path[path_room]) {
    path[0] = 0;
    if (!name) return -1;
    if (name[0] == '/') return append(path, path_room, name) ? 0 : -1;
    if (std::strncmp(name, "./", 2) == 0) return resolve_relative(name + 2, path);
    if (std::strchr(name, '/')) return resolve_relative(name, path);
    return search_path(name, path);
}

/* Replaces a symbolic link by what it points to: a relative one is seen from the link's own folder. False: no link. */
static bool follow_link(char path[path_room]) {
    char link[path_room];
    ssize_t length = readlink(path, link, sizeof link - 1);
    if (length <= 0) return false;
    link[length] = 0;
    char *slash = std::strrchr(path, '/');
    char *from = slash && link[0] != '/' ? slash + 1 : path;
    *from = 0;
    return append(path, path_room, link);
}

void find_data_directory(const char *started_as, char directory[directory_room]) {
    constexpr int longest_chain = 40; /* of links to links */
    char path[path_room];
    GetExecName(started_as, path);
    for (int i = 0; i < longest_chain && follow_link(path); i++) {}
    char *slash = std::strrchr(path, '/');
    if (!slash) {
        std::strcpy(path, "./");
        slash = path + 1;
    }
    slash[1] = 0;
    std::snprintf(directory, directory_room, "%sBACKWARD/", path);
}

} // namespace tolvek
