// The in-memory profile system.
#include <memory>
#include <ravelin/platform/fake/profile_fake.hpp>
#include <ravelin/platform/internal/profile_text.hpp>
#include <utility>

namespace ravelin::platform {
namespace {

std::string normalName(const std::filesystem::path& path) {
  std::filesystem::path normal = path.lexically_normal();
  if (!normal.has_filename() && normal.has_relative_path()) normal = normal.parent_path();
  return normal.generic_string();
}

std::string folderOf(const std::string& file) {
  return normalName(std::filesystem::path(file).parent_path());
}

}  // namespace

std::string FakeProfileSystem::keyOf(const std::filesystem::path& file) {
  const std::filesystem::path name = cPath(file);
  if (name.empty()) return {};
  if (!isBareName(name)) return normalName(name);
  const std::filesystem::path folder = profileFolder();
  return folder.empty() ? std::string() : normalName(folder / name);
}

bool FakeProfileSystem::folderExists(const std::string& folder) const {
  const std::filesystem::path profile = profileFolder();
  return folders_.count(folder) != 0 || (!profile.empty() && normalName(profile) == folder);
}

void FakeProfileSystem::addFolder(const std::filesystem::path& folder) {
  std::lock_guard lock(mutex_);
  folders_.insert(normalName(folder));
}

void FakeProfileSystem::setFile(const std::filesystem::path& file, std::string bytes) {
  const std::string key = keyOf(file);
  std::lock_guard lock(mutex_);
  folders_.insert(folderOf(key));
  files_[key] = std::move(bytes);
}

void FakeProfileSystem::removeFile(const std::filesystem::path& file) {
  const std::string key = keyOf(file);
  std::lock_guard lock(mutex_);
  files_.erase(key);
}

std::optional<std::string> FakeProfileSystem::file(const std::filesystem::path& file) const {
  const std::string key = keyOf(file);
  std::lock_guard lock(mutex_);
  const auto it = files_.find(key);
  if (it == files_.end()) return std::nullopt;
  return it->second;
}

void FakeProfileSystem::setFailure(const std::filesystem::path& file, uint32_t error) {
  const std::string key = keyOf(file);
  std::lock_guard lock(mutex_);
  if (error == profile_error::kNone) {
    failures_.erase(key);
  } else {
    failures_[key] = error;
  }
}

ProfileRead FakeProfileSystem::getString(std::optional<std::string_view> section,
                                         std::optional<std::string_view> key,
                                         std::optional<std::string_view> defaultValue,
                                         uint32_t size, const std::filesystem::path& file) {
  const auto fail = [&](uint32_t error) {
    return readProfileString(nullptr, error, section, key, defaultValue, size);
  };
  if (cPath(file).empty()) return fail(profile_error::kAccessDenied);
  const std::string name = keyOf(file);
  if (name.empty()) return fail(profile_error::kFileNotFound);

  std::unique_ptr<ProfileText> text;
  {
    std::lock_guard lock(mutex_);
    if (const auto failure = failures_.find(name); failure != failures_.end())
      return fail(failure->second);
    if (folders_.count(name) != 0) return fail(profile_error::kAccessDenied);
    const auto it = files_.find(name);
    if (it == files_.end()) {
      return fail(isBareName(cPath(file)) || folderExists(folderOf(name))
                      ? profile_error::kFileNotFound
                      : profile_error::kPathNotFound);
    }
    text = std::make_unique<ProfileText>(it->second);
  }
  return readProfileString(text.get(), profile_error::kNone, section, key, defaultValue, size);
}

ProfileWrite FakeProfileSystem::writeString(std::optional<std::string_view> section,
                                            std::optional<std::string_view> key,
                                            std::optional<std::string_view> value,
                                            const std::filesystem::path& file) {
  switch (profileWriteKind(section, key, value)) {
    case ProfileWriteKind::NoSection:
      return {false, profile_error::kFileNotFound};
    case ProfileWriteKind::Flush:
      return {false, profile_error::kNone};
    default:
      break;
  }
  if (cPath(file).empty()) return {false, profile_error::kAccessDenied};
  const std::string name = keyOf(file);
  if (name.empty()) return {false, profile_error::kFileNotFound};

  std::lock_guard lock(mutex_);
  if (const auto failure = failures_.find(name); failure != failures_.end())
    return {false, failure->second};
  if (folders_.count(name) != 0) return {false, profile_error::kAccessDenied};
  const std::string folder = folderOf(name);
  if (!folderExists(folder)) return {false, profile_error::kPathNotFound};

  const auto it = files_.find(name);
  const bool existed = it != files_.end();
  std::unique_ptr<ProfileText> text;
  if (existed) text = std::make_unique<ProfileText>(it->second);
  ProfileEdit edit = editProfileText(text.get(), section, key, value);
  if (edit.outcome == ProfileEdit::Outcome::Refused) return {false, edit.error};
  if (edit.outcome == ProfileEdit::Outcome::Changed) {
    folders_.insert(folder);
    files_[name] = std::move(edit.bytes);
  }
  return {true, existed ? profile_error::kNone : profile_error::kFileNotFound};
}

}  // namespace ravelin::platform
