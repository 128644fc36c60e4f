// atomicFile.h - whole files: read at once, and written so that nobody ever finds half of one.
#ifndef PLOTWERK_FILES_ATOMICFILE_H
#define PLOTWERK_FILES_ATOMICFILE_H

#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <sys/types.h>

namespace plotwerk {

// For a file that is nobody else's business.
constexpr mode_t userOnly = 0600;

// The bytes of a regular file. Nothing is ever waited for: a directory, pipe, socket or device is
// refused, and so is a file of more than 2 GB.
// Throws Refusal "can't read PATH: REASON".
std::string readWholeFile(const std::filesystem::path &path);

// Makes the file at path hold what `write` writes, or leaves it as it was: the bytes go to a file
// of their own in the same directory, which is synced and moved into place. Whenever the process is
// killed, the path names the whole old file, the whole new one, or none if there was none. A file
// ".plotwerk-..." of a random name can stay behind only from the moment of the move, and on file
// systems that have no files without names; the first write of a later process into that directory
// removes it. Processes that write the same path at once don't disturb each other: the last one
// stays. A file that is replaced hands its permissions, its group and its access control list on
// (what the group may do is lost where that can't be), a new one gets `ofNew` as far as the umask
// leaves them, or the list that new files have there; a symbolic link stays and its target is
// replaced or made. Throws Refusal "can't write PATH: REASON": no such directory, not a regular
// file, a file without write permission, a full disk, on the way another user's link in a folder
// that everybody can write to. What `write` throws is passed on, with the old file in place.
void writeWholeFile(const std::filesystem::path &path,
                    const std::function<void(std::ostream &)> &write, mode_t ofNew = 0666);

// As writeWholeFile, where there is nothing yet, not even a link: nothing is ever replaced. False
// where there is something, also when it came while the file was written.
bool writeNewFile(const std::filesystem::path &path,
                  const std::function<void(std::ostream &)> &write, mode_t ofNew = 0666);

} // namespace plotwerk

#endif
