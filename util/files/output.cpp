#include "util/files/output.h"

#include "util/files/fatal.h"
#include "util/files/path.h"

#include <cstring>
#include <memory>
#include <sys/stat.h>

namespace plw {

static void createDirOf(const char *path) {
    const auto dir = std::make_unique<char[]>(std::strlen(path) + 1);
    dirOfPath(path, dir.get());
    if (dir[0] == '\0') return;

    struct stat status;
    if (stat(dir.get(), &status) == 0 && S_ISDIR(status.st_mode)) return;
    if (mkdir(dir.get(), 0777) != 0) myexitText("ERROR: can't create directory: ", dir.get());
}

FILE *openOutput(const char *path) {
    if (path == nullptr || path[0] == '\0') return stdout;

    createDirOf(path);
    FILE *out = std::fopen(path, "w");
    if (out == nullptr) myexitText("ERROR: can't open file: ", path);
    return out;
}

void closeOutput(FILE *out) {
    if (out != stdout) std::fclose(out);
}

} // namespace plw
