// save: a tree into a file, so that whatever fails the file is the old one or the new one, whole.
// SPDX-License-Identifier: MIT
#pragma once

#include "tree.h"

#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

//! [save]
/// One save. Every step says whether it went well, and if not it has told emsg() why.
class saving {
public:
  saving(cfgroup *group, const char *fname) : top(group), name(fname), target(resolved(fname)) {}
  saving(const saving &) = delete;
  saving &operator=(const saving &) = delete;
  ~saving() {
    if (!temporary.empty())
      unlink(temporary.c_str());
  }

  bool run() { return create() && write() && readback() && replace() && syncfolder(); }

private:
  cfgroup *top;
  const char *name;
  std::filesystem::path target;
  std::string temporary; // empty while there is none
  stream file;

  /// What a symbolic link leads to is replaced, and not the link.
  static std::filesystem::path resolved(const char *fname) {
    std::error_code failed;
    const auto path = std::filesystem::canonical(fname, failed);
    return failed ? fname : path;
  }

  bool done(bool ok, const char *step) const {
    if (!ok)
      emsg("%s: %s: %s", name, step, std::strerror(errno));
    return ok;
  }

  /// A temporary beside the target, for a rename does not cross file systems, and with its mode.
  bool create() {
    std::string pattern = target.string() + ".XXXXXX";
    const int fd = mkstemp(pattern.data());
    if (!done(fd >= 0, "create"))
      return false;
    temporary = pattern;
    file.reset(fdopen(fd, "w"));
    if (!done(file != nullptr, "open")) {
      close(fd);
      return false;
    }
    struct stat old {};
    if (stat(target.c_str(), &old) != 0)
      return done(errno == ENOENT, "look up"); // a new file is for its owner alone
    return done(fchown(fd, old.st_uid, old.st_gid) == 0, "keep the owner") &&
           done(fchmod(fd, old.st_mode & 07777) == 0, "keep the mode");
  }

  /// A full disk may show at any of these.
  bool write() {
    cfprinter prn{};
    return cfprint(file.get(), &prn, top, name) != 0 &&
           done(std::fflush(file.get()) == 0, "write") &&
           done(fsync(fileno(file.get())) == 0, "sync") &&
           done(std::fclose(file.release()) == 0, "close");
  }

  /// A line may have outgrown what the reader takes, or a text may hold what no line can.
  bool readback() {
    const stream printed(std::fopen(temporary.c_str(), "r"));
    if (!done(printed != nullptr, "read back"))
      return false;
    const std::string place = std::string(name) + " as printed"; // its lines, not those of the file
    const tree copy = readstream(printed.get(), place.c_str());
    cfdiff diff{};
    cfdiffdfl(&diff);
    diff.opt = cf_diffrem;
    if (copy && !cfdiffnd(&diff, &top->link, &copy->link))
      return true;
    emsg("%s: does not read back as it is", name);
    return false;
  }

  bool replace() {
    if (!done(std::rename(temporary.c_str(), target.c_str()) == 0, "replace"))
      return false;
    temporary.clear();
    return true;
  }

  /// Until then a crash of the machine may bring the old file back.
  bool syncfolder() const {
    const auto folder = target.has_parent_path() ? target.parent_path() : ".";
    const int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool ok = done(fd >= 0 && fsync(fd) == 0, "sync the folder");
    if (fd >= 0)
      close(fd);
    return ok;
  }
};

/// Saves a tree. True: the file holds it. False: emsg() was told why, and the file is as it was; if
/// the folder could not be synced it is new, and a crash may bring the old one back.
/// Give the top of the tree: a catalog prints without remarks.
inline bool save(cfgroup *top, const char *fname) { return saving(top, fname).run(); }
//! [save]
