// INI files on POSIX systems, by the library's own engine (profile_text).
//
// A write never leaves a half-written file: the new text goes to a temporary file in the same
// folder (".NAME.ravelin-tmp"), which is flushed to disk and renamed over the original, keeping
// its permission bits and, where allowed, its owner. Renaming replaces a hard link by a file of its
// own; a symbolic link is followed and stays. Writers of one folder, threads and processes alike,
// take turns through an exclusive flock() on the folder itself, held while they read the file,
// edit it and rename the result into place, so no update is lost and no lock file is left. The
// temporary file always has the same name, so one left by a writer that was killed is replaced
// (and so removed) by the next write of the same file. A file system that cannot lock a folder
// (NFS) refuses writes with kLockViolation rather than risk losing one.
//
// Reads keep the parsed text of the last few files while the file is unchanged on disk, known by
// its device, inode, size, and modification and change times in nanoseconds (stat() on every
// read; never stale data from an earlier version):
// - A file replaced by a rename, as every write of ours is, always shows another inode: the
//   temporary file gets its inode while the old file still holds its own, and the cache keeps the
//   file it read open, so that inode number cannot be reused while the entry lives.
// - A file rewritten in place (by another program) with the same size shows a new modification
//   time, unless the rewrite falls within the timestamp granularity of the version read: a clock
//   tick on Linux, two seconds on FAT. So a text is trusted without reading the file again only
//   when its modification time was more than kSettled old when the read began; any later write
//   stamps a later time. Until then every read reads the file again (and reuses the parsed text
//   when the bytes are the same).
// What can still be missed: a same-size in-place rewrite whose writer also sets the modification
// time back to the cached one, within one clock tick of the change time of the cached version;
// a system clock set back by more than kSettled; and a network file system whose client caches
// file attributes, which hides a change from stat() itself.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <ravelin/platform/internal/profile_text.hpp>
#include <ravelin/platform/profile.hpp>
#include <string>
#include <system_error>
#include <utility>

namespace ravelin::platform {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::nanoseconds kSettled = std::chrono::seconds(3);
constexpr size_t kCachedFiles = 16;

// An open file descriptor, closed with the object.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      reset();
      fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { reset(); }

  int get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }
  void reset() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
  }

 private:
  int fd_ = -1;
};

// What tells one version of a file from another without reading it.
struct Identity {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  int64_t modified = 0;  // nanoseconds since the epoch
  int64_t changed = 0;

  bool operator==(const Identity&) const = default;
};

int64_t nanoseconds(const timespec& time) {
  return static_cast<int64_t>(time.tv_sec) * 1000000000 + time.tv_nsec;
}

Identity identityOf(const struct stat& status) {
  return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
          nanoseconds(status.st_ctim)};
}

int64_t wallClockNow() {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return nanoseconds(now);
}

// The Windows error code for a failed system call.
uint32_t errorOf(int code) {
  switch (code) {
    case ENOENT:
      return profile_error::kFileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
      return profile_error::kPathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
      return profile_error::kAccessDenied;
    case ETXTBSY:
    case EBUSY:
      return profile_error::kSharingViolation;
    case ENOSPC:
    case EDQUOT:
      return profile_error::kDiskFull;
    case ENOMEM:
      return profile_error::kNotEnoughMemory;
    case EMFILE:
    case ENFILE:
      return profile_error::kTooManyOpenFiles;
    case EIO:
      return profile_error::kIoDevice;
    default:
      return profile_error::kGeneralFailure;
  }
}

// Reads the whole file; false with errno set on failure.
bool readAll(int fd, size_t expected, std::string& bytes) {
  bytes.clear();
  bytes.reserve(expected);
  char chunk[65536];
  for (;;) {
    const ssize_t got = ::read(fd, chunk, sizeof chunk);
    if (got == 0) return true;
    if (got < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    bytes.append(chunk, static_cast<size_t>(got));
  }
}

bool writeAll(int fd, const std::string& bytes) {
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t wrote = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (wrote < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    done += static_cast<size_t>(wrote);
  }
  return true;
}

// The temporary file a write of `file` goes through, in the same folder. Its name stays within
// the 255 bytes a file name may have.
fs::path temporaryFor(const fs::path& file) {
  std::string name = file.filename().native();
  if (name.size() > 200) name.resize(200);
  return file.parent_path() / ("." + name + ".ravelin-tmp");
}

// A file read from disk, or why it could not be.
struct Loaded {
  std::shared_ptr<const ProfileText> text;
  uint32_t error = profile_error::kNone;
  bool missing = false;  // no file of that name (its folder exists)
  struct stat status {};
};

class PosixProfileSystem : public ProfileSystem {
 public:
  ProfileRead getString(std::optional<std::string_view> section,
                        std::optional<std::string_view> key,
                        std::optional<std::string_view> defaultValue, uint32_t size,
                        const fs::path& file) override {
    uint32_t error = profile_error::kNone;
    std::shared_ptr<const ProfileText> text;
    try {
      const fs::path name = cPath(file);
      if (name.empty()) {
        error = profile_error::kAccessDenied;
      } else if (const fs::path path = resolve(name); path.empty()) {
        error = profile_error::kFileNotFound;
      } else {
        Loaded loaded = load(path, false);
        text = std::move(loaded.text);
        error = loaded.error;
        // The Windows directory always exists: a bare name is a missing file, never a path.
        if (error == profile_error::kPathNotFound && isBareName(name))
          error = profile_error::kFileNotFound;
      }
    } catch (const std::bad_alloc&) {
      text.reset();
      error = profile_error::kNotEnoughMemory;
    }
    try {
      return readProfileString(text.get(), error, section, key, defaultValue, size);
    } catch (const std::bad_alloc&) {
      // No room even for the text to hand back: nothing is copied.
      ProfileRead nothing;
      nothing.lastError = profile_error::kNotEnoughMemory;
      return nothing;
    }
  }

  ProfileWrite writeString(std::optional<std::string_view> section,
                           std::optional<std::string_view> key,
                           std::optional<std::string_view> value, const fs::path& file) override {
    const ProfileWriteKind kind = profileWriteKind(section, key, value);
    if (kind == ProfileWriteKind::NoSection) return {false, profile_error::kFileNotFound};
    try {
      const fs::path name = cPath(file);
      if (name.empty()) return {false, profile_error::kAccessDenied};
      fs::path path = resolve(name);
      if (path.empty()) return {false, profile_error::kFileNotFound};
      if (kind == ProfileWriteKind::Flush) {
        forget(path);
        return {false, profile_error::kNone};
      }
      const bool bare = isBareName(name);
      if (bare) {
        std::error_code ignored;
        fs::create_directories(path.parent_path(), ignored);
      }
      ProfileWrite result = write(followLink(path), section, key, value);
      // Windows reports a Windows directory it cannot write to as a missing file.
      if (bare && !result.succeeded &&
          (result.lastError == profile_error::kAccessDenied ||
           result.lastError == profile_error::kPathNotFound)) {
        result.lastError = profile_error::kFileNotFound;
      }
      return result;
    } catch (const std::bad_alloc&) {
      return {false, profile_error::kNotEnoughMemory};
    }
  }

 private:
  struct Entry {
    Identity identity;
    std::shared_ptr<const ProfileText> text;
    Descriptor pin;  // the file read, so its inode number stays taken
    bool settled = false;
    uint64_t lastUse = 0;
  };

  static fs::path resolve(const fs::path& name) {
    if (!isBareName(name)) return name;
    const fs::path folder = profileFolder();
    return folder.empty() ? fs::path() : folder / name;
  }

  // The file a symbolic link names, so that a write replaces the file and keeps the link.
  static fs::path followLink(const fs::path& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return path;
    std::error_code error;
    fs::path target = fs::weakly_canonical(path, error);
    return error ? path : target;
  }

  // The file's parsed text: from the cache when it is unchanged and settled, else read. A
  // writer (`fresh`) always reads the file.
  Loaded load(const fs::path& path, bool fresh) {
    Loaded loaded;
    if (::stat(path.c_str(), &loaded.status) != 0) {
      const int code = errno;
      forget(path);
      loaded.error = errorOf(code);
      if (code == ENOENT) {
        struct stat folder {};
        const fs::path parent = path.has_parent_path() ? path.parent_path() : fs::path(".");
        loaded.missing = ::stat(parent.c_str(), &folder) == 0 && S_ISDIR(folder.st_mode);
        if (!loaded.missing) loaded.error = profile_error::kPathNotFound;
      }
      return loaded;
    }
    if (!S_ISREG(loaded.status.st_mode)) {
      loaded.error = profile_error::kAccessDenied;
      return loaded;
    }
    if (!fresh) {
      std::lock_guard lock(mutex_);
      const auto it = cache_.find(path.native());
      if (it != cache_.end() && it->second.settled &&
          it->second.identity == identityOf(loaded.status)) {
        it->second.lastUse = ++uses_;
        loaded.text = it->second.text;
        return loaded;
      }
    }

    // A file changing while it is read is read again, a few times; then the last reading is used
    // without being cached.
    for (int attempt = 0;; ++attempt) {
      Descriptor fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
      if (!fd) {
        const int code = errno;
        loaded.error = errorOf(code);
        loaded.missing = code == ENOENT;
        return loaded;
      }
      struct stat before {};
      struct stat after {};
      if (::fstat(fd.get(), &before) != 0 || !S_ISREG(before.st_mode)) {
        loaded.error = profile_error::kAccessDenied;
        return loaded;
      }
      const int64_t readAt = wallClockNow();
      std::string bytes;
      if (!readAll(fd.get(), static_cast<size_t>(before.st_size), bytes) ||
          ::fstat(fd.get(), &after) != 0) {
        loaded.error = errorOf(errno);
        return loaded;
      }
      const Identity identity = identityOf(after);
      const bool steady =
          identityOf(before) == identity && bytes.size() == static_cast<size_t>(after.st_size);
      loaded.status = after;
      if (!steady && attempt < 3) continue;
      loaded.text = remember(path, identity, std::move(bytes), std::move(fd),
                             readAt - identity.modified > kSettled.count(), steady);
      return loaded;
    }
  }

  // Keeps a text read from (or just written to) `path`; returns the text to use, the cached one
  // when the bytes are those of the cached version.
  std::shared_ptr<const ProfileText> remember(const fs::path& path, const Identity& identity,
                                              std::string bytes, Descriptor pin, bool settled,
                                              bool cacheable) {
    std::shared_ptr<const ProfileText> reuse;
    {
      std::lock_guard lock(mutex_);
      const auto it = cache_.find(path.native());
      if (it != cache_.end() && it->second.text->bytes() == bytes) reuse = it->second.text;
    }
    std::shared_ptr<const ProfileText> text =
        reuse ? reuse : std::make_shared<const ProfileText>(std::move(bytes));
    if (!cacheable) return text;
    std::lock_guard lock(mutex_);
    Entry& entry = cache_[path.native()];
    entry.identity = identity;
    entry.text = text;
    entry.pin = std::move(pin);
    entry.settled = settled;
    entry.lastUse = ++uses_;
    if (cache_.size() > kCachedFiles) {
      auto oldest = cache_.begin();
      for (auto it = cache_.begin(); it != cache_.end(); ++it) {
        if (it->second.lastUse < oldest->second.lastUse) oldest = it;
      }
      cache_.erase(oldest);
    }
    return text;
  }

  void forget(const fs::path& path) {
    std::lock_guard lock(mutex_);
    cache_.erase(path.native());
  }

  // The read-modify-write of one file, under the lock of its folder.
  ProfileWrite write(const fs::path& path, std::optional<std::string_view> section,
                     std::optional<std::string_view> key, std::optional<std::string_view> value) {
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    const Descriptor folderFd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folderFd) {
      const int code = errno;
      return {false, code == ENOENT ? profile_error::kPathNotFound : errorOf(code)};
    }
    while (::flock(folderFd.get(), LOCK_EX) != 0) {
      if (errno != EINTR) return {false, profile_error::kLockViolation};
    }

    Loaded current = load(path, true);
    if (!current.text && !current.missing) return {false, current.error};
    if (current.text && ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
      return {false, errorOf(errno)};
    ProfileEdit edit = editProfileText(current.text.get(), section, key, value);
    if (edit.outcome == ProfileEdit::Outcome::Refused) return {false, edit.error};
    const uint32_t success = current.missing ? profile_error::kFileNotFound : profile_error::kNone;
    if (edit.outcome == ProfileEdit::Outcome::Unchanged) return {true, success};

    const fs::path temporary = temporaryFor(path);
    Descriptor out;
    for (int attempt = 0; !out && attempt < 3; ++attempt) {
      ::unlink(temporary.c_str());
      out =
          Descriptor(::open(temporary.c_str(),
                            O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY, 0666));
      if (!out && errno != EEXIST) break;
    }
    if (!out) return {false, errorOf(errno)};
    const auto fail = [&](int code) {
      ::unlink(temporary.c_str());
      return ProfileWrite{false, errorOf(code)};
    };
    if (current.text) {
      // The owner can be kept only by a privileged writer; the permission bits always.
      if (::fchown(out.get(), current.status.st_uid, current.status.st_gid) != 0) {
        // Not permitted: the file becomes the writer's, as any new file would.
      }
      if (::fchmod(out.get(), current.status.st_mode & 07777) != 0) return fail(errno);
    }
    if (!writeAll(out.get(), edit.bytes) || ::fsync(out.get()) != 0) return fail(errno);
    if (::rename(temporary.c_str(), path.c_str()) != 0) return fail(errno);
    // The rename itself reaches the disk with the folder. The new text is in place either way,
    // so a failure here does not fail the write.
    if (::fsync(folderFd.get()) != 0) {
    }

    struct stat written {};
    if (::fstat(out.get(), &written) == 0) {
      remember(path, identityOf(written), std::move(edit.bytes), std::move(out), false, true);
    } else {
      forget(path);
    }
    return {true, success};
  }

  std::mutex mutex_;
  std::map<std::string, Entry> cache_;
  uint64_t uses_ = 0;
};

}  // namespace

std::unique_ptr<ProfileSystem> ProfileSystem::makeNative() {
  return std::make_unique<PosixProfileSystem>();
}

}  // namespace ravelin::platform
