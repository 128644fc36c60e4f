#include "util/files/output.h"

#include "util/arrays/storage.h"
#include "util/files/fatal.h"
#include "util/files/path.h"

#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace plw {

static void createDirOf(const char *path) {
    char *dir = allocate<char>(std::strlen(path) + 1);
    dirOfPath(path, dir);
    struct stat status;
    const bool isThere = dir[0] == '\0' || (stat(dir, &status) == 0 && S_ISDIR(status.st_mode));
    if (!isThere && mkdir(dir, 0777) != 0) myexitText("ERROR: can't create directory: ", dir);
    std::free(dir);
}

std::FILE *openOutput(const char *path) {
    if (path == nullptr || path[0] == '\0') return stdout;

    createDirOf(path);
    std::FILE *out = std::fopen(path, "w");
    if (out == nullptr) myexitText("ERROR: can't open file: ", path);
    return out;
}

void closeOutput(std::FILE *out, const char *path) {
    if (out == stdout) return;
    const bool failed = std::ferror(out) != 0;
    if (std::fclose(out) != 0 || failed) myexitText("ERROR: can't write file: ", path);
}

} // namespace plw
