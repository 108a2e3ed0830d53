#include "top/output_file.h"

#include "top/driver.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tolvek {

static text_out file(-1);
static int64_t settled;       /* characters of the file that stay */
static bool aside;            /* the text is still in the new file beside the old one */
static char target[PATH_MAX]; /* the path of the old one */
static char beside[PATH_MAX + 32];

static void tell_failure(const char *name, int why) {
    sayf("*** Warning. File %s cannot be written: %s.\n", name, std::strerror(why));
}

/* ---- opening ---- */

/* A new file in the same folder; -1 where there can be none. */
static int open_beside(const char *name, const struct stat &old) {
    if (!realpath(name, target)) return -1;
    std::snprintf(beside, sizeof beside, "%s.tolvek-%ld", target, static_cast<long>(getpid()));
    int fd = open(beside, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd >= 0 && fchmod(fd, old.st_mode & 07777) != 0) {
        close(fd);
        unlink(beside);
        return -1;
    }
    return fd;
}

bool open_output(const char *name) {
    struct stat old;
    const bool is_there = stat(name, &old) == 0 && S_ISREG(old.st_mode) && access(name, W_OK) == 0;
    int fd = is_there ? open_beside(name, old) : -1;
    aside = fd >= 0;
    if (!aside) fd = open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) {
        tell_failure(name, errno);
        return false;
    }
    std::signal(SIGXFSZ, SIG_IGN); /* a file that has become too large is a write that fails */
    file = text_out(fd);
    settled = 0;
    outpuf = &file;
    std::snprintf(output_file_name, sizeof output_file_name, "%s", name);
    return true;
}

/* ---- the end of a statement ---- */

void take_back_output() {
    if (!outpuf || (file.taken == settled && !file.failed)) return;
    file.used = 0;
    file.failed = false;
    file.taken = settled;
    file.line_begun = false;
    if (ftruncate(file.fd, settled) == 0) lseek(file.fd, settled, SEEK_SET);
}

/* The new file takes the place of the old one. */
static bool take_its_name() {
    if (!aside || file.taken == 0) return true;
    if (std::rename(beside, target) != 0) {
        file.why = errno;
        return false;
    }
    aside = false;
    return true;
}

bool settle_output() {
    if (!outpuf || (file.taken == settled && !file.failed)) return true;
    flush(&file);
    if (file.failed || !take_its_name()) {
        tell_failure(output_file_name, file.why);
        take_back_output();
        return false;
    }
    settled = file.taken;
    return true;
}

void close_output() {
    if (!outpuf) return;
    settle_output();
    if (aside) unlink(beside); /* nothing was written: the old file stays */
    if (close(file.fd) != 0) tell_failure(output_file_name, errno);
    file.fd = -1;
    aside = false;
    outpuf = nullptr;
    output_file_name[0] = 0;
}

} // namespace tolvek
